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

#include <unistd.h>

using Element = AccessibilityTree::Element;
using State = AccessibilityTree::State;

namespace {

constexpr int limit = 8000; // milliseconds, to which the time of reading the tree is added

// Another volume of the machine begins with other letters.
const QString volumeName = QStringLiteral("Key") + QString::number(getpid());
// Name, file system and state, as a row says them.
const QString mountedRow = volumeName + QStringLiteral(", ext4, mounted");
const QString unmountedRow = volumeName + QStringLiteral(", ext4, not mounted");

// What a page must hold: the role and the name of each control, and whether it can be used.
struct Control
{
    const char *role;
    QString name;
    bool isEnabled = true;
};

bool press(const QString &key)
{
    return runProgram(
               QStringLiteral("xdotool"), { QStringLiteral("key"), QStringLiteral("--clearmodifiers"), key })
        == 0;
}

// Whether the program's window has the keyboard; asks the window manager for it, which may not be up yet.
bool hasKeyboard()
{
    const QString title = QStringLiteral("Zorvex Disk Manager");
    QByteArray name;
    runProgram(QStringLiteral("xdotool"),
        { QStringLiteral("getactivewindow"), QStringLiteral("getwindowname") }, &name);
    if (QString::fromUtf8(name).trimmed() == title)
        return true;
    runProgram(QStringLiteral("xdotool"),
        { QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--name"),
            QString(u'^' + title + u'$'), QStringLiteral("windowactivate") });
    return false;
}

// Whether the program shows another window than its main one, as a menu is.
bool isMenuOpen()
{
    QByteArray windows;
    runProgram(QStringLiteral("xdotool"),
        { QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--class"),
            QStringLiteral("zorvex-disk-manager") },
        &windows);
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
    void everyOutletOfAVolume();
    void menuOfARow();
    void volumeIsUnmountedMountedAndCheckedByKeyboard();
    void volumeInUseIsNotForcedByReturnOrEscape();
    void volumeIsNotErasedByReturnOrEscape();
    void cleanupTestCase();

private:
    bool is(const QString &role, const QString &name, State state) const;
    bool isFocused(const QString &role, const QString &name) const { return is(role, name, State::Focused); }
    bool isSheetOpen(const QString &button) const
    {
        return is(QStringLiteral("push button"), button, State::Showing);
    }
    QString faultsOf(const QList<Control> &controls) const;
    std::optional<Element> valueOf(const QString &caption) const;
    QString unnamed() const;
    void selectVolume();
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
        { 40, QString::fromLatin1(LoopDisk::linuxType), QStringLiteral("ext4"), volumeName } });
    QCOMPARE(runProgram(QStringLiteral("udisksctl"),
                 { QStringLiteral("mount"), QStringLiteral("-b"), m_disk->node(1) }),
        0);
    // It says so when it manages windows: one that is opened meanwhile could stay hidden.
    m_windowManager.start(
        QStringLiteral("openbox"), { QStringLiteral("--startup"), QStringLiteral("echo started") });
    QVERIFY(m_windowManager.waitForReadyRead(limit));
    m_tree = std::make_unique<AccessibilityTree>();
    m_program.setProcessChannelMode(QProcess::ForwardedChannels);
    // The socket by which a second start finds the first is in the network namespace: in one of its own, the
    // program is alone. The test stays outside, where it hears of its disk's events.
    m_program.start(QStringLiteral("unshare"),
        { QStringLiteral("--net"), QStringLiteral("--"), QStringLiteral("/usr/bin/zorvex-disk-manager"),
            QStringLiteral("-elevated") });
    QVERIFY(m_program.waitForStarted());
    QTRY_VERIFY2_WITH_TIMEOUT(hasKeyboard(), m_windowManager.readAllStandardError().constData(), limit);
    QTRY_VERIFY2_WITH_TIMEOUT(m_tree->find([](const Element &element) {
        return element.role == QLatin1String("tree item") && element.name.startsWith(volumeName)
            && element.name.endsWith(QStringLiteral(", mounted"));
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
        if (element.has(State::Showing) && element.role != QLatin1String("filler"))
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
        return element.role == QLatin1String("label") && element.name == caption
            && element.has(State::Showing);
    });
    return label ? m_tree->labelledBy(*label) : std::nullopt;
}

// What can have the focus and does not say what it is. What only holds others hands the focus on to them.
QString TestKeyboard::unnamed() const
{
    QStringList found;
    for (const Element &element : m_tree->elements()) {
        if (element.has(State::Focusable) && element.has(State::Showing) && element.name.isEmpty()
            && element.role != QLatin1String("filler"))
            found.append(element.role);
    }
    return found.join(u'\n');
}

void TestKeyboard::nothingSelected()
{
    const QString faults = faultsOf({
        { "frame", QStringLiteral("Zorvex Disk Manager") },
        { "menu item", QStringLiteral("File") },
        { "menu item", QStringLiteral("Edit") },
        { "menu item", QStringLiteral("Disk") },
        { "menu item", QStringLiteral("Help") },
        { "tree", QStringLiteral("Disks and volumes") },
        { "page tab", QStringLiteral("Info") },
        { "label", QStringLiteral("Disk icon") },
        { "label", QStringLiteral("Select a disk or volume") },
        { "text", QStringLiteral("Mount point") },
        { "push button", QStringLiteral("Mount"), false },
    });
    QVERIFY2(faults.isEmpty(), qPrintable(faults));
    QCOMPARE(unnamed(), QString());
    QVERIFY(!m_tree->find(QStringLiteral("page tab"), QStringLiteral("Format")));
    QVERIFY(!m_tree->find(QStringLiteral("page tab"), QStringLiteral("Maintenance")));
    const auto divider
        = m_tree->find([](const Element &element) { return element.name == QStringLiteral("Divider"); });
    QVERIFY(divider && divider->has(State::Focusable));
    QVERIFY(m_tree->descriptionOf(*divider).contains(QStringLiteral("arrow keys")));
}

// The tree has the keyboard from the start, and Tab comes back to it; a row is found by its name.
void TestKeyboard::selectVolume()
{
    constexpr int mostStops = 20;
    for (int i = 0; i < mostStops && !isFocused(QStringLiteral("tree"), QStringLiteral("Disks and volumes"));
        ++i)
        QVERIFY(press(QStringLiteral("Tab")));
    QVERIFY(press(QStringLiteral("Home")));
    QCOMPARE(runProgram(QStringLiteral("xdotool"), { QStringLiteral("type"), volumeName }), 0);
    QTRY_VERIFY2_WITH_TIMEOUT(m_tree->find([](const Element &element) {
        return element.role == QLatin1String("tree item") && element.name.startsWith(volumeName + u',')
            && element.has(State::Selected);
    }),
        qPrintable(described()), limit);
}

void TestKeyboard::everyValueOfAVolume()
{
    selectVolume();
    const QString mountPoint = mountPointsOf(m_disk->node(1)).value(0);
    QVERIFY(!mountPoint.isEmpty());
    const QList<std::pair<QString, QString>> values {
        { QStringLiteral("Mounted at:"), QRegularExpression::escape(mountPoint) },
        { QStringLiteral("File system:"), QStringLiteral("^ext4$") },
        { QStringLiteral("Device:"), QStringLiteral("^disk[0-9]+s1$") },
        { QStringLiteral("Whole device:"), QStringLiteral("^No$") },
        { QStringLiteral("Removable:"), QStringLiteral("^Yes$") },
        { QStringLiteral("Ejectable:"), QStringLiteral("^Yes$") },
        { QStringLiteral("Content:"), u'^' + QLatin1String(LoopDisk::linuxType) + u'$' },
        { QStringLiteral("Preferred block size:"), QStringLiteral("^512 bytes$") },
    };
    QSet<QString> places;
    for (const auto &[caption, pattern] : values) {
        const std::optional<Element> value = valueOf(caption);
        QVERIFY2(value && value->has(State::Showing), qPrintable(caption));
        const QString text = value->role == QLatin1String("text") ? m_tree->textOf(*value) : value->name;
        QVERIFY2(QRegularExpression(pattern).match(text).hasMatch(),
            qPrintable(caption + u' ' + text + QStringLiteral(" is not ") + pattern));
        places.insert(value->reference.path.path());
    }
    QCOMPARE(places.size(), values.size()); // each caption has a value of its own
}

void TestKeyboard::everyOutletOfAVolume()
{
    selectVolume();
    QVERIFY2(is(QStringLiteral("tree item"), mountedRow, State::Selected), qPrintable(described()));
    QString faults = faultsOf({
        { "page tab", QStringLiteral("Info") },
        { "page tab", QStringLiteral("Format") },
        { "page tab", QStringLiteral("Maintenance") },
        { "graphic", QStringLiteral("Disk icon") },
        { "label", volumeName },
        { "label", QString(QStringLiteral("Device node: ") + m_disk->node(1)) },
        { "push button", QStringLiteral("Unmount") },
    });
    QVERIFY2(faults.isEmpty(), qPrintable(faults));
    const auto icon = m_tree->find(QStringLiteral("graphic"), QStringLiteral("Disk icon"));
    QCOMPARE(m_tree->descriptionOf(*icon), mountedRow);
    const QRegularExpression space(QStringLiteral("^[0-9.]+ MB free of [0-9.]+ MB$"));
    QVERIFY2(m_tree->find([&](const Element &element) {
        return element.role == QLatin1String("label") && space.match(element.name).hasMatch();
    }),
        qPrintable(described()));
    const auto link = m_tree->find(QStringLiteral("text"), QStringLiteral("Mount point"));
    QVERIFY(link);
    QCOMPARE(m_tree->descriptionOf(*link), QStringLiteral("Link: opens the file manager"));
    QCOMPARE(unnamed(), QString());

    // From the tree to the tabs and along them.
    QVERIFY(press(QStringLiteral("Tab")));
    QVERIFY(press(QStringLiteral("Right")));
    QTRY_VERIFY_WITH_TIMEOUT(
        is(QStringLiteral("combo box"), QStringLiteral("File system:"), State::Showing), limit);
    faults = faultsOf({
        { "combo box", QStringLiteral("File system:") },
        { "text", QStringLiteral("Volume label:") },
        { "push button", QStringLiteral("Format…") },
    });
    QVERIFY2(faults.isEmpty(), qPrintable(faults));
    QCOMPARE(
        m_tree->textOf(*m_tree->find(QStringLiteral("text"), QStringLiteral("Volume label:"))), volumeName);
    QCOMPARE(unnamed(), QString());

    QVERIFY(press(QStringLiteral("Right")));
    QTRY_VERIFY_WITH_TIMEOUT(
        is(QStringLiteral("text"), QStringLiteral("Output of check and repair"), State::Showing), limit);
    faults = faultsOf({
        { "push button", QStringLiteral("Check") },
        { "push button", QStringLiteral("Repair") },
        { "text", QStringLiteral("Output of check and repair") },
    });
    QVERIFY2(faults.isEmpty(), qPrintable(faults));
    QCOMPARE(unnamed(), QString());
    // No operation runs: both pages have a bar for one, and neither shows it.
    int bars = 0;
    for (const Element &element : m_tree->elements()) {
        bars += element.role == QLatin1String("progress bar");
        QVERIFY(element.role != QLatin1String("progress bar") || !element.has(State::Showing));
    }
    QCOMPARE(bars, 2);
}

// The menu is not in the tree that is read here; what its letters do is seen.
void TestKeyboard::menuOfARow()
{
    selectVolume();
    QVERIFY(press(QStringLiteral("Menu")));
    QTRY_VERIFY_WITH_TIMEOUT(isMenuOpen(), limit);
    QVERIFY(press(QStringLiteral("u")));
    QTRY_VERIFY_WITH_TIMEOUT(mountPointsOf(m_disk->node(1)).isEmpty(), limit);
    QTRY_VERIFY_WITH_TIMEOUT(
        is(QStringLiteral("push button"), QStringLiteral("Mount"), State::Enabled), limit);
    QVERIFY(press(QStringLiteral("Menu")));
    QTRY_VERIFY_WITH_TIMEOUT(isMenuOpen(), limit);
    QVERIFY(press(QStringLiteral("m")));
    QTRY_VERIFY_WITH_TIMEOUT(!mountPointsOf(m_disk->node(1)).isEmpty(), limit);
    QTRY_VERIFY_WITH_TIMEOUT(
        is(QStringLiteral("push button"), QStringLiteral("Unmount"), State::Enabled), limit);
}

void TestKeyboard::volumeIsUnmountedMountedAndCheckedByKeyboard()
{
    selectVolume();
    QVERIFY(press(QStringLiteral("alt+u")));
    QTRY_VERIFY_WITH_TIMEOUT(mountPointsOf(m_disk->node(1)).isEmpty(), limit);
    QTRY_VERIFY_WITH_TIMEOUT(is(QStringLiteral("tree item"), unmountedRow, State::Selected), limit);
    QTRY_VERIFY_WITH_TIMEOUT(
        is(QStringLiteral("push button"), QStringLiteral("Mount"), State::Enabled), limit);
    QVERIFY(press(QStringLiteral("alt+m")));
    QTRY_VERIFY_WITH_TIMEOUT(!mountPointsOf(m_disk->node(1)).isEmpty(), limit);
    QTRY_VERIFY_WITH_TIMEOUT(is(QStringLiteral("tree item"), mountedRow, State::Selected), limit);
    QTRY_VERIFY_WITH_TIMEOUT(
        is(QStringLiteral("push button"), QStringLiteral("Unmount"), State::Enabled), limit);

    QVERIFY(press(QStringLiteral("ctrl+k")));
    const auto output = [this] {
        const auto view = m_tree->find(QStringLiteral("text"), QStringLiteral("Output of check and repair"));
        return view && view->has(State::Showing) ? m_tree->textOf(*view) : QString();
    };
    QTRY_VERIFY2_WITH_TIMEOUT(output().contains(QStringLiteral("Finished file system verification on disk")),
        qPrintable(output() + described()), limit);
    QVERIFY2(
        output().contains(QStringLiteral("Started file system verification on disk")), qPrintable(output()));
    QVERIFY2(
        output().contains(QRegularExpression(QStringLiteral("The volume on disk[0-9]+s1 appears to be OK"))),
        qPrintable(output()));
    QTRY_VERIFY_WITH_TIMEOUT(
        is(QStringLiteral("push button"), QStringLiteral("Check"), State::Enabled), limit);
}

// Presses the key while the sheet with this button is open, and waits until it has gone.
void TestKeyboard::pressOnSheet(const QString &key, const QString &button)
{
    QTRY_VERIFY2_WITH_TIMEOUT(isSheetOpen(button), qPrintable(described()), limit);
    QTRY_VERIFY2_WITH_TIMEOUT(
        isFocused(QStringLiteral("push button"), QStringLiteral("Cancel")), qPrintable(described()), limit);
    QVERIFY(press(key));
    QTRY_VERIFY_WITH_TIMEOUT(!isSheetOpen(button), limit);
}

void TestKeyboard::volumeInUseIsNotForcedByReturnOrEscape()
{
    const QStringList mountPoints = mountPointsOf(m_disk->node(1));
    QCOMPARE(mountPoints.size(), 1);
    QFile inUse(mountPoints.constFirst() + QStringLiteral("/in-use"));
    QVERIFY(inUse.open(QIODevice::WriteOnly));
    for (const QString &key : { QStringLiteral("Escape"), QStringLiteral("Return") }) {
        QTRY_VERIFY_WITH_TIMEOUT(
            is(QStringLiteral("push button"), QStringLiteral("Check"), State::Enabled), limit);
        QVERIFY(press(QStringLiteral("ctrl+e")));
        pressOnSheet(key, QStringLiteral("Force Unmount"));
        QCOMPARE(mountPointsOf(m_disk->node(1)), mountPoints);
    }
}

void TestKeyboard::volumeIsNotErasedByReturnOrEscape()
{
    const QString uuid = probed(m_disk->node(1), QStringLiteral("UUID"));
    QVERIFY(!uuid.isEmpty());
    QTRY_VERIFY_WITH_TIMEOUT(
        is(QStringLiteral("push button"), QStringLiteral("Check"), State::Enabled), limit);
    // The menu item leads to the choice of a file system.
    QVERIFY(press(QStringLiteral("ctrl+shift+f")));
    QTRY_VERIFY_WITH_TIMEOUT(isFocused(QStringLiteral("combo box"), QStringLiteral("File system:")), limit);
    QVERIFY(press(QStringLiteral("Down")));
    for (const QString &key : { QStringLiteral("Escape"), QStringLiteral("Return") }) {
        QVERIFY(press(QStringLiteral("alt+r")));
        pressOnSheet(key, QStringLiteral("Erase and Format"));
        QVERIFY(is(QStringLiteral("push button"), QStringLiteral("Format…"), State::Enabled));
        QCOMPARE(probed(m_disk->node(1), QStringLiteral("UUID")), uuid);
    }
}

QTEST_GUILESS_MAIN(TestKeyboard)
#include "tst_keyboard.moc"
