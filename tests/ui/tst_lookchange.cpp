// SPDX-License-Identifier: MIT
//
// The desktop's colours, text size and style change while the window is open: it then looks like one that was
// opened afterwards.
#include "tests/support/TestController.h"

#include "ui/AlertSheet.h"
#include "ui/ImageButton.h"
#include "ui/OutlineView.h"
#include "ui/SplitView.h"

#include <QApplication>
#include <QComboBox>
#include <QStyle>
#include <QTabWidget>
#include <QTest>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Look
{
    QString style;
    QPalette palette;
    qreal points = 10;

    void apply() const
    {
        static QString styleInUse;
        if (std::exchange(styleInUse, style) != style)
            QApplication::setStyle(style);
        QApplication::setPalette(palette);
        QFont font = QApplication::font();
        font.setPointSizeF(points);
        QApplication::setFont(font);
    }
};

QPalette lightPalette()
{
    return { QColor(0xef, 0xef, 0xef) };
}

QPalette darkPalette()
{
    QPalette palette(QColor(0x2b, 0x2b, 0x2b));
    palette.setColor(QPalette::Highlight, QColor(0x15, 0x53, 0x9e));
    palette.setColor(QPalette::Link, QColor(0x6c, 0xb4, 0xff));
    return palette;
}

QPalette contrastPalette()
{
    QPalette palette;
    for (const QPalette::ColorRole role : { QPalette::Window, QPalette::Base, QPalette::Button })
        palette.setColor(role, Qt::black);
    for (const QPalette::ColorRole role : { QPalette::WindowText, QPalette::Text, QPalette::ButtonText })
        palette.setColor(role, Qt::white);
    palette.setColor(QPalette::Highlight, Qt::yellow);
    palette.setColor(QPalette::HighlightedText, Qt::black);
    palette.setColor(QPalette::Link, Qt::yellow);
    return palette;
}

void showDisks(TestController &test)
{
    test.platform().filesystemDirectories
        = { QStringLiteral(ZORVEX_FILESYSTEMS "/System"), QStringLiteral(ZORVEX_FILESYSTEMS "/Local") };
    test.launch();
    const MemoryDiskRef whole = makeDisk(u"disk2"_s);
    whole->description->insert(DAKey::mediaLeaf, false);
    whole->description->insert(DAKey::mediaRemovable, true);
    test.add(whole);
    test.add(makePartition(u"disk2s2"_s, 2097152, u"Archive"_s));
    const MemoryDiskRef data = makeMountedVolume();
    test.mount(data, u"/media/DATA"_s, 4096);
    test.add(data);
    test.add(makeDisk(u"disk3"_s));
    test.window().resize(1200, 760);
    test.controller().mainSplitView->setFirstPaneWidth(300);
    TestController::handlePostedEvents();
}

// A check that has ended: a verdict, and what the tool has said.
void finishRun(TestController &test)
{
    const DiskRecord disk = test.recordOf(u"disk2s1"_s);
    disk->finishedRun
        = FinishedRun { false, FinishedRun::Outcome::Errors, QTime(13, 5), std::chrono::seconds(42) };
    disk->checkRepairOutput.emplace();
    const QByteArray said = "Checking the volume...\nA file is damaged.\n"_ba;
    disk->checkRepairOutput->append(said.constData(), said.size());
}

// Once nothing is laid out any more.
QImage settledPicture(QWidget *window)
{
    QImage picture;
    [[maybe_unused]] const bool isSettled = QTest::qWaitFor([&] {
        const QImage last = std::exchange(picture, window->grab().toImage());
        return picture == last;
    });
    return picture;
}

// What the window looks like, page by page.
QList<QImage> picturesOf(TestController &test)
{
    QList<QImage> pictures;
    QTabWidget *const tabs = test.controller().rightTabView;
    for (int i = 0; i < tabs->count(); ++i) {
        tabs->setCurrentIndex(i);
        pictures.append(settledPicture(&test.window()));
    }
    return pictures;
}

} // namespace

class TestLookChange : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void windowFollows_data();
    void windowFollows();
    void emptyWindowFollows_data();
    void emptyWindowFollows();
    void windowGrowsWithTheText();
    void sheetFollows_data();
    void sheetFollows();
    void questionKeepsItsAnswer();

private:
    static void addLooks();
    static void addLooksOfWindow();
    static AlertSheet *askBeforeFormat(TestController &test);
    static void compare(const QList<QImage> &changed, const QList<QImage> &fresh, const QString &what);

    const Look m_usual { u"Fusion"_s, lightPalette(), 10 };
};

Q_DECLARE_METATYPE(Look)

void TestLookChange::addLooks()
{
    QTest::addColumn<Look>("look");
    QTest::newRow("dark") << Look { u"Fusion"_s, darkPalette(), 10 };
    QTest::newRow("high contrast") << Look { u"Fusion"_s, contrastPalette(), 10 };
    QTest::newRow("large text") << Look { u"Fusion"_s, lightPalette(), 13 };
    QTest::newRow("dark with larger text") << Look { u"Fusion"_s, darkPalette(), 15 };
}

void TestLookChange::addLooksOfWindow()
{
    addLooks();
    QTest::newRow("another style") << Look { u"Windows"_s, lightPalette(), 10 };
}

void TestLookChange::compare(const QList<QImage> &changed, const QList<QImage> &fresh, const QString &what)
{
    QCOMPARE(changed.size(), fresh.size());
    for (int i = 0; i < fresh.size(); ++i) {
        if (changed[i] == fresh[i])
            continue;
        const QString name = u"%1, %2, page %3"_s.arg(what, QLatin1String(QTest::currentDataTag())).arg(i);
        const QDir folder(QStringLiteral(ZORVEX_PICTURES));
        QVERIFY(folder.mkpath(u"."_s));
        QVERIFY(changed[i].save(folder.filePath(name + u", changed.png"_s)));
        QVERIFY(fresh[i].save(folder.filePath(name + u", fresh.png"_s)));
        QTest::qFail(
            qPrintable(name + u" differs: the pictures are in "_s + folder.path()), __FILE__, __LINE__);
    }
}

void TestLookChange::windowFollows_data()
{
    addLooksOfWindow();
}

void TestLookChange::windowFollows()
{
    QFETCH(const Look, look);
    for (const auto &disk : { u"disk2"_s, u"disk2s1"_s, u"disk2s2"_s }) {
        QList<QImage> pictures[2];
        for (const bool isFresh : { false, true }) {
            (isFresh ? look : m_usual).apply();
            TestController test;
            showDisks(test);
            finishRun(test);
            test.select(disk);
            if (!isFresh) {
                picturesOf(test); // all pages have been laid out
                test.controller().rightTabView->setCurrentIndex(0);
                look.apply();
            }
            pictures[isFresh] = picturesOf(test);
        }
        compare(pictures[0], pictures[1], disk);
    }
}

void TestLookChange::emptyWindowFollows_data()
{
    addLooksOfWindow();
}

void TestLookChange::emptyWindowFollows()
{
    QFETCH(const Look, look);
    QList<QImage> pictures[2];
    for (const bool isFresh : { false, true }) {
        (isFresh ? look : m_usual).apply();
        TestController test;
        test.launch();
        test.window().resize(1200, 760);
        test.controller().mainSplitView->setFirstPaneWidth(300);
        test.service.setAvailable(false);
        TestController::handlePostedEvents();
        if (!isFresh)
            look.apply();
        pictures[isFresh] = picturesOf(test);
    }
    compare(pictures[0], pictures[1], u"no service"_s);
}

void TestLookChange::windowGrowsWithTheText()
{
    m_usual.apply();
    TestController test;
    test.launch();
    const QSize least = test.window().centralWidget()->minimumSize();
    Look large = m_usual;
    large.points = 13;
    large.apply();
    TestController::handlePostedEvents();
    const QSize grown = test.window().centralWidget()->minimumSize();
    TestController fresh;
    fresh.launch();
    QCOMPARE(grown, fresh.window().centralWidget()->minimumSize());
    QVERIFY(grown.width() > least.width());
    QVERIFY(test.window().centralWidget()->width() >= grown.width());
    m_usual.apply();
    TestController::handlePostedEvents();
    QCOMPARE(test.window().centralWidget()->minimumSize(), least);
}

// A message box keeps the places of its buttons when the style is another.
void TestLookChange::sheetFollows_data()
{
    addLooks();
}

AlertSheet *TestLookChange::askBeforeFormat(TestController &test)
{
    showDisks(test);
    test.select(u"disk2s1"_s);
    QComboBox *const filesystems = test.controller().formatFilesystemsPopupButton;
    filesystems->setCurrentIndex(filesystems->findText(u"MS-DOS"_s, Qt::MatchStartsWith));
    test.controller().formatButton->click();
    return test.sheets().value(0);
}

void TestLookChange::sheetFollows()
{
    QFETCH(const Look, look);
    QImage pictures[2];
    for (const bool isFresh : { false, true }) {
        (isFresh ? look : m_usual).apply();
        TestController test;
        AlertSheet *const sheet = askBeforeFormat(test);
        QVERIFY(sheet);
        settledPicture(sheet);
        look.apply();
        pictures[isFresh] = settledPicture(sheet);
        QTest::keyClick(sheet, Qt::Key_Escape);
        QTRY_VERIFY(test.sheets().isEmpty());
    }
    compare({ pictures[0] }, { pictures[1] }, u"sheet"_s);
}

// The row of buttons is made once more, and the focus must not go to the one that erases.
void TestLookChange::questionKeepsItsAnswer()
{
    m_usual.apply();
    TestController test;
    AlertSheet *const sheet = askBeforeFormat(test);
    QVERIFY(sheet);
    const QPushButton *const cancel = sheet->buttonForReturn(AlertSheet::firstButtonReturn + 1);
    QTRY_VERIFY(cancel->hasFocus());
    Look { u"Windows"_s, lightPalette(), 10 }.apply();
    settledPicture(sheet);
    QVERIFY(cancel->isDefault() && cancel->hasFocus());
    QVERIFY(sheet->rect().contains(cancel->mapTo(sheet, cancel->rect().bottomRight())));
    QTest::keyClick(sheet, Qt::Key_Return);
    QTRY_VERIFY(test.sheets().isEmpty());
    QVERIFY(!test.recordOf(u"disk2s1"_s)->operationInProgress);
}

QTEST_MAIN(TestLookChange)
#include "tst_lookchange.moc"
