// SPDX-License-Identifier: MIT
#include "tests/support/FaultCheck.h"

#include "tests/support/WindowTime.h"
#include "ui/AlertSheet.h"
#include "ui/OutlineView.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int limit = 30000; // milliseconds
constexpr int answerLimit = 1000; // milliseconds

QList<qint64> childProcesses()
{
    QList<qint64> children;
    const QDir threads(u"/proc/self/task"_s);
    for (const QString &thread : threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile file(threads.filePath(thread + u"/children"_s));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        for (const QByteArray &pid : file.readAll().simplified().split(' ')) {
            if (!pid.isEmpty())
                children.append(pid.toLongLong());
        }
    }
    return children;
}

QString nameOfProcess(qint64 pid)
{
    QFile file(u"/proc/%1/cmdline"_s.arg(pid));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll().replace('\0', ' ')) : QString();
}

} // namespace

FaultCheck::FaultCheck(RealWindow &window)
    : m_window(window)
    , m_bystander({ { 8, QString::fromLatin1(LoopDisk::linuxType), u"ext4"_s, u"Bystander"_s } })
    , m_hash(m_bystander.imageHash())
    , m_children(childProcesses())
{
}

bool FaultCheck::windowAnswers() const
{
    bool hasAnswered = false;
    const WindowTime time;
    QMetaObject::invokeMethod(
        &m_window.window(), [&] { hasAnswered = !m_window.window().grab().isNull(); }, Qt::QueuedConnection);
    return QTest::qWaitFor([&] { return hasAnswered; }, limit) && time.milliseconds() <= answerLimit;
}

QStringList FaultCheck::busyRows() const
{
    QStringList rows;
    const OutlineView *view = m_window.controller().leftOutlineView;
    for (int row = 0; row < view->numberOfRows(); ++row) {
        const DiskRecord item = view->itemAtRow(row);
        if (item->operationInProgress || item->operationInProgressShowFormatTab
            || item->operationInProgressShowMaintenanceTab)
            rows.append(item->description());
    }
    return rows;
}

QString FaultCheck::problem(const QStringList &alerts)
{
    const auto leftChildren = [this] {
        QStringList left;
        for (const qint64 pid : childProcesses()) {
            if (!m_children.contains(pid))
                left.append(nameOfProcess(pid));
        }
        return left;
    };
    const auto told = [this] {
        QStringList texts;
        for (const AlertSheet *sheet : m_window.sheets())
            texts.append(sheet->informativeText());
        return texts;
    };
    const bool isQuiet = QTest::qWaitFor(
        [&] { return busyRows().isEmpty() && leftChildren().isEmpty() && told() == alerts; }, limit);
    if (!isQuiet)
        return u"marked as busy: \"%1\", processes that are left: \"%2\", told: \"%3\", not \"%4\""_s.arg(
            busyRows().join(u' '), leftChildren().join(u'|'), told().join(u'|'), alerts.join(u'|'));
    if (!windowAnswers())
        return u"the window does not answer"_s;
    for (qsizetype i = 0; i < alerts.size(); ++i)
        m_window.endSheet(AlertSheet::firstButtonReturn);
    if (m_window.controller().alertInProgress)
        return u"an alert counts as open"_s;
    if (m_bystander.imageHash() != m_hash)
        return u"another disk has changed"_s;
    return {};
}
