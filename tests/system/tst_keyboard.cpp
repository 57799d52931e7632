// SPDX-License-Identifier: MIT
//
// The installed program as a screen reader and a keyboard have it: its accessibility tree read over AT-SPI,
// and volumes unmounted, mounted, checked and kept from being erased by key presses alone. Runs on a virtual
// display with a window manager and an accessibility bus of its own.
#include "tests/support/AccessibilityTree.h"
#include "tests/support/LoopDisk.h"
#include "tests/support/RealWindow.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

#include <algorithm>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

using Element = AccessibilityTree::Element;
using State = AccessibilityTree::State;

namespace {

constexpr int limit = 8000; // milliseconds, to which the time of reading the tree is added

// Another volume of the machine begins with other letters.
const QString volumeName = u"Key"_s + QString::number(getpid());
// Name, file system and state, as a row says them.
const QString mountedRow = volumeName + u", ext4, mounted"_s;
const QString unmountedRow = volumeName + u", ext4, not mounted"_s;

// What a page must hold: the role and the name of each control, and whether it can be used.
struct Control
{
    const char *role;
    QString name;
    bool isEnabled = true;
};

bool press(const QString &key)
{
    return runProgram(u"xdotool"_s, { u"key"_s, u"--clearmodifiers"_s, key }) == 0;
}

// Whether the program's window has the keyboard; asks the window manager for it, which may not be up yet.
bool hasKeyboard()
{
    const QString title = u"Zorvex Disk Manager"_s;
    QByteArray name;
    runProgram(u"xdotool"_s, { u"getactivewindow"_s, u"getwindowname"_s }, &name);
    if (QString::fromUtf8(name).trimmed() == title)
        return true;
    runProgram(u"xdotool"_s,
        { u"search"_s, u"--onlyvisible"_s, u"--name"_s, QString(u'^' + title + u'$'), u"windowactivate"_s });
    return false;
}

// Whether the program shows another window than its main one, as a menu is.
bool isMenuOpen()
{
    QByteArray windows;
    runProgram(
        u"xdotool"_s, { u"search"_s, u"--onlyvisible"_s, u"--class"_s, u"zorvex-disk-manager"_s }, &windows);
    return windows.count('\n') > 1;
}

} // namespace

class TestKeyboard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void nothingSelected();
    void everyValueOfAVolume();
    void diskIsAListOfItsVolumes();
    void everyOutletOfAVolume();
    void menuOfARow();
    void volumeIsUnmountedMountedAndCheckedByKeyboard();
    void volumeInUseIsNotForcedByReturnOrEscape();
    void volumeIsNotErasedByReturnOrEscape();
    void diskIsNotErasedByReturnOrEscape();
    void cleanupTestCase();

private:
    bool is(const QString &role, const QString &name, State state) const;
    bool isFocused(const QString &role, const QString &name) const { return is(role, name, State::Focused); }
    bool isSheetOpen(const QString &button) const { return is(u"push button"_s, button, State::Showing); }
    QString faultsOf(const QList<Control> &controls) const;
    std::optional<Element> valueOf(const QString &caption) const;
    QString unnamed() const;
    void selectVolume();
    void selectDisk();
    void goTo(const QString &role, const QString &name);
    void pressOnSheet(const QString &key, const QString &button);
    QString described() const; // what is on the screen, as it is told

    std::unique_ptr<LoopDisk> m_disk;
    std::unique_ptr<AccessibilityTree> m_tree;
    QProcess m_windowManager;
    QProcess m_program;
};

void TestKeyboard::initTestCase()
{
    m_disk = std::make_unique<LoopDisk>(QList<LoopDisk::Partition> {
        { 40, QString::fromLatin1(LoopDisk::linuxType), u"ext4"_s, volumeName } });
    QCOMPARE(runProgram(u"udisksctl"_s, { u"mount"_s, u"-b"_s, m_disk->node(1) }), 0);
    // It says so when it manages windows: one that is opened meanwhile could stay hidden.
    m_windowManager.start(u"openbox"_s, { u"--startup"_s, u"echo started"_s });
    QVERIFY(m_windowManager.waitForReadyRead(limit));
    m_tree = std::make_unique<AccessibilityTree>();
    m_program.setProcessChannelMode(QProcess::ForwardedChannels);
    // The socket by which a second start finds the first is in the network namespace: in one of its own, the
    // program is alone. The test stays outside, where it hears of its disk's events.
    m_program.start(u"unshare"_s, { u"--net"_s, u"--"_s, u"/usr/bin/zorvex-disk-manager"_s, u"-elevated"_s });
    QVERIFY(m_program.waitForStarted());
    QTRY_VERIFY2_WITH_TIMEOUT(hasKeyboard(), m_windowManager.readAllStandardError().constData(), limit);
    QTRY_VERIFY2_WITH_TIMEOUT(m_tree->find([](const Element &element) {
        return element.role == "tree item"_L1 && element.name.startsWith(volumeName)
            && element.name.endsWith(u", mounted"_s);
    }),
        qPrintable(described()), limit);
}

void TestKeyboard::cleanupTestCase()
{
    for (QProcess *process : { &m_program, &m_windowManager }) {
        process->terminate();
        process->waitForFinished();
    }
    m_tree.reset();
}

bool TestKeyboard::is(const QString &role, const QString &name, State state) const
{
    const auto found = m_tree->find([&](const Element &element) {
        return element.role == role && element.name == name && element.has(state);
    });
    return found.has_value();
}

QString TestKeyboard::described() const
{
    QList<Element> shown;
    for (const Element &element : m_tree->elements()) {
        if (element.has(State::Showing) && element.role != "filler"_L1)
            shown.append(element);
    }
    return AccessibilityTree::listed(shown).left(900); // a message is cut soon after
}

// What is missing on the page, or is there in another state; empty when nothing is.
QString TestKeyboard::faultsOf(const QList<Control> &controls) const
{
    const QList<Element> elements = m_tree->elements();
    QStringList faults;
    for (const Control &control : controls) {
        const bool isThere = std::any_of(elements.begin(), elements.end(), [&](const Element &element) {
            return element.role == QLatin1String(control.role) && element.name == control.name
                && element.has(State::Showing) && element.has(State::Enabled) == control.isEnabled;
        });
        if (!isThere)
            faults.append(QLatin1String(control.role) + u' ' + control.name);
    }
    return faults.isEmpty() ? QString()
                            : QString(faults.join(u'\n') + u"\nin\n" + AccessibilityTree::listed(elements));
}

// What stands beside the caption on the page that is shown.
std::optional<Element> TestKeyboard::valueOf(const QString &caption) const
{
    const auto label = m_tree->find([&](const Element &element) {
        return element.role == "label"_L1 && element.name == caption && element.has(State::Showing);
    });
    return label ? m_tree->labelledBy(*label) : std::nullopt;
}

// What can have the focus and does not say what it is. What only holds others hands the focus on to them.
QString TestKeyboard::unnamed() const
{
    QStringList found;
    for (const Element &element : m_tree->elements()) {
        if (element.has(State::Focusable) && element.has(State::Showing) && element.name.isEmpty()
            && element.role != "filler"_L1)
            found.append(element.role);
    }
    return found.join(u'\n');
}

void TestKeyboard::nothingSelected()
{
    const QString faults = faultsOf({
        { "frame", u"Zorvex Disk Manager"_s },
        { "menu item", u"File"_s },
        { "menu item", u"Edit"_s },
        { "menu item", u"Disk"_s },
        { "menu item", u"Help"_s },
        { "tree", u"Disks and volumes"_s },
        { "page tab", u"Info"_s },
        { "graphic", u"Disk icon"_s, false },
        { "label", u"Select a disk or volume"_s },
        { "label", u"What it holds and what can be done with it appears here."_s },
        { "push button", u"Mount"_s, false },
    });
    QVERIFY2(faults.isEmpty(), qPrintable(faults));
    QCOMPARE(unnamed(), QString());
    // A disabled button says why.
    const auto mount = m_tree->find(u"push button"_s, u"Mount"_s);
    QCOMPARE(m_tree->descriptionOf(*mount), u"Select a disk or volume"_s);
    QVERIFY(!m_tree->find(u"page tab"_s, u"Format"_s));
    QVERIFY(!m_tree->find(u"page tab"_s, u"Maintenance"_s));
    const auto divider = m_tree->find([](const Element &element) { return element.name == u"Divider"_s; });
    QVERIFY(divider && divider->has(State::Focusable));
    QVERIFY(m_tree->descriptionOf(*divider).contains(u"press Tab"_s));
}

// Presses Tab until the control has the keyboard.
void TestKeyboard::goTo(const QString &role, const QString &name)
{
    constexpr int mostStops = 20;
    for (int i = 0; i < mostStops && !isFocused(role, name); ++i)
        QVERIFY(press(u"Tab"_s));
    QVERIFY2(isFocused(role, name), qPrintable(described()));
}

// A row is found by its name.
void TestKeyboard::selectVolume()
{
    goTo(u"tree"_s, u"Disks and volumes"_s);
    QVERIFY(press(u"Home"_s));
    QCOMPARE(runProgram(u"xdotool"_s, { u"type"_s, volumeName }), 0);
    QTRY_VERIFY2_WITH_TIMEOUT(m_tree->find([](const Element &element) {
        return element.role == "tree item"_L1 && element.name.startsWith(volumeName + u',')
            && element.has(State::Selected);
    }),
        qPrintable(described()), limit);
}

// The row above that of its only volume.
void TestKeyboard::selectDisk()
{
    selectVolume();
    QVERIFY(press(u"Up"_s));
    QTRY_VERIFY2_WITH_TIMEOUT(
        is(u"list"_s, u"Volumes on this disk"_s, State::Showing), qPrintable(described()), limit);
}

void TestKeyboard::everyValueOfAVolume()
{
    selectVolume();
    const QString mountPoint = mountPointsOf(m_disk->node(1)).value(0);
    QVERIFY(!mountPoint.isEmpty());
    const QList<std::pair<QString, QString>> values {
        { u"Mounted at:"_s, QRegularExpression::escape(mountPoint) },
        { u"File system:"_s, u"^ext4$"_s },
        { u"Device:"_s, u"^disk[0-9]+s1$"_s },
        { u"Whole device:"_s, u"^No$"_s },
        { u"Removable:"_s, u"^Yes$"_s },
        { u"Ejectable:"_s, u"^Yes$"_s },
        { u"Content type:"_s, u'^' + QLatin1String(LoopDisk::linuxType) + u'$' },
        { u"Block size:"_s, u"^512 bytes$"_s },
    };
    QSet<QString> places;
    for (const auto &[caption, pattern] : values) {
        const std::optional<Element> value = valueOf(caption);
        QVERIFY2(value && value->has(State::Showing), qPrintable(caption));
        const QString text = value->role == "text"_L1 ? m_tree->textOf(*value) : value->name;
        QVERIFY2(QRegularExpression(pattern).match(text).hasMatch(),
            qPrintable(caption + u' ' + text + u" is not "_s + pattern));
        places.insert(value->reference.path.path());
    }
    QCOMPARE(places.size(), values.size()); // each caption has a value of its own
}

void TestKeyboard::diskIsAListOfItsVolumes()
{
    selectDisk();
    QCOMPARE(unnamed(), QString());
    const auto volume = m_tree->find([](const Element &element) {
        return element.role == "list item"_L1 && element.name.startsWith(volumeName)
            && element.has(State::Showing);
    });
    QVERIFY2(volume && volume->has(State::Focusable), qPrintable(described()));
    goTo(u"list item"_s, volume->name);
    QVERIFY(press(u"Return"_s));
    QTRY_VERIFY2_WITH_TIMEOUT(
        is(u"tree item"_s, mountedRow, State::Selected), qPrintable(described()), limit);
}

void TestKeyboard::everyOutletOfAVolume()
{
    selectVolume();
    QVERIFY2(is(u"tree item"_s, mountedRow, State::Selected), qPrintable(described()));
    QString faults = faultsOf({
        { "page tab", u"Info"_s },
        { "page tab", u"Format"_s },
        { "page tab", u"Maintenance"_s },
        { "graphic", u"Disk icon"_s },
        { "label", volumeName },
        { "label", QString(u"Device node: "_s + m_disk->node(1)) },
        { "push button", u"Unmount"_s },
    });
    QVERIFY2(faults.isEmpty(), qPrintable(faults));
    const auto icon = m_tree->find(u"graphic"_s, u"Disk icon"_s);
    QCOMPARE(m_tree->descriptionOf(*icon), mountedRow);
    const QRegularExpression space(u"^[0-9.]+ MB free of [0-9.]+ MB$"_s);
    QVERIFY2(m_tree->find([&](const Element &element) {
        return element.role == "label"_L1 && space.match(element.name).hasMatch();
    }),
        qPrintable(described()));
    const auto link = m_tree->find(u"text"_s, u"Mount point"_s);
    QVERIFY(link);
    QCOMPARE(m_tree->descriptionOf(*link), u"Link: opens the file manager"_s);
    QCOMPARE(unnamed(), QString());

    // From the tree to the tabs and along them.
    QVERIFY(press(u"Tab"_s));
    QVERIFY(press(u"Right"_s));
    QTRY_VERIFY_WITH_TIMEOUT(is(u"combo box"_s, u"File system:"_s, State::Showing), limit);
    faults = faultsOf({
        { "combo box", u"File system:"_s },
        { "text", u"Volume label:"_s },
        { "push button", u"Format…"_s },
    });
    QVERIFY2(faults.isEmpty(), qPrintable(faults));
    QCOMPARE(m_tree->textOf(*m_tree->find(u"text"_s, u"Volume label:"_s)), volumeName);
    QCOMPARE(unnamed(), QString());

    QVERIFY(press(u"Right"_s));
    QTRY_VERIFY_WITH_TIMEOUT(is(u"text"_s, u"Check and repair output"_s, State::Showing), limit);
    faults = faultsOf({
        { "push button", u"Check"_s },
        { "push button", u"Repair"_s },
        { "text", u"Check and repair output"_s },
    });
    QVERIFY2(faults.isEmpty(), qPrintable(faults));
    QCOMPARE(unnamed(), QString());
    // No operation runs: each page has a bar for one, and none shows it. That of the Info page tells how full
    // the volume is.
    int bars = 0;
    for (const Element &element : m_tree->elements()) {
        bars += element.role == "progress bar"_L1;
        QVERIFY(element.role != "progress bar"_L1 || !element.has(State::Showing));
    }
    QCOMPARE(bars, 3);
}

// The menu is not in the tree that is read here; what its letters do is seen.
void TestKeyboard::menuOfARow()
{
    selectVolume();
    QVERIFY(press(u"Menu"_s));
    QTRY_VERIFY_WITH_TIMEOUT(isMenuOpen(), limit);
    QVERIFY(press(u"u"_s));
    QTRY_VERIFY_WITH_TIMEOUT(mountPointsOf(m_disk->node(1)).isEmpty(), limit);
    QTRY_VERIFY_WITH_TIMEOUT(is(u"push button"_s, u"Mount"_s, State::Enabled), limit);
    QVERIFY(press(u"Menu"_s));
    QTRY_VERIFY_WITH_TIMEOUT(isMenuOpen(), limit);
    QVERIFY(press(u"m"_s));
    QTRY_VERIFY_WITH_TIMEOUT(!mountPointsOf(m_disk->node(1)).isEmpty(), limit);
    QTRY_VERIFY_WITH_TIMEOUT(is(u"push button"_s, u"Unmount"_s, State::Enabled), limit);
}

void TestKeyboard::volumeIsUnmountedMountedAndCheckedByKeyboard()
{
    selectVolume();
    QVERIFY(press(u"alt+u"_s));
    QTRY_VERIFY_WITH_TIMEOUT(mountPointsOf(m_disk->node(1)).isEmpty(), limit);
    QTRY_VERIFY_WITH_TIMEOUT(is(u"tree item"_s, unmountedRow, State::Selected), limit);
    QTRY_VERIFY_WITH_TIMEOUT(is(u"push button"_s, u"Mount"_s, State::Enabled), limit);
    QVERIFY(press(u"alt+m"_s));
    QTRY_VERIFY_WITH_TIMEOUT(!mountPointsOf(m_disk->node(1)).isEmpty(), limit);
    QTRY_VERIFY_WITH_TIMEOUT(is(u"tree item"_s, mountedRow, State::Selected), limit);
    QTRY_VERIFY_WITH_TIMEOUT(is(u"push button"_s, u"Unmount"_s, State::Enabled), limit);

    QVERIFY(press(u"ctrl+k"_s));
    const auto output = [this] {
        const auto view = m_tree->find(u"text"_s, u"Check and repair output"_s);
        return view && view->has(State::Showing) ? m_tree->textOf(*view) : QString();
    };
    QTRY_VERIFY2_WITH_TIMEOUT(output().contains(u"Finished file system verification on disk"_s),
        qPrintable(output() + described()), limit);
    QVERIFY2(output().contains(u"Started file system verification on disk"_s), qPrintable(output()));
    QVERIFY2(output().contains(QRegularExpression(u"The volume on disk[0-9]+s1 appears to be OK"_s)),
        qPrintable(output()));
    QTRY_VERIFY_WITH_TIMEOUT(is(u"push button"_s, u"Check"_s, State::Enabled), limit);
    QTRY_VERIFY2_WITH_TIMEOUT(m_tree->find([](const Element &element) {
        return element.role == "label"_L1 && element.name.startsWith(volumeName + u": no errors found"_s)
            && element.has(State::Showing);
    }),
        qPrintable(described()), limit);
}

// Presses the key while the sheet with this button is open, and waits until it has gone.
void TestKeyboard::pressOnSheet(const QString &key, const QString &button)
{
    QTRY_VERIFY2_WITH_TIMEOUT(isSheetOpen(button), qPrintable(described()), limit);
    QTRY_VERIFY2_WITH_TIMEOUT(isFocused(u"push button"_s, u"Cancel"_s), qPrintable(described()), limit);
    QVERIFY(press(key));
    QTRY_VERIFY_WITH_TIMEOUT(!isSheetOpen(button), limit);
}

void TestKeyboard::volumeInUseIsNotForcedByReturnOrEscape()
{
    const QStringList mountPoints = mountPointsOf(m_disk->node(1));
    QCOMPARE(mountPoints.size(), 1);
    QFile inUse(mountPoints.constFirst() + u"/in-use"_s);
    QVERIFY(inUse.open(QIODevice::WriteOnly));
    for (const QString &key : { u"Escape"_s, u"Return"_s }) {
        QTRY_VERIFY_WITH_TIMEOUT(is(u"push button"_s, u"Check"_s, State::Enabled), limit);
        QVERIFY(press(u"ctrl+e"_s));
        pressOnSheet(key, u"Force Unmount"_s);
        QCOMPARE(mountPointsOf(m_disk->node(1)), mountPoints);
    }
}

void TestKeyboard::volumeIsNotErasedByReturnOrEscape()
{
    const QString uuid = probed(m_disk->node(1), u"UUID"_s);
    QVERIFY(!uuid.isEmpty());
    QTRY_VERIFY_WITH_TIMEOUT(is(u"push button"_s, u"Check"_s, State::Enabled), limit);
    // The menu item leads to the choice of a file system.
    QVERIFY(press(u"ctrl+shift+f"_s));
    QTRY_VERIFY_WITH_TIMEOUT(isFocused(u"combo box"_s, u"File system:"_s), limit);
    QVERIFY(press(u"Down"_s));
    for (const QString &key : { u"Escape"_s, u"Return"_s }) {
        QVERIFY(press(u"alt+r"_s));
        pressOnSheet(key, u"Erase and Format"_s);
        QVERIFY(is(u"push button"_s, u"Format…"_s, State::Enabled));
        QCOMPARE(probed(m_disk->node(1), u"UUID"_s), uuid);
    }
}

void TestKeyboard::diskIsNotErasedByReturnOrEscape()
{
    const QString table = probed(m_disk->node(), u"PTUUID"_s);
    QVERIFY(!table.isEmpty());
    for (const QString &key : { u"Escape"_s, u"Return"_s }) {
        selectDisk();
        QVERIFY(press(u"alt+d"_s));
        QTRY_VERIFY_WITH_TIMEOUT(isMenuOpen(), limit);
        // A menu that is to be seen need not have the keyboard yet.
        QTRY_VERIFY2_WITH_TIMEOUT(isSheetOpen(u"Erase…"_s) || (press(u"d"_s) && isSheetOpen(u"Erase…"_s)),
            qPrintable(described()), limit);
        for (const QString &caption : { u"File system:"_s, u"Volume label:"_s, u"Partition scheme:"_s }) {
            const std::optional<Element> field = valueOf(caption);
            QVERIFY2(field && field->has(State::Focusable), qPrintable(caption));
        }
        QCOMPARE(unnamed(), QString());
        QVERIFY(press(u"Return"_s));
        pressOnSheet(key, u"Erase and Format"_s);
        QCOMPARE(probed(m_disk->node(), u"PTUUID"_s), table);
    }
}

QTEST_GUILESS_MAIN(TestKeyboard)
#include "tst_keyboard.moc"
