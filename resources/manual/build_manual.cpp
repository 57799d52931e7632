// SPDX-License-Identifier: MIT
//
// build_manual MANUAL.html OUTPUT.pdf VERSION
//
// Sets the user manual as pages. Pictures are named in the text relative to its folder. A heading whose
// anchor is "x" is found in the contents by the text {page:x}, which becomes the number of its page;
// {version} is the version. The same text makes the same bytes where SOURCE_DATE_EPOCH tells a time.
#include <QAbstractTextDocumentLayout>
#include <QBuffer>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHashFunctions>
#include <QPainter>
#include <QPdfWriter>
#include <QRegularExpression>
#include <QTextBlock>
#include <QTextDocument>
#include <QTimeZone>
#include <QUrl>
#include <QUuid>

#include <cmath>
#include <cstdlib>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int resolution = 150; // dots an inch
constexpr double margin = 20; // millimetres
constexpr int footerHeight = 60; // dots

// The page, from 1, on which each anchor lies.
QHash<QString, int> pagesOfAnchors(const QTextDocument &document)
{
    QHash<QString, int> pages;
    const double height = document.pageSize().height();
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const double top = document.documentLayout()->blockBoundingRect(block).top();
        for (auto fragment = block.begin(); !fragment.atEnd(); ++fragment)
            for (const QString &name : fragment.fragment().charFormat().anchorNames())
                pages.insert(name, static_cast<int>(std::floor(top / height)) + 1);
    }
    return pages;
}

QString withPageNumbers(const QString &text, const QHash<QString, int> &pages)
{
    static const QRegularExpression mark(u"\\{page:([a-z-]+)\\}"_s);
    QString result = text;
    for (auto match = mark.match(result); match.hasMatch(); match = mark.match(result)) {
        if (!pages.contains(match.captured(1)))
            qFatal("no heading has the anchor %s", qPrintable(match.captured(1)));
        result.replace(
            match.capturedStart(), match.capturedLength(), QString::number(pages.value(match.captured(1))));
    }
    return result;
}

void setText(QTextDocument *document, const QString &text, const QSizeF &pageSize, QPdfWriter *writer)
{
    document->documentLayout()->setPaintDevice(writer);
    document->setDocumentMargin(0);
    document->setDefaultFont(QFont(u"DejaVu Sans"_s, 10));
    document->setHtml(text);
    document->setPageSize(pageSize);
}

void drawPages(const QTextDocument &document, QPdfWriter *writer)
{
    QPainter painter(writer);
    const QSizeF page = document.pageSize();
    for (int number = 0; number < document.pageCount(); ++number) {
        if (number > 0)
            writer->newPage();
        painter.save();
        painter.translate(0, -number * page.height());
        QAbstractTextDocumentLayout::PaintContext context;
        context.clip = QRectF(0, number * page.height(), page.width(), page.height());
        context.palette.setColor(QPalette::Text, Qt::black);
        painter.setClipRect(context.clip);
        document.documentLayout()->draw(&painter, context);
        painter.restore();
        if (number == 0)
            continue;
        painter.setFont(QFont(u"DejaVu Sans"_s, 8));
        painter.setPen(Qt::darkGray);
        painter.drawText(QRectF(0, page.height(), page.width(), footerHeight),
            Qt::AlignRight | Qt::AlignBottom, QString::number(number + 1));
    }
}

// Qt knows no time but the clock's, and notes it in as many characters whichever it is.
void setTimes(QByteArray *pages, qint64 secondsSinceEpoch)
{
    const QDateTime time = QDateTime::fromSecsSinceEpoch(secondsSinceEpoch, QTimeZone::utc());
    const std::pair<QByteArray, QByteArray> notes[]
        = { { "Date (D:", time.toString(u"yyyyMMddHHmmss"_s).toLatin1() },
              { "Date=\"", time.toString(u"yyyy-MM-ddTHH:mm:ss"_s).toLatin1() } };
    for (const auto &[key, text] : notes)
        for (qsizetype at = pages->indexOf(key); at >= 0; at = pages->indexOf(key, at + key.size()))
            pages->replace(at + key.size(), text.size(), text);
}

} // namespace

int main(int argc, char **argv)
{
    // The fonts are written in the order of a hash table, and the time with its zone.
    QHashSeed::setDeterministicGlobalSeed();
    qputenv("TZ", "UTC");
    const QGuiApplication application(argc, argv);
    if (argc != 4)
        qFatal("build_manual: which text, output and version?");
    const QString path = QFile::decodeName(argv[1]);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("build_manual: %s cannot be read", argv[1]);
    const QString text
        = QString::fromUtf8(file.readAll()).replace(u"{version}"_s, QString::fromLocal8Bit(argv[3]));

    QBuffer pages;
    pages.open(QIODevice::WriteOnly);
    QPdfWriter writer(&pages);
    writer.setTitle(u"Zorvex Disk Manager: User Manual"_s);
    writer.setCreator(u"Zorvex Disk Manager"_s);
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
    writer.setDocumentId(QUuid::createUuidV5(QUuid(), text));
#endif
    writer.setResolution(resolution);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageMargins(QMarginsF(margin, margin, margin, margin), QPageLayout::Millimeter);
    const QSizeF pageSize(writer.width(), writer.height() - footerHeight);

    QTextDocument document;
    document.setBaseUrl(QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()));
    setText(&document, text, pageSize, &writer);
    setText(&document, withPageNumbers(text, pagesOfAnchors(document)), pageSize, &writer);
    drawPages(document, &writer);

    bool hasTime = false;
    const qint64 time = qEnvironmentVariable("SOURCE_DATE_EPOCH").toLongLong(&hasTime);
    if (hasTime)
        setTimes(&pages.buffer(), time);
    QFile output(QFile::decodeName(argv[2]));
    if (!output.open(QIODevice::WriteOnly) || output.write(pages.buffer()) != pages.size() || !output.flush())
        qFatal("build_manual: %s cannot be written", argv[2]);
    return EXIT_SUCCESS;
}
