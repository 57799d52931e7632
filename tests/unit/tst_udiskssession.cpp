// SPDX-License-Identifier: MIT
//
// The disk arbitration session over a bus: what it reports of a service, and the calls that it makes.
#include "tests/support/FakeUDisks.h"
#include "tests/support/TestController.h"

#include "platform/DesktopUserMount.h"
#include "platform/udisks/UDisksSession.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QTemporaryDir>
#include <QTest>

#include <cstdlib>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using Tell = FakeUDisks::Tell;

const QString diskPath = FakeUDisks::blockPath(u"fake2"_s);
const QString volumePath = FakeUDisks::blockPath(u"fake2p1"_s);
const QString secondPath = FakeUDisks::blockPath(u"fake2p2"_s);

QVariantMap mountPoints(const QStringList &points)
{
    QByteArrayList list;
    for (const QString &point : points)
        list.append(point.toUtf8() + '\0');
    return { { u"MountPoints"_s, QVariant::fromValue(list) } };
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
            fake.addInterfaces(diskPath, fakeWholeDisk(u"fake2"_s, true), Tell::No);
            fake.addInterfaces(volumePath, fakePartition(u"fake2p1"_s, 1, u"A"_s), Tell::No);
        }
        makeSession(MediaListing::WhenScheduled);
    }

    void makeSession(MediaListing when)
    {
        session = createUDisksSession(
            noClaims, fake.client(), [this](const QString &node) { return facts(node); }, when,
            [this](const QString &node) { return node == mountedDisk; });
        session->registerDiskAppearedCallback([this](const DADiskRef &disk) {
            events.append(u'+' + nameOf(disk));
            disks.insert(nameOf(disk), disk);
        });
        session->registerDiskDisappearedCallback(
            [this](const DADiskRef &disk) { events.append(u'-' + nameOf(disk)); });
        session->registerDiskDescriptionChangedCallback(
            [this](const DADiskRef &disk, const QStringList &) { events.append(u'~' + nameOf(disk)); });
        session->setInitialListingCallback([this](bool available) { listing = available; });
        session->setServiceCallback([this](bool isAvailable) { service.append(isAvailable); });
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
    QString mountedDisk; // node of one with something mounted that the service does not connect with it
    QStringList events;
    QHash<QString, DADiskRef> disks;
    std::optional<bool> listing;
    QList<bool> service; // whether it was there, each time that it was told
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

QDBusMessage busyAnswer(const QDBusMessage &call)
{
    return call.createErrorReply(u"org.freedesktop.UDisks2.Error.DeviceBusy"_s, u"target is busy"_s);
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
    void otherContentIsAChange();
    void otherPlaceIsAChange();
    void whatComesTogetherIsABurst();
    void partitionBeforeItsDiskWaitsForIt();
    void removalTakesPartitionsFirst();
    void signalsThatAreRepeatedChangeNothing();
    void signalsOfOthersAreNotHeard();
    void mediumThatIsTakenOutTakesItsPartitionsAlong();
    void serviceThatRestartsReportsEverythingAnew();
    void refreshReportsWhatNoSignalTold();
    void refreshReportsNothingTwice();
    void mountReadsTheMountPointsBeforeItCompletes();
    void mountOptionsGoByTheVersionOfTheService_data();
    void mountOptionsGoByTheVersionOfTheService();
    void serviceIsAskedToMountForTheUser();
    void olderServiceIsAskedInTheUsersName_data();
    void olderServiceIsAskedInTheUsersName();
    void volumeIsMountedAgainForItsUserAlone_data();
    void volumeIsMountedAgainForItsUserAlone();
    void nothingIsMountedForAUserWhoCannotBeLookedUp();
    void folderAccessIsThatOfTheUser();
    void errorOfAnUnknownNameIsAGeneralError();
    void unmountGoesOnUntilNothingIsMounted();
    void unmountOfWhatIsUnmountedMeanwhileIsDone();
    void unmountOfWhatHasGoneIsDone_data();
    void unmountOfWhatHasGoneIsDone();
    void unmountThatAServiceLeavesUndoneIsRefused();
    void unmountOfAWholeDiskStopsAtTheFirstRefusal();
    void volumeThatIsBusyForAMomentIsUnmounted();
    void forceIsUsedOnce();
    void ejectOfALoopDiskWaitsUntilItIsDetached();
    void ejectOfADiskWithAMountedVolumeIsRefused();
    void ejectOfADiskWithAMountedLogicalVolumeIsRefused();
    void powerGoesOnlyFromADriveThatKeepsItsMedium_data();
    void powerGoesOnlyFromADriveThatKeepsItsMedium();
    void renameOfAMountedVolumeUnmountsItWhereItMust();
    void mediumThatHasGoneIsNotFound();
    void requestWaitsForAServiceThatStartsAnew_data();
    void requestWaitsForAServiceThatStartsAnew();
    void requestWithoutAServiceIsNotFound();
    void mediumThatIsAnotherByNowIsLeftAlone();
    void sessionThatGoesLeavesRequestsUnanswered();
};

void TestUDisksSession::listsADiskBeforeItsPartitions()
{
    SessionTest test;
    test.fake.addInterfaces(secondPath, fakePartition(u"fake2p2"_s, 2, u"B"_s), Tell::No);
    test.fake.start();
    test.session->scheduleWithRunLoop();
    QTRY_COMPARE(test.events, list({ "+disk2", "+disk2s1", "+disk2s2" }));
    QCOMPARE(test.listing, std::optional<bool>(true));
    const PropertyDictionary disk = *test.disks.value(u"disk2"_s)->copyDescription();
    QCOMPARE(*disk.value(DAKey::mediaLeaf)->asBoolean(), false);
    QCOMPARE(*disk.value(DAKey::mediaName)->asString(), u"practice.img"_s);
    QCOMPARE(*disk.value(DAKey::deviceInternal)->asBoolean(), false);
    const DADiskRef volume = test.disks.value(u"disk2s1"_s);
    const PropertyDictionary description = *volume->copyDescription();
    QCOMPARE(*description.value(DAKey::volumeName)->asString(), u"A"_s);
    QCOMPARE(*description.value(DAKey::mediaContent)->asString(), u"0FC63DAF-8483-4772-8E79-3D69D8477DE4"_s);
    QVERIFY(!description.value(DAKey::volumePath));
    QCOMPARE(volume->copyIOMediaProperties()->value(IOMediaKey::base)->asNumber()->longLongValue(), 1000);
}

void TestUDisksSession::listingAheadIsReportedOnceScheduled()
{
    SessionTest test;
    test.fake.start();
    test.makeSession(MediaListing::Ahead);
    QTRY_COMPARE(test.fake.listings, 1);
    test.fake.addInterfaces(secondPath, fakePartition(u"fake2p2"_s, 2, u"B"_s), Tell::Yes);
    QCOMPARE(test.events, QStringList());
    test.session->scheduleWithRunLoop();
    QCOMPARE(test.events, QStringList()); // from the run loop, as ever
    QTRY_COMPARE(test.listing, std::optional<bool>(true));
    QTRY_COMPARE(test.events, list({ "+disk2", "+disk2s1", "+disk2s2" }));
    QCOMPARE(test.fake.listings, 1);
    test.events.clear();
    test.fake.removeInterfaces(secondPath, { u"org.freedesktop.UDisks2.Block"_s }, Tell::Yes);
    QTRY_COMPARE(test.events, list({ "-disk2s2" }));
}

void TestUDisksSession::listingAheadWithoutAService()
{
    SessionTest test;
    test.makeSession(MediaListing::Ahead);
    QTRY_VERIFY(test.log.lines().join(u' ').contains(u"Unable to start the disk service"_s));
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
    QVERIFY(test.log.lines().join(u' ').contains(u"Unable to start the disk service"_s));
    QCOMPARE(test.service, QList<bool>({ false }));
    test.fake.start(); // one that comes later is followed all the same
    QTRY_COMPARE(test.events, list({ "+disk2", "+disk2s1" }));
    QTRY_COMPARE(test.service, QList<bool>({ false, true }));
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
    UDisksInterfaces stages = fakePartition(u"fake2p1"_s, 1, u"A"_s);
    const QVariantMap filesystem = stages.take(UDisks::filesystem);
    test.fake.addInterfaces(diskPath, fakeWholeDisk(u"fake2"_s), Tell::Yes);
    test.fake.addInterfaces(volumePath, stages, Tell::Yes);
    QTRY_VERIFY(test.events.contains(u"+disk2s1"_s));
    const DADiskRef volume = test.disks.value(u"disk2s1"_s);
    // Until the service is ready to mount it, the volume is like one without a file system.
    QVERIFY(!volume->copyDescription()->value(DAKey::volumeKind));
    test.fake.addInterfaces(volumePath, { { UDisks::filesystem, filesystem } }, Tell::Yes);
    QTRY_COMPARE(test.events.last(), u"~disk2s1"_s);
    QCOMPARE(volume->copyDescription()->text(DAKey::volumeKind), u"ext4"_s);
    QCOMPARE(test.events.count(u"+disk2s1"_s), 1);
}

void TestUDisksSession::otherContentIsAChange()
{
    SessionTest test(false);
    test.start();
    UDisksInterfaces partition = fakePartition(u"fake2p1"_s, 1, u"A"_s);
    partition.remove(UDisks::filesystem);
    partition[UDisks::block].insert(u"IdUsage"_s, u"crypto"_s);
    partition[UDisks::block].insert(u"IdType"_s, u"crypto_LUKS"_s);
    test.fake.addInterfaces(diskPath, fakeWholeDisk(u"fake2"_s), Tell::Yes);
    test.fake.addInterfaces(volumePath, partition, Tell::Yes);
    QTRY_VERIFY(test.events.contains(u"+disk2s1"_s));
    const DADiskRef volume = test.disks.value(u"disk2s1"_s);
    QVERIFY(volume->probedContent().kind == ProbedContent::Kind::Encrypted);
    test.fake.changeProperties(
        volumePath, UDisks::block, { { u"IdUsage"_s, u"other"_s }, { u"IdType"_s, u"swap"_s } }, Tell::Yes);
    QTRY_COMPARE(test.events.last(), u"~disk2s1"_s);
    QVERIFY(volume->probedContent().kind == ProbedContent::Kind::Swap);
}

void TestUDisksSession::otherPlaceIsAChange()
{
    SessionTest test;
    test.start();
    test.fake.changeProperties(
        volumePath, UDisks::partition, { { u"Offset"_s, quint64 { 123 } } }, Tell::Yes);
    QTRY_COMPARE(test.events, list({ "~disk2s1" }));
}

void TestUDisksSession::whatComesTogetherIsABurst()
{
    SessionTest test;
    test.session->setBurstCallback([&test](const std::function<void()> &report) {
        test.events.append(u"("_s);
        report();
        test.events.append(u")"_s);
    });
    test.fake.start();
    test.session->scheduleWithRunLoop();
    QTRY_COMPARE(test.events, list({ "(", "+disk2", "+disk2s1", ")" }));
}

void TestUDisksSession::partitionBeforeItsDiskWaitsForIt()
{
    SessionTest test(false);
    test.start();
    test.fake.addInterfaces(volumePath, fakePartition(u"fake2p1"_s, 1, u"A"_s), Tell::Yes);
    test.fake.addInterfaces(diskPath, fakeWholeDisk(u"fake2"_s), Tell::Yes);
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
        test.fake.addInterfaces(volumePath, fakePartition(u"fake2p1"_s, 1, u"A"_s), Tell::Yes);
        test.fake.removeInterfaces(secondPath, { UDisks::block }, Tell::Yes);
        test.fake.changeProperties(secondPath, UDisks::filesystem, mountPoints({ u"/media/B"_s }), Tell::Yes);
    }
    test.fake.changeProperties(volumePath, UDisks::filesystem, mountPoints({ u"/media/A"_s }), Tell::Yes);
    QTRY_COMPARE(test.events, list({ "~disk2s1" }));
}

void TestUDisksSession::signalsOfOthersAreNotHeard()
{
    SessionTest test;
    test.start();
    auto forged = QDBusMessage::createSignal(
        UDisks::rootPath, u"org.freedesktop.DBus.ObjectManager"_s, u"InterfacesRemoved"_s);
    forged << QVariant::fromValue(QDBusObjectPath(diskPath)) << QStringList { UDisks::block };
    test.fake.client().send(forged);
    test.fake.changeProperties(volumePath, UDisks::filesystem, mountPoints({ u"/media/A"_s }), Tell::Yes);
    QTRY_COMPARE(test.events, list({ "~disk2s1" }));
}

void TestUDisksSession::mediumThatIsTakenOutTakesItsPartitionsAlong()
{
    SessionTest test;
    test.start();
    test.fake.changeProperties(
        diskPath, UDisks::block, { { u"Size"_s, QVariant::fromValue(qulonglong { 0 }) } }, Tell::Yes);
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
    QTRY_COMPARE(test.service, QList<bool>({ true, false, true }));
}

void TestUDisksSession::refreshReportsWhatNoSignalTold()
{
    SessionTest test;
    test.start();
    test.fake.changeProperties(volumePath, UDisks::filesystem, mountPoints({ u"/media/A"_s }), Tell::No);
    test.fake.addInterfaces(secondPath, fakePartition(u"fake2p2"_s, 2, u"B"_s), Tell::No);
    test.session->refresh();
    QTRY_COMPARE(test.events, list({ "~disk2s1", "+disk2s2" }));
    test.events.clear();
    test.fake.removeInterfaces(
        secondPath, { UDisks::block, UDisks::partition, UDisks::filesystem }, Tell::No);
    test.session->refresh();
    QTRY_COMPARE(test.events, list({ "-disk2s2" }));
}

// What is the same is not reported again.
void TestUDisksSession::refreshReportsNothingTwice()
{
    SessionTest test;
    test.start();
    const int listings = test.fake.listings;
    test.session->refresh();
    QTRY_COMPARE(test.fake.listings, listings + 1);
    test.fake.changeProperties(volumePath, UDisks::filesystem, mountPoints({ u"/media/A"_s }), Tell::Yes);
    QTRY_COMPARE(test.events, list({ "~disk2s1" }));
}

void TestUDisksSession::mountReadsTheMountPointsBeforeItCompletes()
{
    SessionTest test;
    test.start();
    // The service tells of the mount point only by the property.
    test.fake.answer = [&](const QDBusMessage &call) {
        test.fake.changeProperties(volumePath, UDisks::filesystem, mountPoints({ u"/media/A"_s }), Tell::No);
        return call.createReply(u"/media/A"_s);
    };
    const DADiskRef volume = test.disks.value(u"disk2s1"_s);
    test.session->mount(volume, 0, test.completion());
    QCOMPARE(test.completions, 0);
    QTRY_COMPARE(test.completions, 1);
    QVERIFY(!test.outcome);
    QCOMPARE(test.fake.calls, list({ "fake2p1 Mount" }));
    QCOMPARE(volume->copyDescription()->value(DAKey::volumePath)->asUrl()->toLocalFile(), u"/media/A"_s);
}

void TestUDisksSession::mountOptionsGoByTheVersionOfTheService_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<bool>("mountsForOthers");
    QTest::newRow("Debian 12") << u"2.9.4"_s << false;
    QTest::newRow("the last without it") << u"2.9.99"_s << false;
    QTest::newRow("the first") << u"2.10.0"_s << true;
    QTest::newRow("Debian 13") << u"2.10.1"_s << true;
    QTest::newRow("a later one") << u"3.0"_s << true;
    QTest::newRow("with a suffix") << u"2.11.0-rc1"_s << true;
    QTest::newRow("unknown") << QString() << false;
    QTest::newRow("no number") << u"newest"_s << false;
}

void TestUDisksSession::mountOptionsGoByTheVersionOfTheService()
{
    QFETCH(const QString, version);
    QFETCH(const bool, mountsForOthers);
    DesktopUser user;
    user.name = u"ada"_s;
    QCOMPARE(mountOptions(std::nullopt, version), std::optional(QVariantMap()));
    const QVariantMap forTheUser { { u"as-user"_s, u"ada"_s } };
    QCOMPARE(mountOptions(user, version), mountsForOthers ? std::optional(forTheUser) : std::nullopt);
}

// As pkexec starts the program: root, at the request of a user. Whoever runs this without root's rights
// mounts for themselves.
void TestUDisksSession::serviceIsAskedToMountForTheUser()
{
    SessionTest test;
    test.fake.addInterfaces(
        UDisks::managerPath, { { UDisks::manager, { { u"Version"_s, u"2.10.1"_s } } } }, Tell::No);
    test.start();
    QVariantMap options { { u"nobody"_s, u"has asked"_s } };
    test.fake.answer = [&](const QDBusMessage &call) {
        options = qdbus_cast<QVariantMap>(call.arguments().constFirst());
        return call.createReply(u"/media/nobody/A"_s);
    };
    qputenv("PKEXEC_UID", "65534");
    test.session->mount(test.disks.value(u"disk2s1"_s), 0, test.completion());
    qunsetenv("PKEXEC_UID");
    QTRY_COMPARE(test.completions, 1);
    const QVariantMap forTheUser { { u"as-user"_s, u"nobody"_s } };
    QCOMPARE(options, geteuid() == 0 ? forTheUser : QVariantMap());
}

void TestUDisksSession::olderServiceIsAskedInTheUsersName_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QStringList>("calls"); // of this process to the service
    QTest::addColumn<bool>("isDeclined");
    const QByteArray error = "echo 'Error mounting /dev/sda1: GDBus.Error:org.freedesktop.UDisks2.Error.";
    QTest::newRow("mounted") << QByteArray("[ \"$*\" = 'mount --object-path block_devices/fake2p1' ]")
                             << QStringList() << false;
    QTest::newRow("declined") << QByteArray(error + "NotAuthorizedDismissed: No' >&2; exit 1")
                              << QStringList() << true;
    QTest::newRow("refused") << QByteArray(error + "NotAuthorizedCanObtain: No' >&2; exit 1")
                             << QStringList { u"fake2p1 Mount"_s } << false;
}

void TestUDisksSession::olderServiceIsAskedInTheUsersName()
{
    if (geteuid() != 0)
        QSKIP("Only root mounts for another user.");
    QFETCH(QByteArray, script);
    QFETCH(QStringList, calls);
    QFETCH(bool, isDeclined);
    QTemporaryDir folder;
    QFile client(folder.filePath(u"udisksctl"_s));
    QVERIFY(client.open(QIODevice::WriteOnly));
    // As the user, and in a session without a terminal.
    client.write(
        "#!/bin/sh\n[ \"$(id -u)\" = 65534 ] && [ \"$(cut -d' ' -f6 /proc/$$/stat)\" = $$ ] || exit 2\n"
        + script + '\n');
    client.close();
    QVERIFY(client.setPermissions(QFile::Permissions(0x5555)));
    QVERIFY(QFile::setPermissions(folder.path(), QFile::Permissions(0x7755)));
    const QByteArray path = qgetenv("PATH");
    const QByteArray withClient = QFile::encodeName(folder.path()) + ':' + path;
    qputenv("PATH", withClient);
    SessionTest test;
    test.fake.addInterfaces(
        UDisks::managerPath, { { UDisks::manager, { { u"Version"_s, u"2.9.4"_s } } } }, Tell::No);
    test.start();
    qputenv("PKEXEC_UID", "65534");
    test.session->mount(test.disks.value(u"disk2s1"_s), 0, test.completion());
    qunsetenv("PKEXEC_UID");
    qputenv("PATH", path);
    QTRY_COMPARE(test.completions, 1);
    QCOMPARE(test.fake.calls, calls);
    QCOMPARE(test.outcome && test.outcome->isDeclined, isDeclined);
}

void TestUDisksSession::volumeIsMountedAgainForItsUserAlone_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("user");
    QTest::addColumn<QVariant>("options"); // of the call to the service; none where there is no call
    QTest::addColumn<bool>("isMounted");
    const QString ro = u"ro,noexec"_s;
    QTest::newRow("root's") << u"2.9.4"_s << u"root"_s << QVariant(QVariantMap { { u"options"_s, ro } })
                            << true;
    QTest::newRow("nobody's") << u"2.10.1"_s << QString() << QVariant(QVariantMap { { u"options"_s, ro } })
                              << true;
    QTest::newRow("a user's") << u"2.10.1"_s << u"nobody"_s
                              << QVariant(QVariantMap { { u"options"_s, ro }, { u"as-user"_s, u"nobody"_s } })
                              << true;
    QTest::newRow("refused") << u"2.9.4"_s << u"nobody"_s << QVariant() << false;
    QTest::newRow("of one who has gone") << u"2.10.1"_s << u"no such user"_s << QVariant() << false;
}

void TestUDisksSession::volumeIsMountedAgainForItsUserAlone()
{
    if (geteuid() != 0)
        QSKIP("Only root mounts for another user.");
    QFETCH(const QString, version);
    QFETCH(const QString, user);
    QFETCH(const QVariant, options);
    QFETCH(const bool, isMounted);
    QTemporaryDir folder; // with a client that the service refuses
    QVERIFY(QFile::link(u"/bin/false"_s, folder.filePath(u"udisksctl"_s)));
    SessionTest test;
    test.fake.addInterfaces(
        UDisks::managerPath, { { UDisks::manager, { { u"Version"_s, version } } } }, Tell::No);
    test.start();
    QVariant given;
    test.fake.answer = [&](const QDBusMessage &call) {
        given = qdbus_cast<QVariantMap>(call.arguments().constFirst());
        return call.createReply(u"/media/A"_s);
    };
    const QByteArray path = qgetenv("PATH");
    QVERIFY(QFile::setPermissions(folder.path(), QFile::Permissions(0x7755)));
    const QByteArray withClient = QFile::encodeName(folder.path()) + ':' + path;
    qputenv("PATH", withClient);
    test.session->mountAgain(
        test.disks.value(u"disk2s1"_s), user, { u"ro"_s, u"noexec"_s }, test.completion());
    qputenv("PATH", path);
    QTRY_COMPARE(test.completions, 1);
    QCOMPARE(!test.outcome, isMounted);
    QCOMPARE(given, options);
}

void TestUDisksSession::nothingIsMountedForAUserWhoCannotBeLookedUp()
{
    if (geteuid() != 0)
        QSKIP("Only root mounts for another user.");
    SessionTest test;
    test.start();
    qputenv("PKEXEC_UID", "61999");
    test.session->mount(test.disks.value(u"disk2s1"_s), 0, test.completion());
    qunsetenv("PKEXEC_UID");
    QTRY_COMPARE(test.completions, 1);
    QCOMPARE(test.fake.calls, QStringList());
    QVERIFY(test.outcome);
    QCOMPARE(test.outcome->status, static_cast<quint32>(DAReturn::NotPermitted));
}

void TestUDisksSession::folderAccessIsThatOfTheUser()
{
    if (geteuid() != 0)
        QSKIP("Only root acts for another user.");
    QTemporaryDir folder; // 0700
    QList<bool> answers;
    const auto find
        = [&] { findFolderAccess(folder.path(), this, [&answers](bool isOpen) { answers.append(isOpen); }); };
    find();
    QTRY_COMPARE(answers, QList<bool> { true });
    qputenv("PKEXEC_UID", "65534");
    find();
    QTRY_COMPARE(answers, (QList<bool> { true, false }));
    QVERIFY(QFile::setPermissions(folder.path(), QFile::Permissions(0x7755)));
    find();
    QTRY_COMPARE(answers, (QList<bool> { true, false, true }));
    QVERIFY(folder.remove()); // as with a volume that is unmounted
    find();
    QTRY_COMPARE(answers, (QList<bool> { true, false, true, true }));
    // Nobody can read this, as on a disk that fails.
    QVERIFY(QFile::link(folder.path(), folder.path()));
    find();
    qunsetenv("PKEXEC_UID");
    QTRY_COMPARE(answers, (QList<bool> { true, false, true, true, true }));
    QVERIFY(QFile::remove(folder.path()));
}

void TestUDisksSession::errorOfAnUnknownNameIsAGeneralError()
{
    SessionTest test;
    test.start();
    test.fake.answer = [](const QDBusMessage &call) {
        return call.createErrorReply(
            u"org.example.Unheard.Of"_s, u"GDBus.Error:org.example.Unheard.Of: something is wrong"_s);
    };
    test.session->mount(test.disks.value(u"disk2s1"_s), 0, test.completion());
    QTRY_COMPARE(test.completions, 1);
    QCOMPARE(test.outcome->status, 0xF8DA0001U);
    QCOMPARE(test.outcome->statusString.value_or(QString()), u"something is wrong"_s);
}

void TestUDisksSession::unmountGoesOnUntilNothingIsMounted()
{
    SessionTest test;
    QStringList points { u"/media/A"_s, u"/mnt"_s, u"/srv"_s };
    test.fake.changeProperties(volumePath, UDisks::filesystem, mountPoints(points), Tell::No);
    test.start();
    test.fake.answer = [&](const QDBusMessage &call) {
        points.removeFirst();
        test.fake.changeProperties(volumePath, UDisks::filesystem, mountPoints(points), Tell::No);
        return call.createReply();
    };
    test.session->unmount(test.disks.value(u"disk2s1"_s), 0, test.completion());
    QTRY_COMPARE(test.completions, 1);
    QVERIFY(!test.outcome);
    QCOMPARE(test.fake.calls.size(), 3);
}

void TestUDisksSession::unmountOfWhatIsUnmountedMeanwhileIsDone()
{
    SessionTest test;
    test.fake.changeProperties(volumePath, UDisks::filesystem, mountPoints({ u"/media/A"_s }), Tell::No);
    test.start();
    test.fake.answer = [&](const QDBusMessage &call) {
        test.fake.changeProperties(volumePath, UDisks::filesystem, mountPoints({}), Tell::No);
        return call.createErrorReply(u"org.freedesktop.UDisks2.Error.NotMounted"_s, u"not mounted"_s);
    };
    test.session->unmount(test.disks.value(u"disk2s1"_s), 0, test.completion());
    QTRY_COMPARE(test.completions, 1);
    QVERIFY(!test.outcome);
    QCOMPARE(test.fake.calls.size(), 1);
}

void TestUDisksSession::unmountOfWhatHasGoneIsDone_data()
{
    QTest::addColumn<QString>("error");
    QTest::addColumn<QStringList>("removed"); // interfaces of the volume
    QTest::addColumn<bool>("isTold"); // by signals that come before the answer
    const QString failed = u"org.freedesktop.UDisks2.Error.Failed"_s;
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
    test.fake.changeProperties(volumePath, UDisks::filesystem, mountPoints({ u"/media/A"_s }), Tell::No);
    test.fake.addInterfaces(secondPath, fakePartition(u"fake2p2"_s, 2, u"B"_s, { u"/media/B"_s }), Tell::No);
    test.start();
    test.fake.answer = [&](const QDBusMessage &call) {
        const QString &path = call.path();
        if (removed.isEmpty())
            test.fake.changeProperties(path, UDisks::filesystem, mountPoints({}), tell);
        else
            test.fake.removeInterfaces(path, removed, tell);
        return call.createErrorReply(error, u"No enclosing object for interface"_s);
    };
    test.session->unmount(test.disks.value(u"disk2"_s), kDADiskUnmountOptionWhole, test.completion());
    QTRY_COMPARE(test.completions, 1);
    QVERIFY(!test.outcome);
    QCOMPARE(test.fake.calls.size(), 2);
    QCOMPARE(test.events.contains(u"-disk2s1"_s), removed.contains(UDisks::block) && isTold);
}

// A service that ends takes its disks away, but not what is mounted.
void TestUDisksSession::unmountThatAServiceLeavesUndoneIsRefused()
{
    SessionTest test;
    test.fake.changeProperties(volumePath, UDisks::filesystem, mountPoints({ u"/media/A"_s }), Tell::No);
    test.start();
    test.fake.answer = [&](const QDBusMessage &call) {
        test.fake.stop();
        return call.createErrorReply(QDBusError::NoReply, u"no answer"_s);
    };
    test.session->unmount(test.disks.value(u"disk2s1"_s), 0, test.completion());
    QTRY_COMPARE(test.completions, 1);
    QVERIFY(test.outcome);
    QCOMPARE(test.outcome->statusString.value_or(QString()), u"no answer"_s);
}

void TestUDisksSession::unmountOfAWholeDiskStopsAtTheFirstRefusal()
{
    SessionTest test;
    test.fake.changeProperties(volumePath, UDisks::filesystem, mountPoints({ u"/media/A"_s }), Tell::No);
    test.fake.addInterfaces(secondPath, fakePartition(u"fake2p2"_s, 2, u"B"_s, { u"/media/B"_s }), Tell::No);
    test.start();
    test.fake.answer = busyAnswer;
    test.session->unmount(test.disks.value(u"disk2"_s), kDADiskUnmountOptionWhole, test.completion());
    QTRY_COMPARE(test.completions, 1);
    QCOMPARE(test.outcome->status, 0xF8DA0002U);
    test.fake.calls.removeDuplicates();
    QCOMPARE(test.fake.calls.size(), 1);
}

void TestUDisksSession::volumeThatIsBusyForAMomentIsUnmounted()
{
    SessionTest test;
    test.fake.changeProperties(volumePath, UDisks::filesystem, mountPoints({ u"/media/A"_s }), Tell::No);
    test.start();
    test.fake.answer = [&test](const QDBusMessage &call) {
        if (test.fake.calls.size() == 1)
            return busyAnswer(call);
        test.fake.changeProperties(volumePath, UDisks::filesystem, mountPoints({}), Tell::Yes);
        return QDBusMessage();
    };
    test.session->unmount(test.disks.value(u"disk2s1"_s), 0, test.completion());
    QTRY_COMPARE(test.completions, 1);
    QVERIFY(!test.outcome);
    QCOMPARE(test.fake.calls, list({ "fake2p1 Unmount", "fake2p1 Unmount" }));
}

void TestUDisksSession::forceIsUsedOnce()
{
    SessionTest test;
    test.fake.changeProperties(volumePath, UDisks::filesystem, mountPoints({ u"/media/A"_s }), Tell::No);
    test.start();
    test.fake.answer = busyAnswer;
    test.session->unmount(test.disks.value(u"disk2s1"_s), kDADiskUnmountOptionForce, test.completion());
    QTRY_COMPARE(test.completions, 1);
    QCOMPARE(test.outcome->status, 0xF8DA0002U);
    QCOMPARE(test.fake.calls, list({ "fake2p1 Unmount" }));
}

void TestUDisksSession::ejectOfALoopDiskWaitsUntilItIsDetached()
{
    SessionTest test;
    test.start();
    test.session->eject(test.disks.value(u"disk2"_s), 0, test.completion());
    QTRY_COMPARE(test.fake.calls, list({ "fake2 Delete" }));
    QCOMPARE(test.completions, 0);
    test.fake.changeProperties(
        diskPath, UDisks::loop, { { u"BackingFile"_s, QByteArray(1, '\0') } }, Tell::Yes);
    QTRY_COMPARE(test.completions, 1);
    QVERIFY(!test.outcome);
}

void TestUDisksSession::ejectOfADiskWithAMountedVolumeIsRefused()
{
    SessionTest test;
    test.fake.changeProperties(volumePath, UDisks::filesystem, mountPoints({ u"/media/A"_s }), Tell::No);
    test.start();
    test.session->eject(test.disks.value(u"disk2"_s), 0, test.completion());
    QTRY_COMPARE(test.completions, 1);
    QCOMPARE(test.outcome->status, 0xF8DA0002U);
    QCOMPARE(test.fake.calls, QStringList());
}

void TestUDisksSession::ejectOfADiskWithAMountedLogicalVolumeIsRefused()
{
    SessionTest test;
    test.mountedDisk = u"/dev/fake2"_s;
    test.start();
    test.session->eject(test.disks.value(u"disk2"_s), 0, test.completion());
    QTRY_COMPARE(test.completions, 1);
    QCOMPARE(test.outcome->status, 0xF8DA0002U);
    QCOMPARE(test.fake.calls, QStringList());
}

void TestUDisksSession::powerGoesOnlyFromADriveThatKeepsItsMedium_data()
{
    QTest::addColumn<bool>("isMediaRemovable");
    QTest::addColumn<bool>("isEjectable");
    QTest::addColumn<QStringList>("calls");
    QTest::newRow("card reader") << true << true << list({ "Reader Eject" });
    QTest::newRow("card reader that cannot eject") << true << false << QStringList();
    QTest::newRow("disk") << false << false << list({ "Reader PowerOff" });
    QTest::newRow("disk that can be ejected") << false << true << list({ "Reader Eject", "Reader PowerOff" });
}

// The power of a card reader is that of all its slots.
void TestUDisksSession::powerGoesOnlyFromADriveThatKeepsItsMedium()
{
    QFETCH(const bool, isMediaRemovable);
    QFETCH(const bool, isEjectable);
    QFETCH(const QStringList, calls);
    SessionTest test(false);
    const QString drivePath = UDisks::rootPath + u"/drives/Reader"_s;
    UDisksInterfaces disk = fakeWholeDisk(u"fake2"_s);
    disk[UDisks::block].insert(u"Drive"_s, QVariant::fromValue(QDBusObjectPath(drivePath)));
    test.fake.addInterfaces(drivePath,
        { { UDisks::drive,
            { { u"MediaRemovable"_s, isMediaRemovable }, { u"Ejectable"_s, isEjectable },
                { u"CanPowerOff"_s, true } } } },
        Tell::No);
    test.fake.addInterfaces(diskPath, disk, Tell::No);
    test.start();
    test.session->eject(test.disks.value(u"disk2"_s), 0, test.completion());
    QTRY_COMPARE(test.completions, 1);
    QCOMPARE(test.fake.calls, calls);
    QCOMPARE(test.outcome == nullptr, !calls.isEmpty());
}

void TestUDisksSession::renameOfAMountedVolumeUnmountsItWhereItMust()
{
    SessionTest test;
    test.fake.changeProperties(volumePath, UDisks::filesystem, mountPoints({ u"/media/A"_s }), Tell::No);
    test.start();
    bool isMounted = true;
    test.fake.answer = [&](const QDBusMessage &call) {
        if (call.member() == "SetLabel"_L1 && isMounted)
            return call.createErrorReply(u"org.freedesktop.UDisks2.Error.NotSupported"_s, u"it is mounted"_s);
        if (call.member() != "SetLabel"_L1) {
            isMounted = call.member() == "Mount"_L1;
            test.fake.changeProperties(volumePath, UDisks::filesystem,
                mountPoints(isMounted ? QStringList { u"/media/B"_s } : QStringList()), Tell::No);
        }
        return call.createReply();
    };
    test.session->rename(test.disks.value(u"disk2s1"_s), u"B"_s, 0, test.completion());
    QTRY_COMPARE(test.completions, 1);
    QVERIFY(!test.outcome);
    QCOMPARE(test.fake.calls,
        list({ "fake2p1 SetLabel", "fake2p1 Unmount", "fake2p1 SetLabel", "fake2p1 Mount" }));
}

void TestUDisksSession::mediumThatHasGoneIsNotFound()
{
    SessionTest test;
    test.start();
    const DADiskRef volume = test.disks.value(u"disk2s1"_s);
    test.fake.removeInterfaces(
        volumePath, { UDisks::block, UDisks::partition, UDisks::filesystem }, Tell::Yes);
    QTRY_VERIFY(test.events.contains(u"-disk2s1"_s));
    test.session->mount(volume, 0, test.completion());
    QCOMPARE(test.completions, 0);
    QTRY_COMPARE(test.completions, 1);
    QCOMPARE(test.outcome->status, 0xF8DA0006U);
    QCOMPARE(nameOf(volume), u"disk2s1"_s); // what was known of it stays
}

void TestUDisksSession::requestWaitsForAServiceThatStartsAnew_data()
{
    QTest::addColumn<bool>("isPresent");
    QTest::addColumn<QStringList>("calls");
    QTest::newRow("with the medium") << true << list({ "fake2 Delete" });
    QTest::newRow("without it") << false << QStringList();
}

// Such as the eject that follows an unmount, when the service is started again between the two.
void TestUDisksSession::requestWaitsForAServiceThatStartsAnew()
{
    QFETCH(bool, isPresent);
    QFETCH(QStringList, calls);
    SessionTest test;
    test.start();
    const DADiskRef disk = test.disks.value(u"disk2"_s);
    test.fake.stop();
    QTRY_COMPARE(test.events, list({ "-disk2s1", "-disk2" }));
    test.session->eject(disk, 0, test.completion());
    if (!isPresent)
        test.fake.removeInterfaces(diskPath, { UDisks::block, UDisks::loop }, Tell::No);
    test.fake.start();
    if (isPresent)
        QTRY_COMPARE(test.fake.calls, calls);
    else
        QTRY_COMPARE(test.completions, 1);
    QCOMPARE(test.fake.calls, calls);
}

void TestUDisksSession::requestWithoutAServiceIsNotFound()
{
    SessionTest test;
    test.start();
    test.fake.stop();
    QTRY_COMPARE(test.events, list({ "-disk2s1", "-disk2" }));
    test.session->unmount(test.disks.value(u"disk2s1"_s), 0, test.completion());
    QTRY_COMPARE_WITH_TIMEOUT(test.completions, 1, 30'000);
    QCOMPARE(test.outcome->status, 0xF8DA0006U);
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
    const DADiskRef disk = test.disks.value(u"disk2"_s);
    test.session->eject(disk, 0, test.completion());
    QCOMPARE(test.completions, 0);
    QTRY_COMPARE(test.completions, 1);
    QCOMPARE(test.outcome->status, 0xF8DA0006U);
    QCOMPARE(test.fake.calls, QStringList());
    QCOMPARE(test.events, list({ "-disk2s1", "-disk2", "+disk3", "+disk3s1" }));
    test.session->eject(test.disks.value(u"disk3"_s), 0, test.completion());
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
    test.session->mount(test.disks.value(u"disk2s1"_s), 0, test.completion());
    test.session.reset();
    QTRY_VERIFY(wasAsked);
    QCOMPARE(test.completions, 0);
}

QTEST_GUILESS_MAIN(TestUDisksSession)
#include "tst_udiskssession.moc"
