// SPDX-License-Identifier: MIT
//
// The disk arbitration session over a bus: what it reports of a service, and the calls that it makes.
#include "tests/support/FakeUDisks.h"
#include "tests/support/TestController.h"

#include "platform/DesktopUserMount.h"
#include "platform/UDisksSession.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QTest>

#include <unistd.h>

namespace {

using Tell = FakeUDisks::Tell;

const QString diskPath = FakeUDisks::blockPath(QStringLiteral("fake2"));
const QString volumePath = FakeUDisks::blockPath(QStringLiteral("fake2p1"));
const QString secondPath = FakeUDisks::blockPath(QStringLiteral("fake2p2"));

QVariantMap mountPoints(const QStringList &points)
{
    QByteArrayList list;
    for (const QString &point : points)
        list.append(point.toUtf8() + '\0');
    return { { QStringLiteral("MountPoints"), QVariant::fromValue(list) } };
}

QString nameOf(const DADiskRef &disk)
{
    return *disk->copyDescription()->value(DAKey::mediaBSDName)->asString();
}

// A session on a fake service, and what it has reported: "+disk2", "-disk2", "~disk2".
struct SessionTest
{
    explicit SessionTest(bool hasDisk = true)
    {
        if (hasDisk) {
            fake.addInterfaces(diskPath, fakeWholeDisk(QStringLiteral("fake2"), true), Tell::No);
            fake.addInterfaces(
                volumePath, fakePartition(QStringLiteral("fake2p1"), 1, QStringLiteral("A")), Tell::No);
        }
        makeSession(UDisksListing::WhenScheduled);
    }

    void makeSession(UDisksListing when)
    {
        session = createUDisksSession(
            FileSystemClaims({}), fake.client(), [this](const QString &node) { return facts(node); }, when);
        session->registerDiskAppearedCallback([this](const DADiskRef &disk) {
            events.append(u'+' + nameOf(disk));
            disks.insert(nameOf(disk), disk);
        });
        session->registerDiskDisappearedCallback(
            [this](const DADiskRef &disk) { events.append(u'-' + nameOf(disk)); });
        session->registerDiskDescriptionChangedCallback(
            [this](const DADiskRef &disk, const QStringList &) { events.append(u'~' + nameOf(disk)); });
        session->setInitialListingCallback([this](bool available) { listing = available; });
    }

    // Starts the service and waits for its media.
    void start()
    {
        fake.start();
        session->scheduleWithRunLoop();
        QTRY_VERIFY(listing.has_value());
        events.clear();
    }

    DADiskCompletion completion()
    {
        return [this](const DADiskRef &, const DADissenterRef &dissenter) {
            ++completions;
            outcome = dissenter;
        };
    }

    LogCapture log;
    FakeUDisks fake;
    std::function<std::optional<BlockDeviceFacts>(const QString &node)> facts = FakeUDisks::facts;
    QStringList events;
    QHash<QString, DADiskRef> disks;
    std::optional<bool> listing;
    int completions = 0;
    DADissenterRef outcome;
    std::unique_ptr<DASession> session; // first to go
};

QStringList list(std::initializer_list<const char *> texts)
{
    QStringList result;
    for (const char *text : texts)
        result.append(QLatin1String(text));
    return result;
}

} // namespace

class TestUDisksSession : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void listsADiskBeforeItsPartitions();
    void listingAheadIsReportedOnceScheduled();
    void listingAheadWithoutAService();
    void withoutAServiceTheListingFails();
    void replyOfAnUnexpectedTypeIsLogged();
    void interfacesThatArriveInStagesAreOneMedium();
    void partitionBeforeItsDiskWaitsForIt();
    void removalTakesPartitionsFirst();
    void signalsThatAreRepeatedChangeNothing();
    void signalsOfOthersAreNotHeard();
    void mediumThatIsTakenOutTakesItsPartitionsAlong();
    void serviceThatRestartsReportsEverythingAnew();
    void mountReadsTheMountPointsBeforeItCompletes();
    void mountOptionsGoByTheVersionOfTheService_data();
    void mountOptionsGoByTheVersionOfTheService();
    void serviceIsAskedToMountForTheUser();
    void errorOfAnUnknownNameIsAGeneralError();
    void unmountGoesOnUntilNothingIsMounted();
    void unmountOfWhatIsUnmountedMeanwhileIsDone();
    void unmountOfWhatHasGoneIsDone_data();
    void unmountOfWhatHasGoneIsDone();
    void unmountThatAServiceLeavesUndoneIsRefused();
    void unmountOfAWholeDiskStopsAtTheFirstRefusal();
    void ejectOfALoopDiskWaitsUntilItIsDetached();
    void ejectOfADiskWithAMountedVolumeIsRefused();
    void renameOfAMountedVolumeUnmountsItWhereItMust();
    void mediumThatHasGoneIsNotFound();
    void mediumThatIsAnotherByNowIsLeftAlone();
    void sessionThatGoesLeavesRequestsUnanswered();
};

void TestUDisksSession::listsADiskBeforeItsPartitions()
{
    SessionTest test;
    test.fake.addInterfaces(
        secondPath, fakePartition(QStringLiteral("fake2p2"), 2, QStringLiteral("B")), Tell::No);
    test.fake.start();
    test.session->scheduleWithRunLoop();
    QTRY_COMPARE(test.events, list({ "+disk2", "+disk2s1", "+disk2s2" }));
    QCOMPARE(test.listing, std::optional<bool>(true));
    const PropertyDictionary disk = *test.disks.value(QStringLiteral("disk2"))->copyDescription();
    QCOMPARE(*disk.value(DAKey::mediaLeaf)->asBoolean(), false);
    QCOMPARE(*disk.value(DAKey::mediaName)->asString(), QStringLiteral("practice.img"));
    QCOMPARE(*disk.value(DAKey::deviceInternal)->asBoolean(), false);
    const DADiskRef volume = test.disks.value(QStringLiteral("disk2s1"));
    const PropertyDictionary description = *volume->copyDescription();
    QCOMPARE(*description.value(DAKey::volumeName)->asString(), QStringLiteral("A"));
    QCOMPARE(*description.value(DAKey::mediaContent)->asString(),
        QStringLiteral("0FC63DAF-8483-4772-8E79-3D69D8477DE4"));
    QVERIFY(!description.value(DAKey::volumePath));
    QCOMPARE(volume->copyIOMediaProperties()->value(IOMediaKey::base)->asNumber()->longLongValue(), 1000);
}

void TestUDisksSession::listingAheadIsReportedOnceScheduled()
{
    SessionTest test;
    test.fake.start();
    test.makeSession(UDisksListing::Ahead);
    QTRY_COMPARE(test.fake.listings, 1);
    test.fake.addInterfaces(
        secondPath, fakePartition(QStringLiteral("fake2p2"), 2, QStringLiteral("B")), Tell::Yes);
    QCOMPARE(test.events, QStringList());
    test.session->scheduleWithRunLoop();
    QCOMPARE(test.events, QStringList()); // from the run loop, as ever
    QTRY_COMPARE(test.listing, std::optional<bool>(true));
    QTRY_COMPARE(test.events, list({ "+disk2", "+disk2s1", "+disk2s2" }));
    QCOMPARE(test.fake.listings, 1);
    test.events.clear();
    test.fake.removeInterfaces(secondPath, { QStringLiteral("org.freedesktop.UDisks2.Block") }, Tell::Yes);
    QTRY_COMPARE(test.events, list({ "-disk2s2" }));
}

void TestUDisksSession::listingAheadWithoutAService()
{
    SessionTest test;
    test.makeSession(UDisksListing::Ahead);
    QTRY_VERIFY(test.log.lines().join(u' ').contains(QStringLiteral("Unable to start the disk service")));
    QVERIFY(!test.listing);
    test.session->scheduleWithRunLoop();
    QTRY_COMPARE(test.listing, std::optional<bool>(false));
    test.fake.start();
    QTRY_COMPARE(test.events, list({ "+disk2", "+disk2s1" }));
}

void TestUDisksSession::withoutAServiceTheListingFails()
{
    SessionTest test;
    test.session->scheduleWithRunLoop();
    QTRY_COMPARE(test.listing, std::optional<bool>(false));
    QVERIFY(test.log.lines().join(u' ').contains(QStringLiteral("Unable to start the disk service")));
    test.fake.start(); // one that comes later is followed all the same
    QTRY_COMPARE(test.events, list({ "+disk2", "+disk2s1" }));
}

void TestUDisksSession::replyOfAnUnexpectedTypeIsLogged()
{
    SessionTest test;
    test.fake.listsNonsense = true;
    test.fake.start();
    test.session->scheduleWithRunLoop();
    QTRY_COMPARE(test.listing, std::optional<bool>(false));
    QCOMPARE(test.log.lines(), list({ "Unexpected reply to the listing of disks: s" }));
    QCOMPARE(test.events, QStringList());
}

void TestUDisksSession::interfacesThatArriveInStagesAreOneMedium()
{
    SessionTest test(false);
    test.start();
    UDisksInterfaces stages = fakePartition(QStringLiteral("fake2p1"), 1, QStringLiteral("A"));
    const QVariantMap fileSystem = stages.take(UDisks::filesystem);
    test.fake.addInterfaces(diskPath, fakeWholeDisk(QStringLiteral("fake2")), Tell::Yes);
    test.fake.addInterfaces(volumePath, stages, Tell::Yes);
    QTRY_VERIFY(test.events.contains(QStringLiteral("+disk2s1")));
    const DADiskRef volume = test.disks.value(QStringLiteral("disk2s1"));
    QCOMPARE(*volume->copyDescription()->value(DAKey::volumeMountable)->asBoolean(), false);
    test.fake.addInterfaces(volumePath, { { UDisks::filesystem, fileSystem } }, Tell::Yes);
    QTRY_COMPARE(test.events.last(), QStringLiteral("~disk2s1"));
    QCOMPARE(*volume->copyDescription()->value(DAKey::volumeMountable)->asBoolean(), true);
    QCOMPARE(test.events.count(QStringLiteral("+disk2s1")), 1);
}

void TestUDisksSession::partitionBeforeItsDiskWaitsForIt()
{
    SessionTest test(false);
    test.start();
    test.fake.addInterfaces(
        volumePath, fakePartition(QStringLiteral("fake2p1"), 1, QStringLiteral("A")), Tell::Yes);
    test.fake.addInterfaces(diskPath, fakeWholeDisk(QStringLiteral("fake2")), Tell::Yes);
    QTRY_COMPARE(test.events, list({ "+disk2", "+disk2s1" }));
}

void TestUDisksSession::removalTakesPartitionsFirst()
{
    SessionTest test;
    test.start();
    test.fake.removeInterfaces(diskPath, { UDisks::block, UDisks::partitionTable, UDisks::loop }, Tell::Yes);
    test.fake.removeInterfaces(
        volumePath, { UDisks::block, UDisks::partition, UDisks::filesystem }, Tell::Yes);
    QTRY_COMPARE(test.events, list({ "-disk2s1", "-disk2" }));
}

void TestUDisksSession::signalsThatAreRepeatedChangeNothing()
{
    SessionTest test;
    test.start();
    for (int i = 0; i < 2; ++i) {
        test.fake.addInterfaces(
            volumePath, fakePartition(QStringLiteral("fake2p1"), 1, QStringLiteral("A")), Tell::Yes);
        test.fake.removeInterfaces(secondPath, { UDisks::block }, Tell::Yes);
        test.fake.changeProperties(
            secondPath, UDisks::filesystem, mountPoints({ QStringLiteral("/media/B") }), Tell::Yes);
    }
    test.fake.changeProperties(
        volumePath, UDisks::filesystem, mountPoints({ QStringLiteral("/media/A") }), Tell::Yes);
    QTRY_COMPARE(test.events, list({ "~disk2s1" }));
}

void TestUDisksSession::signalsOfOthersAreNotHeard()
{
    SessionTest test;
    test.start();
    auto forged = QDBusMessage::createSignal(UDisks::rootPath,
        QStringLiteral("org.freedesktop.DBus.ObjectManager"), QStringLiteral("InterfacesRemoved"));
    forged << QVariant::fromValue(QDBusObjectPath(diskPath)) << QStringList { UDisks::block };
    test.fake.client().send(forged);
    test.fake.changeProperties(
        volumePath, UDisks::filesystem, mountPoints({ QStringLiteral("/media/A") }), Tell::Yes);
    QTRY_COMPARE(test.events, list({ "~disk2s1" }));
}

void TestUDisksSession::mediumThatIsTakenOutTakesItsPartitionsAlong()
{
    SessionTest test;
    test.start();
    test.fake.changeProperties(diskPath, UDisks::block,
        { { QStringLiteral("Size"), QVariant::fromValue(qulonglong { 0 }) } }, Tell::Yes);
    QTRY_COMPARE(test.events, list({ "-disk2s1", "-disk2" }));
}

void TestUDisksSession::serviceThatRestartsReportsEverythingAnew()
{
    SessionTest test;
    test.start();
    test.fake.stop();
    QTRY_COMPARE(test.events, list({ "-disk2s1", "-disk2" }));
    test.events.clear();
    test.fake.start();
    QTRY_COMPARE(test.events, list({ "+disk2", "+disk2s1" }));
}

void TestUDisksSession::mountReadsTheMountPointsBeforeItCompletes()
{
    SessionTest test;
    test.start();
    // The service tells of the mount point only by the property.
    test.fake.answer = [&](const QDBusMessage &call) {
        test.fake.changeProperties(
            volumePath, UDisks::filesystem, mountPoints({ QStringLiteral("/media/A") }), Tell::No);
        return call.createReply(QStringLiteral("/media/A"));
    };
    const DADiskRef volume = test.disks.value(QStringLiteral("disk2s1"));
    test.session->mount(volume, 0, test.completion());
    QCOMPARE(test.completions, 0);
    QTRY_COMPARE(test.completions, 1);
    QVERIFY(!test.outcome);
    QCOMPARE(test.fake.calls, list({ "fake2p1 Mount" }));
    QCOMPARE(volume->copyDescription()->value(DAKey::volumePath)->asUrl()->toLocalFile(),
        QStringLiteral("/media/A"));
}

void TestUDisksSession::mountOptionsGoByTheVersionOfTheService_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<bool>("mountsForOthers");
    QTest::newRow("Debian 12") << QStringLiteral("2.9.4") << false;
    QTest::newRow("the last without it") << QStringLiteral("2.9.99") << false;
    QTest::newRow("the first") << QStringLiteral("2.10.0") << true;
    QTest::newRow("Debian 13") << QStringLiteral("2.10.1") << true;
    QTest::newRow("a later one") << QStringLiteral("3.0") << true;
    QTest::newRow("with a suffix") << QStringLiteral("2.11.0-rc1") << true;
    QTest::newRow("unknown") << QString() << false;
    QTest::newRow("no number") << QStringLiteral("newest") << false;
}

void TestUDisksSession::mountOptionsGoByTheVersionOfTheService()
{
    QFETCH(const QString, version);
    QFETCH(const bool, mountsForOthers);
    DesktopUser user;
    user.name = QStringLiteral("ada");
    QCOMPARE(mountOptions(std::nullopt, version), std::optional(QVariantMap()));
    const QVariantMap forTheUser { { QStringLiteral("as-user"), QStringLiteral("ada") } };
    QCOMPARE(mountOptions(user, version), mountsForOthers ? std::optional(forTheUser) : std::nullopt);
}

// As pkexec starts the program: root, at the request of a user. Whoever runs this without root's rights
// mounts for themselves.
void TestUDisksSession::serviceIsAskedToMountForTheUser()
{
    SessionTest test;
    test.fake.addInterfaces(UDisks::managerPath,
        { { UDisks::manager, { { QStringLiteral("Version"), QStringLiteral("2.10.1") } } } }, Tell::No);
    test.start();
    QVariantMap options { { QStringLiteral("nobody"), QStringLiteral("has asked") } };
    test.fake.answer = [&](const QDBusMessage &call) {
        options = qdbus_cast<QVariantMap>(call.arguments().constFirst());
        return call.createReply(QStringLiteral("/media/nobody/A"));
    };
    qputenv("PKEXEC_UID", "65534");
    test.session->mount(test.disks.value(QStringLiteral("disk2s1")), 0, test.completion());
    qunsetenv("PKEXEC_UID");
    QTRY_COMPARE(test.completions, 1);
    const QVariantMap forTheUser { { QStringLiteral("as-user"), QStringLiteral("nobody") } };
    QCOMPARE(options, geteuid() == 0 ? forTheUser : QVariantMap());
}

void TestUDisksSession::errorOfAnUnknownNameIsAGeneralError()
{
    SessionTest test;
    test.start();
    test.fake.answer = [](const QDBusMessage &call) {
        return call.createErrorReply(QStringLiteral("org.example.Unheard.Of"),
            QStringLiteral("GDBus.Error:org.example.Unheard.Of: something is wrong"));
    };
    test.session->mount(test.disks.value(QStringLiteral("disk2s1")), 0, test.completion());
    QTRY_COMPARE(test.completions, 1);
    QCOMPARE(test.outcome->status, 0xF8DA0001U);
    QCOMPARE(test.outcome->statusString.value_or(QString()), QStringLiteral("something is wrong"));
}

void TestUDisksSession::unmountGoesOnUntilNothingIsMounted()
{
    SessionTest test;
    QStringList points { QStringLiteral("/media/A"), QStringLiteral("/mnt"), QStringLiteral("/srv") };
    test.fake.changeProperties(volumePath, UDisks::filesystem, mountPoints(points), Tell::No);
    test.start();
    test.fake.answer = [&](const QDBusMessage &call) {
        points.removeFirst();
        test.fake.changeProperties(volumePath, UDisks::filesystem, mountPoints(points), Tell::No);
        return call.createReply();
    };
    test.session->unmount(test.disks.value(QStringLiteral("disk2s1")), 0, test.completion());
    QTRY_COMPARE(test.completions, 1);
    QVERIFY(!test.outcome);
    QCOMPARE(test.fake.calls.size(), 3);
}

void TestUDisksSession::unmountOfWhatIsUnmountedMeanwhileIsDone()
{
    SessionTest test;
    test.fake.changeProperties(
        volumePath, UDisks::filesystem, mountPoints({ QStringLiteral("/media/A") }), Tell::No);
    test.start();
    test.fake.answer = [&](const QDBusMessage &call) {
        test.fake.changeProperties(volumePath, UDisks::filesystem, mountPoints({}), Tell::No);
        return call.createErrorReply(
            QStringLiteral("org.freedesktop.UDisks2.Error.NotMounted"), QStringLiteral("not mounted"));
    };
    test.session->unmount(test.disks.value(QStringLiteral("disk2s1")), 0, test.completion());
    QTRY_COMPARE(test.completions, 1);
    QVERIFY(!test.outcome);
    QCOMPARE(test.fake.calls.size(), 1);
}

void TestUDisksSession::unmountOfWhatHasGoneIsDone_data()
{
    QTest::addColumn<QString>("error");
    QTest::addColumn<QStringList>("removed"); // interfaces of the volume
    QTest::addColumn<bool>("isTold"); // by signals that come before the answer
    const QString failed = QStringLiteral("org.freedesktop.UDisks2.Error.Failed");
    const QString unknown = QDBusError::errorString(QDBusError::UnknownMethod);
    const QStringList all { UDisks::block, UDisks::partition, UDisks::filesystem };
    QTest::newRow("pulled before the call") << unknown << all << true;
    QTest::newRow("pulled before the call, not told yet") << unknown << all << false;
    QTest::newRow("pulled during the call") << failed << all << true;
    QTest::newRow("pulled during the call, not told yet") << failed << all << false;
    QTest::newRow("no file system any more, not told yet")
        << failed << QStringList { UDisks::filesystem } << false;
    QTest::newRow("unmounted by somebody else") << failed << QStringList() << true;
    QTest::newRow("unmounted by somebody else, not told yet") << failed << QStringList() << false;
}

// What the service says of a volume that is not mounted any more is not that it is in use.
void TestUDisksSession::unmountOfWhatHasGoneIsDone()
{
    QFETCH(const QString, error);
    QFETCH(const QStringList, removed);
    QFETCH(const bool, isTold);
    const Tell tell = isTold ? Tell::Yes : Tell::No;
    SessionTest test;
    test.fake.changeProperties(
        volumePath, UDisks::filesystem, mountPoints({ QStringLiteral("/media/A") }), Tell::No);
    test.fake.addInterfaces(secondPath,
        fakePartition(QStringLiteral("fake2p2"), 2, QStringLiteral("B"), { QStringLiteral("/media/B") }),
        Tell::No);
    test.start();
    test.fake.answer = [&](const QDBusMessage &call) {
        const QString &path = call.path();
        if (removed.isEmpty())
            test.fake.changeProperties(path, UDisks::filesystem, mountPoints({}), tell);
        else
            test.fake.removeInterfaces(path, removed, tell);
        return call.createErrorReply(error, QStringLiteral("No enclosing object for interface"));
    };
    test.session->unmount(
        test.disks.value(QStringLiteral("disk2")), kDADiskUnmountOptionWhole, test.completion());
    QTRY_COMPARE(test.completions, 1);
    QVERIFY(!test.outcome);
    QCOMPARE(test.fake.calls.size(), 2);
    QCOMPARE(test.events.contains(QStringLiteral("-disk2s1")), removed.contains(UDisks::block) && isTold);
}

// A service that ends takes its disks away, but not what is mounted.
void TestUDisksSession::unmountThatAServiceLeavesUndoneIsRefused()
{
    SessionTest test;
    test.fake.changeProperties(
        volumePath, UDisks::filesystem, mountPoints({ QStringLiteral("/media/A") }), Tell::No);
    test.start();
    test.fake.answer = [&](const QDBusMessage &call) {
        test.fake.stop();
        return call.createErrorReply(QDBusError::NoReply, QStringLiteral("no answer"));
    };
    test.session->unmount(test.disks.value(QStringLiteral("disk2s1")), 0, test.completion());
    QTRY_COMPARE(test.completions, 1);
    QVERIFY(test.outcome);
    QCOMPARE(test.outcome->statusString.value_or(QString()), QStringLiteral("no answer"));
}

void TestUDisksSession::unmountOfAWholeDiskStopsAtTheFirstRefusal()
{
    SessionTest test;
    test.fake.changeProperties(
        volumePath, UDisks::filesystem, mountPoints({ QStringLiteral("/media/A") }), Tell::No);
    test.fake.addInterfaces(secondPath,
        fakePartition(QStringLiteral("fake2p2"), 2, QStringLiteral("B"), { QStringLiteral("/media/B") }),
        Tell::No);
    test.start();
    test.fake.answer = [](const QDBusMessage &call) {
        return call.createErrorReply(
            QStringLiteral("org.freedesktop.UDisks2.Error.DeviceBusy"), QStringLiteral("target is busy"));
    };
    test.session->unmount(
        test.disks.value(QStringLiteral("disk2")), kDADiskUnmountOptionWhole, test.completion());
    QTRY_COMPARE(test.completions, 1);
    QCOMPARE(test.outcome->status, 0xF8DA0002U);
    QCOMPARE(test.fake.calls.size(), 1);
}

void TestUDisksSession::ejectOfALoopDiskWaitsUntilItIsDetached()
{
    SessionTest test;
    test.start();
    test.session->eject(test.disks.value(QStringLiteral("disk2")), 0, test.completion());
    QTRY_COMPARE(test.fake.calls, list({ "fake2 Delete" }));
    QCOMPARE(test.completions, 0);
    test.fake.changeProperties(
        diskPath, UDisks::loop, { { QStringLiteral("BackingFile"), QByteArray(1, '\0') } }, Tell::Yes);
    QTRY_COMPARE(test.completions, 1);
    QVERIFY(!test.outcome);
}

void TestUDisksSession::ejectOfADiskWithAMountedVolumeIsRefused()
{
    SessionTest test;
    test.fake.changeProperties(
        volumePath, UDisks::filesystem, mountPoints({ QStringLiteral("/media/A") }), Tell::No);
    test.start();
    test.session->eject(test.disks.value(QStringLiteral("disk2")), 0, test.completion());
    QTRY_COMPARE(test.completions, 1);
    QCOMPARE(test.outcome->status, 0xF8DA0002U);
    QCOMPARE(test.fake.calls, QStringList());
}

void TestUDisksSession::renameOfAMountedVolumeUnmountsItWhereItMust()
{
    SessionTest test;
    test.fake.changeProperties(
        volumePath, UDisks::filesystem, mountPoints({ QStringLiteral("/media/A") }), Tell::No);
    test.start();
    bool isMounted = true;
    test.fake.answer = [&](const QDBusMessage &call) {
        if (call.member() == QLatin1String("SetLabel") && isMounted)
            return call.createErrorReply(QStringLiteral("org.freedesktop.UDisks2.Error.NotSupported"),
                QStringLiteral("it is mounted"));
        if (call.member() != QLatin1String("SetLabel")) {
            isMounted = call.member() == QLatin1String("Mount");
            test.fake.changeProperties(volumePath, UDisks::filesystem,
                mountPoints(isMounted ? QStringList { QStringLiteral("/media/B") } : QStringList()),
                Tell::No);
        }
        return call.createReply();
    };
    test.session->rename(
        test.disks.value(QStringLiteral("disk2s1")), QStringLiteral("B"), 0, test.completion());
    QTRY_COMPARE(test.completions, 1);
    QVERIFY(!test.outcome);
    QCOMPARE(test.fake.calls,
        list({ "fake2p1 SetLabel", "fake2p1 Unmount", "fake2p1 SetLabel", "fake2p1 Mount" }));
}

void TestUDisksSession::mediumThatHasGoneIsNotFound()
{
    SessionTest test;
    test.start();
    const DADiskRef volume = test.disks.value(QStringLiteral("disk2s1"));
    test.fake.removeInterfaces(
        volumePath, { UDisks::block, UDisks::partition, UDisks::filesystem }, Tell::Yes);
    QTRY_VERIFY(test.events.contains(QStringLiteral("-disk2s1")));
    test.session->mount(volume, 0, test.completion());
    QCOMPARE(test.completions, 0);
    QTRY_COMPARE(test.completions, 1);
    QCOMPARE(test.outcome->status, 0xF8DA0006U);
    QCOMPARE(nameOf(volume), QStringLiteral("disk2s1")); // what was known of it stays
}

// Another disk has taken the place of the one that is meant, and the service does not know yet.
void TestUDisksSession::mediumThatIsAnotherByNowIsLeftAlone()
{
    SessionTest test;
    test.start();
    test.facts = [](const QString &node) {
        auto facts = FakeUDisks::facts(node);
        if (facts) {
            facts->diskSequence = 3;
            facts->bsdName.replace(u'2', u'3');
        }
        return facts;
    };
    const DADiskRef disk = test.disks.value(QStringLiteral("disk2"));
    test.session->eject(disk, 0, test.completion());
    QCOMPARE(test.completions, 0);
    QTRY_COMPARE(test.completions, 1);
    QCOMPARE(test.outcome->status, 0xF8DA0006U);
    QCOMPARE(test.fake.calls, QStringList());
    QCOMPARE(test.events, list({ "-disk2s1", "-disk2", "+disk3", "+disk3s1" }));
    test.session->eject(test.disks.value(QStringLiteral("disk3")), 0, test.completion());
    QTRY_COMPARE(test.fake.calls, list({ "fake2 Delete" }));
}

void TestUDisksSession::sessionThatGoesLeavesRequestsUnanswered()
{
    SessionTest test;
    test.start();
    bool wasAsked = false;
    test.fake.answer = [&](const QDBusMessage &) {
        wasAsked = true;
        return QDBusMessage();
    };
    test.session->mount(test.disks.value(QStringLiteral("disk2s1")), 0, test.completion());
    test.session.reset();
    QTRY_VERIFY(wasAsked);
    QCOMPARE(test.completions, 0);
}

QTEST_GUILESS_MAIN(TestUDisksSession)
#include "tst_udiskssession.moc"
