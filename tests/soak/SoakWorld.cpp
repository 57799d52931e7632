// SPDX-License-Identifier: MIT
#include "tests/soak/SoakWorld.h"

#include "ui/AlertSheet.h"
#include "ui/OutlineView.h"

#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QTest>

#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int limit = 60000; // milliseconds; what the slowest tool on a machine under load still needs
constexpr int notesKept = 60;

QStringList rowsOf(RealWindow &window)
{
    QStringList rows;
    const OutlineView *view = window.controller().leftOutlineView;
    for (int row = 0; row < view->numberOfRows(); ++row) {
        const DiskRecord record = view->itemAtRow(row);
        ListedMedium listed;
        listed.name = record->bsdName.value_or(QString());
        listed.node = record->daDisk->deviceNode();
        listed.size
            = record->mediaSize ? static_cast<quint64>(record->mediaSize->longLongValue()) : quint64 { 0 };
        listed.isWhole = record->whole;
        listed.isLeaf = record->leaf;
        listed.isMountable = record->mountable;
        listed.isWritable = record->writable;
        listed.volumeName = record->volumeName.value_or(QString());
        listed.mountPoint = record->volumePath ? record->volumePath->toLocalFile() : QString();
        rows.append(listed.line());
    }
    return rows;
}

QStringList flaggedRowsOf(RealWindow &window)
{
    QStringList flagged;
    const OutlineView *view = window.controller().leftOutlineView;
    for (int row = 0; row < view->numberOfRows(); ++row) {
        const DiskRecord record = view->itemAtRow(row);
        if (record->operationInProgress || record->operationInProgressShowFormatTab
            || record->operationInProgressShowMaintenanceTab
            || record->runningOperation != RunningOperation::None)
            flagged.append(record->description());
    }
    return flagged;
}

// Processes whose parent this one is, by number and command. As the run adopts what its children leave
// behind, that is every process that it has started.
QStringList childProcesses()
{
    const QByteArray self = QByteArray::number(getpid());
    QStringList found;
    for (const QString &number : QDir(u"/proc"_s).entryList({ u"[0-9]*"_s })) {
        QFile stat(u"/proc/%1/stat"_s.arg(number));
        if (!stat.open(QIODevice::ReadOnly))
            continue; // it has just ended
        const QByteArray text = stat.readAll();
        // The name, in brackets, may hold anything; state and parent follow it.
        const qsizetype end = text.lastIndexOf(')');
        if (end >= 0 && text.mid(end + 2).split(' ').value(1) == self)
            found.append(number + u' ' + QString::fromUtf8(text.left(end + 3)));
    }
    return found;
}

QString difference(const QStringList &shown, const QStringList &expected)
{
    QString text;
    for (const QString &line : expected) {
        if (!shown.contains(line))
            text += u"\n  is not shown:     "_s + line;
    }
    for (const QString &line : shown) {
        if (!expected.contains(line))
            text += u"\n  is shown instead: "_s + line;
    }
    return text.isEmpty() ? u"\n  the order differs: "_s + shown.join(u"\n    "_s) : text;
}

} // namespace

SoakWorld::SoakWorld(quint32 seed)
    : standing(std::make_unique<RealWindow>())
    , changing(std::make_unique<RealWindow>())
    , m_random(seed)
{
}

std::vector<SoakVolume> SoakWorld::volumes(const std::function<bool(const SoakVolume &)> &condition)
{
    RealWindow &window = anyWindow();
    std::vector<SoakVolume> found;
    for (const SoakDisk &disk : disks) {
        for (int i = 1; i <= disk.partitions.size(); ++i) {
            const QString node = disk.loop->node(i);
            const SoakVolume volume { &window, window.recordOf(node), node };
            if (volume.record && condition(volume))
                found.push_back(volume);
        }
    }
    return found;
}

void SoakWorld::waitFor(const std::function<bool()> &condition, const QString &what) const
{
    if (!QTest::qWaitFor(condition, limit))
        throw SoakFailure { what + u'\n' + unsettled() + u"\nthe disk service lists\n  "
            + service.lines().value_or(QStringList()).join(u"\n  "_s) };
}

void SoakWorld::require(bool condition, const QString &what)
{
    if (!condition)
        throw SoakFailure { what };
}

QString SoakWorld::unsettled() const
{
    const std::optional<QStringList> expected = service.lines();
    if (!expected)
        return u"the disk service does not answer"_s;
    for (RealWindow *window : { standing.get(), changing.get() }) {
        const QString name
            = window == standing.get() ? u"the standing window: "_s : u"the changing window: "_s;
        if (!window->sheets().isEmpty())
            return name + u"a sheet is open: " + window->sheets().constFirst()->informativeText();
        const QStringList flagged = flaggedRowsOf(*window);
        if (!flagged.isEmpty())
            return name + u"flagged as busy: " + flagged.join(u' ');
        const QStringList shown = rowsOf(*window);
        if (shown != *expected)
            return name + u"rows are not what the service has:" + difference(shown, *expected);
    }
    const QStringList children = childProcesses();
    if (!children.isEmpty())
        return u"processes are left: "_s + children.join(u", ");
    return {};
}

void SoakWorld::settle() const
{
    waitFor([this] { return unsettled().isEmpty(); }, u"the windows do not settle"_s);
}

QStringList SoakWorld::dismissSheets(RealWindow &window)
{
    QStringList texts;
    while (!window.sheets().isEmpty()) {
        AlertSheet *const sheet = window.sheets().constFirst();
        texts.append(sheet->informativeText());
        sheet->buttonForReturn(AlertSheet::firstButtonReturn)->click();
    }
    return texts;
}

void SoakWorld::note(const QString &line)
{
    m_notes.append(line);
    if (m_notes.size() > notesKept)
        m_notes.removeFirst();
}

bool isIdleUnmounted(const SoakVolume &volume)
{
    return !volume.record->operationInProgress && !volume.record->volumePath;
}

bool isIdleMounted(const SoakVolume &volume)
{
    return !volume.record->operationInProgress && volume.record->volumePath;
}
