// SPDX-License-Identifier: MIT
//
// The installed program as a screen reader and a keyboard have it: its accessibility tree read over AT-SPI,
// and a volume unmounted, mounted and checked by key presses alone. Runs on a virtual display with a window
// manager and an accessibility bus of its own.
#include "tests/support/LoopDisk.h"
#include "tests/support/RealWindow.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusReply>
#include <QProcess>
#include <QTest>

#include <functional>

namespace {

constexpr int limit = 60000; // milliseconds

// Bits of AT-SPI's state sets.
enum State { Enabled = 8, Focusable = 11, Focused = 12, Selected = 23, Showing = 25 };

struct Reference
{
    QString service;
    QDBusObjectPath path;
};

QDBusArgument &operator<<(QDBusArgument &argument, const Reference &reference)
{
    argument.beginStructure();
    argument << reference.service << reference.path;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, Reference &reference)
{
    argument.beginStructure();
    argument >> reference.service >> reference.path;
    argument.endStructure();
    return argument;
}

} // namespace

Q_DECLARE_METATYPE(Reference)

namespace {

struct Element
{
    QString name;
    QString role;
    quint64 states = 0;

    bool has(State state) const { return states >> state & 1; }
};

// What the program tells assistive technologies, read anew each time.
class AccessibilityTree
{
public:
    AccessibilityTree()
        : m_bus(QDBusConnection::connectToBus(busAddress(), QStringLiteral("accessibility")))
    {
        qDBusRegisterMetaType<Reference>();
        qDBusRegisterMetaType<QList<Reference>>();
    }

    QList<Element> elements() const
    {
        QList<Element> all;
        append(all,
            { QStringLiteral("org.a11y.atspi.Registry"),
                QDBusObjectPath(QStringLiteral("/org/a11y/atspi/accessible/root")) },
            0);
        return all;
    }

    std::optional<Element> find(const QString &role, const std::function<bool(const QString &)> &isName) const
    {
        for (const Element &element : elements()) {
            if (element.role == role && isName(element.name))
                return element;
        }
        return std::nullopt;
    }

private:
    static QString busAddress()
    {
        QDBusInterface launcher(QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
            QStringLiteral("org.a11y.Bus"), QDBusConnection::sessionBus());
        return QDBusReply<QString>(launcher.call(QStringLiteral("GetAddress"))).value();
    }

    QDBusMessage ask(const Reference &reference, const QString &interface, const QString &method,
        const QVariantList &arguments = {}) const
    {
        QDBusMessage call
            = QDBusMessage::createMethodCall(reference.service, reference.path.path(), interface, method);
        call.setArguments(arguments);
        return m_bus.call(call);
    }

    void append(QList<Element> &all, const Reference &reference, int depth) const
    {
        const QString accessible = QStringLiteral("org.a11y.atspi.Accessible");
        Element element;
        element.name
            = QDBusReply<QDBusVariant>(ask(reference, QStringLiteral("org.freedesktop.DBus.Properties"),
                                           QStringLiteral("Get"), { accessible, QStringLiteral("Name") }))
                  .value()
                  .variant()
                  .toString();
        element.role = QDBusReply<QString>(ask(reference, accessible, QStringLiteral("GetRoleName"))).value();
        const QList<uint> states
            = QDBusReply<QList<uint>>(ask(reference, accessible, QStringLiteral("GetState"))).value();
        element.states = static_cast<quint64>(states.value(1)) << 32 | states.value(0);
        all.append(element);
        constexpr int deepest = 24;
        const QDBusReply<QList<Reference>> children
            = ask(reference, accessible, QStringLiteral("GetChildren"));
        if (depth >= deepest)
            return;
        for (const Reference &child : children.value())
            append(all, child, depth + 1);
    }

    QDBusConnection m_bus;
};

bool press(const QString &key)
{
    return runProgram(
               QStringLiteral("xdotool"), { QStringLiteral("key"), QStringLiteral("--clearmodifiers"), key })
        == 0;
}

QString listed(const QList<Element> &elements)
{
    QStringList lines;
    for (const Element &element : elements)
        lines.append(
            QStringLiteral("%1 \"%2\" %3").arg(element.role, element.name).arg(element.states, 0, 16));
    return lines.join(u'\n');
}

} // namespace

class TestKeyboard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void everyControlHasNameRoleAndState();
    void volumeIsUnmountedMountedAndCheckedByKeyboard();
    void cleanupTestCase();

private:
    bool isRow(const QString &name, State state) const;
    bool isItem(const QString &role, const QString &name, State state) const;

    std::unique_ptr<LoopDisk> m_disk;
    std::unique_ptr<AccessibilityTree> m_tree;
    QProcess m_windowManager;
    QProcess m_program;
};

void TestKeyboard::initTestCase()
{
    m_disk = std::make_unique<LoopDisk>(QList<LoopDisk::Partition> { { 40,
        QString::fromLatin1(LoopDisk::linuxType), QStringLiteral("ext4"), QStringLiteral("Keyboard") } });
    QCOMPARE(runProgram(QStringLiteral("udisksctl"),
                 { QStringLiteral("mount"), QStringLiteral("-b"), m_disk->node(1) }),
        0);
    m_windowManager.start(QStringLiteral("openbox"), {});
    QVERIFY(m_windowManager.waitForStarted());
    m_tree = std::make_unique<AccessibilityTree>();
    m_program.setProcessChannelMode(QProcess::ForwardedChannels);
    m_program.start(QStringLiteral("/usr/bin/zorvex-disk-manager"), { QStringLiteral("-elevated") });
    QVERIFY(m_program.waitForStarted());
    QCOMPARE(runProgram(QStringLiteral("xdotool"),
                 { QStringLiteral("search"), QStringLiteral("--sync"), QStringLiteral("--onlyvisible"),
                     QStringLiteral("--name"), QStringLiteral("^Zorvex Disk Manager$"),
                     QStringLiteral("windowactivate"), QStringLiteral("--sync") }),
        0);
    QTRY_VERIFY2_WITH_TIMEOUT(
        isRow(QStringLiteral("Keyboard, "), Showing), qPrintable(listed(m_tree->elements())), limit);
}

void TestKeyboard::cleanupTestCase()
{
    for (QProcess *process : { &m_program, &m_windowManager }) {
        process->terminate();
        process->waitForFinished();
    }
}

bool TestKeyboard::isRow(const QString &name, State state) const
{
    for (const QString &role : { QStringLiteral("tree item"), QStringLiteral("table cell") }) {
        const auto row = m_tree->find(role, [&](const QString &found) { return found.startsWith(name); });
        if (row)
            return row->has(state);
    }
    return false;
}

bool TestKeyboard::isItem(const QString &role, const QString &name, State state) const
{
    const auto item = m_tree->find(role, [&](const QString &found) { return found == name; });
    return item && item->has(state);
}

void TestKeyboard::everyControlHasNameRoleAndState()
{
    const QList<Element> elements = m_tree->elements();
    const auto found = [&](const QString &role, const QString &name) {
        return std::any_of(elements.begin(), elements.end(),
            [&](const Element &element) { return element.role == role && element.name == name; });
    };
    using Named = std::pair<QString, QString>;
    const QList<Named> wanted {
        { QStringLiteral("frame"), QStringLiteral("Zorvex Disk Manager") },
        { QStringLiteral("tree"), QStringLiteral("Disks and volumes") },
        { QStringLiteral("page tab"), QStringLiteral("Info") },
        { QStringLiteral("label"), QStringLiteral("Disk icon") },
        { QStringLiteral("label"), QStringLiteral("Select a disk or volume") },
        { QStringLiteral("text"), QStringLiteral("Mount point") },
        { QStringLiteral("label"), QStringLiteral("File system:") },
        { QStringLiteral("label"), QStringLiteral("Device:") },
        { QStringLiteral("push button"), QStringLiteral("Mount") },
        { QStringLiteral("menu item"), QStringLiteral("Disk") },
    };
    for (const auto &[role, name] : wanted)
        QVERIFY2(found(role, name), qPrintable(role + u' ' + name + u'\n' + listed(elements)));
    QVERIFY(!isItem(QStringLiteral("push button"), QStringLiteral("Mount"), Enabled));
    QVERIFY(isRow(QStringLiteral("Keyboard, "), Focusable));
    for (const Element &element : elements) {
        // What only holds others hands the focus on to them.
        if (element.has(Focusable) && element.has(Showing) && element.role != QLatin1String("filler"))
            QVERIFY2(!element.name.isEmpty(), qPrintable(element.role + u'\n' + listed(elements)));
    }
}

void TestKeyboard::volumeIsUnmountedMountedAndCheckedByKeyboard()
{
    // The tree has the keyboard from the start; a row is found by the first letters of its name.
    QVERIFY(press(QStringLiteral("Home")));
    for (const QString &letter : { QStringLiteral("k"), QStringLiteral("e"), QStringLiteral("y") })
        QVERIFY(press(letter));
    QTRY_VERIFY2_WITH_TIMEOUT(
        isRow(QStringLiteral("Keyboard, "), Selected), qPrintable(listed(m_tree->elements())), limit);
    QVERIFY(m_tree->find(QStringLiteral("tree item"), [](const QString &name) {
        return name.endsWith(QStringLiteral(", mounted")) && name.startsWith(QStringLiteral("Keyboard, "));
    }));

    QVERIFY(press(QStringLiteral("alt+u")));
    QTRY_VERIFY_WITH_TIMEOUT(mountPointsOf(m_disk->node(1)).isEmpty(), limit);
    QTRY_VERIFY_WITH_TIMEOUT(isItem(QStringLiteral("push button"), QStringLiteral("Mount"), Enabled), limit);
    QVERIFY(press(QStringLiteral("alt+m")));
    QTRY_VERIFY_WITH_TIMEOUT(!mountPointsOf(m_disk->node(1)).isEmpty(), limit);
    QTRY_VERIFY_WITH_TIMEOUT(
        isItem(QStringLiteral("push button"), QStringLiteral("Unmount"), Enabled), limit);

    QVERIFY(press(QStringLiteral("ctrl+k")));
    QTRY_VERIFY2_WITH_TIMEOUT(
        isItem(QStringLiteral("text"), QStringLiteral("Output of check and repair"), Showing),
        qPrintable(listed(m_tree->elements()).right(900)), limit);
    QTRY_VERIFY_WITH_TIMEOUT(isItem(QStringLiteral("push button"), QStringLiteral("Check"), Enabled), limit);
}

QTEST_GUILESS_MAIN(TestKeyboard)
#include "tst_keyboard.moc"
