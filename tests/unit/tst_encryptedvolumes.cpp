// SPDX-License-Identifier: MIT
//
// Encrypted media over a bus: the passphrase and its way, the device that is unlocked, and locking.
#include "tests/support/FakeUDisks.h"
#include "tests/support/TestController.h"

#include "platform/udisks/UDisksSession.h"

#include <QDBusMessage>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using Encryption = DADisk::Encryption;
using Tell = FakeUDisks::Tell;

namespace {

const QString diskPath = FakeUDisks::blockPath(u"fake2"_s);
const QString encryptedPath = FakeUDisks::blockPath(u"fake2p1"_s);
const QString readablePath = FakeUDisks::blockPath(u"fake9"_s);
const QString right = u"right one"_s;

QVariant pathValue(const QString &path)
{
    return QVariant::fromValue(QDBusObjectPath(path));
}

QVariant mountPoints(const QString &point)
{
    return QVariant::fromValue(point.isEmpty() ? QByteArrayList() : QByteArrayList { point.toUtf8() + '\0' });
}

UDisksInterfaces encryptedPartition(const QString &type)
{
    UDisksInterfaces interfaces = fakePartition(u"fake2p1"_s, 1, {});
    interfaces.remove(UDisks::filesystem);
    interfaces[UDisks::block].insert(u"IdUsage"_s, u"crypto"_s);
    interfaces[UDisks::block].insert(u"IdType"_s, type);
    interfaces.insert(UDisks::encrypted, { { u"CleartextDevice"_s, pathValue(u"/"_s) } });
    return interfaces;
}

// What is unlocked on the partition.
UDisksInterfaces readableDevice()
{
    UDisksInterfaces interfaces = fakePartition(u"fake9"_s, 1, u"SECRETS"_s);
    interfaces.remove(UDisks::partition);
    interfaces[UDisks::block].insert(u"CryptoBackingDevice"_s, pathValue(encryptedPath));
    return interfaces;
}

// A stick with one encrypted partition, at a service that unlocks it for the right passphrase.
struct EncryptedStick
{
    explicit EncryptedStick(const QString &type = u"crypto_LUKS"_s, bool isUnlocked = false)
    {
        fake.addInterfaces(diskPath, fakeWholeDisk(u"fake2"_s, true), Tell::No);
        fake.addInterfaces(encryptedPath, encryptedPartition(type), Tell::No);
        if (isUnlocked)
            fake.addInterfaces(readablePath, readableDevice(), Tell::No);
        fake.answer = [this](const QDBusMessage &call) { return answer(call); };
        session = createUDisksSession(
            noClaims, fake.client(), [this](const QString &node) { return facts(node); });
        session->registerDiskAppearedCallback([this](const DADiskRef &disk) {
            disks.insert(*disk->copyDescription()->value(DAKey::mediaBSDName)->asString(), disk);
        });
        session->setInitialListingCallback([this](bool) { isListed = true; });
        session->setPassphraseQuestion([this](const DADiskRef &disk, bool isRetry, PassphraseAnswer reply) {
            QCOMPARE(disk, disks.value(u"disk2s1"_s));
            retries.append(isRetry);
            questions.push_back(std::move(reply));
        });
        fake.start();
        session->scheduleWithRunLoop();
        [this] { QTRY_VERIFY(isListed); }();
    }

    QDBusMessage answer(const QDBusMessage &call)
    {
        const QString method = call.member();
        if (refusals.contains(method))
            return call.createErrorReply(
                u"org.freedesktop.UDisks2.Error."_s + refusals.value(method), method + u" is refused"_s);
        if (method == "Unlock"_L1) {
            passphrases.append(call.arguments().constFirst().toString());
            if (passphrases.constLast() != right)
                return call.createErrorReply(u"org.freedesktop.UDisks2.Error.Failed"_s, wrongText);
            UDisksInterfaces stages = readableDevice();
            const UDisksInterfaces last { { UDisks::filesystem, stages.take(UDisks::filesystem) } };
            fake.addInterfaces(readablePath, stages, Tell::Yes);
            tellFilesystem = [this, last] { fake.addInterfaces(readablePath, last, Tell::Yes); };
            if (tellsFilesystem)
                tellFilesystem();
            return call.createReply(pathValue(readablePath));
        }
        if (method == "Lock"_L1)
            fake.removeInterfaces(readablePath, { UDisks::block, UDisks::filesystem }, Tell::Yes);
        else if (method == "Mount"_L1 || method == "Unmount"_L1)
            fake.changeProperties(call.path(), UDisks::filesystem,
                { { u"MountPoints"_s, mountPoints(method == "Mount"_L1 ? u"/media/SECRETS"_s : QString()) } },
                Tell::Yes);
        else if (method == "Delete"_L1)
            fake.changeProperties(
                call.path(), UDisks::loop, { { u"BackingFile"_s, QByteArray(1, 0) } }, Tell::Yes);
        return {};
    }

    DADiskCompletion completion()
    {
        return [this](const DADiskRef &, const DADissenterRef &dissenter) {
            ++completions;
            outcome = dissenter;
            const DADiskRef unlocked = session->unlockedDisk(disks.value(u"disk2s1"_s));
            const PropertyValue *const path
                = unlocked ? unlocked->copyDescription()->value(DAKey::volumePath) : nullptr;
            mountedAt = path ? path->asUrl()->toLocalFile() : QString();
        };
    }

    void mount() { session->mount(disks.value(u"disk2s1"_s), 0, completion()); }
    void reply(std::optional<QString> text)
    {
        const PassphraseAnswer answerLast = std::exchange(questions, {}).back();
        answerLast(text ? std::optional<Passphrase>(std::move(*text)) : std::nullopt);
    }

    LogCapture log;
    FakeUDisks fake;
    std::function<std::optional<BlockDeviceFacts>(const QString &node)> facts = FakeUDisks::facts;
    QHash<QString, DADiskRef> disks;
    bool isListed = false;
    bool tellsFilesystem = true; // right when it has unlocked
    std::function<void()> tellFilesystem;
    QString wrongText = u"Error unlocking /dev/fake2p1: Failed to activate device: Incorrect passphrase."_s;
    QHash<QString, QString> refusals; // error by method
    QStringList passphrases; // that the service was given
    QList<bool> retries;
    std::vector<PassphraseAnswer> questions; // that wait for an answer
    int completions = 0;
    DADissenterRef outcome;
    QString mountedAt; // what was unlocked, at the last completion
    std::unique_ptr<DASession> session; // first to go
};

QStringList calls(std::initializer_list<const char *> texts)
{
    QStringList result;
    for (const char *text : texts)
        result.append(QLatin1String(text));
    return result;
}

} // namespace

class TestEncryptedVolumes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void mountUnlocksAndMounts_data();
    void mountUnlocksAndMounts();
    void unlockedDeviceIsMountedOnceItIsDescribed();
    void wrongPassphraseIsAskedAgain_data();
    void wrongPassphraseIsAskedAgain();
    void declinedQuestionChangesNothing();
    void refusedUnlockIsHandedOn();
    void withoutAQuestionNothingIsUnlocked();
    void unlockedVolumeIsMountedWithoutAQuestion();
    void newVolumeOnAnEncryptedDeviceIsMountedOnceItIsDescribed();
    void mediumThatIsAnotherByNowGetsNoPassphrase();
    void answerAfterTheSessionIsIgnored();
    void lockTakesEitherMedium_data();
    void lockTakesEitherMedium();
    void refusedLockIsHandedOn();
    void ejectLocksFirst_data();
    void ejectLocksFirst();
    void ejectStopsAtARefusedLock();
    void unlockedMediumIsOnItsDisk();
    void passphraseIsOverwritten();
};

void TestEncryptedVolumes::mountUnlocksAndMounts_data()
{
    QTest::addColumn<QString>("type");
    QTest::newRow("LUKS") << u"crypto_LUKS"_s;
    QTest::newRow("BitLocker") << u"BitLocker"_s;
}

void TestEncryptedVolumes::mountUnlocksAndMounts()
{
    QFETCH(QString, type);
    EncryptedStick stick(type);
    const DADiskRef encrypted = stick.disks.value(u"disk2s1"_s);
    QVERIFY(*encrypted->copyDescription()->value(DAKey::volumeMountable)->asBoolean());
    QCOMPARE(encrypted->encryption(), Encryption::Encrypted);
    QVERIFY(!stick.session->unlockedDisk(encrypted));
    stick.mount();
    QCOMPARE(stick.retries, QList<bool> { false });
    QVERIFY(stick.fake.calls.isEmpty());
    stick.reply(right);
    QTRY_COMPARE(stick.completions, 1);
    QVERIFY(!stick.outcome);
    QCOMPARE(stick.passphrases, QStringList { right });
    QCOMPARE(stick.fake.calls, calls({ "fake2p1 Unlock", "fake9 Mount" }));
    const DADiskRef readable = stick.disks.value(u"disk9"_s);
    QVERIFY(readable);
    QCOMPARE(stick.session->unlockedDisk(encrypted), readable);
    QVERIFY(!stick.session->unlockedDisk(readable));
    QCOMPARE(readable->encryption(), Encryption::Unlocked);
    QCOMPARE(*readable->copyDescription()->value(DAKey::volumeName)->asString(), u"SECRETS"_s);
    QCOMPARE(stick.mountedAt, u"/media/SECRETS"_s);
    QVERIFY(!stick.log.lines().join(u'\n').contains(right));
}

void TestEncryptedVolumes::unlockedDeviceIsMountedOnceItIsDescribed()
{
    EncryptedStick stick;
    stick.tellsFilesystem = false;
    stick.mount();
    stick.reply(right);
    QTRY_VERIFY(stick.disks.contains(u"disk9"_s));
    bool isNextCallAnswered = false; // which comes after the answer to the first
    stick.session->rename(stick.disks.value(u"disk2"_s), u"X"_s, 0,
        [&isNextCallAnswered](const DADiskRef &, const DADissenterRef &) { isNextCallAnswered = true; });
    QTRY_VERIFY(isNextCallAnswered);
    QCOMPARE(stick.completions, 0);
    stick.tellFilesystem();
    QTRY_COMPARE(stick.completions, 1);
    QVERIFY(!stick.outcome);
    QCOMPARE(stick.fake.calls, calls({ "fake2p1 Unlock", "fake9 Mount" }));
}

void TestEncryptedVolumes::wrongPassphraseIsAskedAgain_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("words of the library")
        << u"Error unlocking /dev/fake2p1: Failed to activate device: Incorrect passphrase."_s;
    QTest::newRow("system error")
        << u"Error unlocking /dev/fake2p1: Failed to activate device: Operation not permitted"_s;
}

void TestEncryptedVolumes::wrongPassphraseIsAskedAgain()
{
    QFETCH(QString, text);
    EncryptedStick stick;
    stick.wrongText = text;
    stick.mount();
    stick.reply(u"wrong one"_s);
    QTRY_COMPARE(stick.retries, (QList<bool> { false, true }));
    QCOMPARE(stick.completions, 0);
    stick.reply(right);
    QTRY_COMPARE(stick.completions, 1);
    QVERIFY(!stick.outcome);
    QCOMPARE(stick.passphrases, (QStringList { u"wrong one"_s, right }));
}

void TestEncryptedVolumes::declinedQuestionChangesNothing()
{
    EncryptedStick stick;
    stick.mount();
    stick.reply(std::nullopt);
    QTRY_COMPARE(stick.completions, 1);
    QVERIFY(stick.outcome && stick.outcome->isDeclined);
    QVERIFY(stick.fake.calls.isEmpty());
}

void TestEncryptedVolumes::refusedUnlockIsHandedOn()
{
    EncryptedStick stick;
    stick.refusals.insert(u"Unlock"_s, u"NotAuthorized"_s);
    stick.mount();
    stick.reply(right);
    QTRY_COMPARE(stick.completions, 1);
    QVERIFY(stick.outcome && !stick.outcome->isDeclined);
    QVERIFY(stick.outcome);
    QCOMPARE(stick.outcome->statusString.value_or(QString()), u"Unlock is refused"_s);
    QCOMPARE(stick.retries.size(), 1);
}

void TestEncryptedVolumes::withoutAQuestionNothingIsUnlocked()
{
    EncryptedStick stick;
    stick.session->setPassphraseQuestion(nullptr);
    stick.mount();
    QCOMPARE(stick.completions, 0);
    QTRY_COMPARE(stick.completions, 1);
    QVERIFY(stick.outcome);
    QCOMPARE(stick.outcome->status, static_cast<quint32>(DAReturn::NotPermitted));
    QVERIFY(stick.fake.calls.isEmpty());
}

void TestEncryptedVolumes::unlockedVolumeIsMountedWithoutAQuestion()
{
    EncryptedStick stick(u"crypto_LUKS"_s, true);
    stick.mount();
    QTRY_COMPARE(stick.completions, 1);
    QVERIFY(!stick.outcome && stick.retries.isEmpty());
    QCOMPARE(stick.fake.calls, calls({ "fake9 Mount" }));
    stick.mount(); // it is mounted already
    QTRY_COMPARE(stick.completions, 2);
    QVERIFY(!stick.outcome);
    QCOMPARE(stick.fake.calls, calls({ "fake9 Mount" }));
}

// The service tells in stages what an erase has left.
void TestEncryptedVolumes::newVolumeOnAnEncryptedDeviceIsMountedOnceItIsDescribed()
{
    EncryptedStick stick;
    const DADiskRef disk = stick.disks.value(u"disk2s1"_s);
    stick.fake.changeProperties(encryptedPath, UDisks::block,
        { { u"IdUsage"_s, u"filesystem"_s }, { u"IdType"_s, u"ext4"_s }, { u"IdLabel"_s, u"NEW"_s } },
        Tell::Yes);
    QTRY_COMPARE(disk->encryption(), Encryption::None);
    stick.mount();
    bool isNextCallAnswered = false; // which comes after the answer to the first
    stick.session->rename(stick.disks.value(u"disk2"_s), u"X"_s, 0,
        [&isNextCallAnswered](const DADiskRef &, const DADissenterRef &) { isNextCallAnswered = true; });
    QTRY_VERIFY(isNextCallAnswered);
    QCOMPARE(stick.completions, 0);
    const UDisksInterfaces filesystem { { UDisks::filesystem, readableDevice().value(UDisks::filesystem) } };
    stick.fake.addInterfaces(encryptedPath, filesystem, Tell::Yes);
    QTRY_COMPARE(stick.completions, 1);
    QVERIFY(!stick.outcome && stick.retries.isEmpty());
    QCOMPARE(stick.fake.calls, calls({ "fake2p1 Mount" }));
}

void TestEncryptedVolumes::mediumThatIsAnotherByNowGetsNoPassphrase()
{
    EncryptedStick stick;
    stick.mount();
    stick.facts = [](const QString &) -> std::optional<BlockDeviceFacts> {
        BlockDeviceFacts facts;
        facts.diskSequence = 3;
        facts.bsdName = u"disk3s1"_s;
        return facts;
    };
    stick.reply(right);
    QTRY_COMPARE(stick.completions, 1);
    QVERIFY(stick.outcome);
    QCOMPARE(stick.outcome->status, static_cast<quint32>(DAReturn::NotFound));
    QVERIFY(stick.passphrases.isEmpty());
}

void TestEncryptedVolumes::answerAfterTheSessionIsIgnored()
{
    EncryptedStick stick;
    stick.mount();
    stick.session.reset();
    stick.reply(right);
    QCOMPARE(stick.completions, 0);
}

void TestEncryptedVolumes::lockTakesEitherMedium_data()
{
    QTest::addColumn<QString>("bsdName");
    QTest::newRow("encrypted") << u"disk2s1"_s;
    QTest::newRow("unlocked") << u"disk9"_s;
}

void TestEncryptedVolumes::lockTakesEitherMedium()
{
    QFETCH(QString, bsdName);
    EncryptedStick stick(u"crypto_LUKS"_s, true);
    const DADiskRef disk = stick.disks.value(bsdName);
    stick.mount();
    QTRY_COMPARE(stick.completions, 1);
    stick.session->unmount(disk, 0, stick.completion());
    QTRY_COMPARE(stick.completions, 2);
    QVERIFY(!stick.outcome);
    stick.session->lock(disk, stick.completion());
    QTRY_COMPARE(stick.completions, 3);
    QVERIFY(!stick.outcome);
    QCOMPARE(stick.fake.calls, calls({ "fake9 Mount", "fake9 Unmount", "fake2p1 Lock" }));
    stick.session->lock(stick.disks.value(u"disk2s1"_s), stick.completion()); // locked already
    QTRY_COMPARE(stick.completions, 4);
    QVERIFY(!stick.outcome);
    QCOMPARE(stick.fake.calls.size(), 3);
}

void TestEncryptedVolumes::refusedLockIsHandedOn()
{
    EncryptedStick stick(u"crypto_LUKS"_s, true);
    stick.refusals.insert(u"Lock"_s, u"DeviceBusy"_s);
    stick.session->lock(stick.disks.value(u"disk9"_s), stick.completion());
    QTRY_COMPARE(stick.completions, 1);
    QVERIFY(stick.outcome);
    QCOMPARE(stick.outcome->status, static_cast<quint32>(DAReturn::Busy));
    QVERIFY(stick.outcome);
    QCOMPARE(stick.outcome->statusString.value_or(QString()), u"Lock is refused"_s);
}

void TestEncryptedVolumes::ejectLocksFirst_data()
{
    QTest::addColumn<QString>("bsdName");
    QTest::newRow("disk") << u"disk2"_s;
    QTest::newRow("unlocked volume") << u"disk9"_s;
}

void TestEncryptedVolumes::ejectLocksFirst()
{
    QFETCH(QString, bsdName);
    EncryptedStick stick(u"crypto_LUKS"_s, true);
    stick.mount();
    QTRY_COMPARE(stick.completions, 1);
    stick.fake.calls.clear();
    const DADiskRef disk = stick.disks.value(bsdName);
    stick.session->eject(disk, 0, stick.completion());
    QTRY_COMPARE(stick.completions, 2);
    QVERIFY(stick.outcome);
    QCOMPARE(stick.outcome->status, static_cast<quint32>(DAReturn::Busy)); // it is still mounted
    stick.session->unmount(disk, kDADiskUnmountOptionWhole, stick.completion());
    QTRY_COMPARE(stick.completions, 3);
    QVERIFY(!stick.outcome);
    stick.session->eject(disk, 0, stick.completion());
    QTRY_COMPARE(stick.completions, 4);
    QVERIFY(!stick.outcome);
    QCOMPARE(stick.fake.calls, calls({ "fake9 Unmount", "fake2p1 Lock", "fake2 Delete" }));
}

void TestEncryptedVolumes::ejectStopsAtARefusedLock()
{
    EncryptedStick stick(u"crypto_LUKS"_s, true);
    stick.refusals.insert(u"Lock"_s, u"Failed"_s);
    stick.session->eject(stick.disks.value(u"disk2"_s), 0, stick.completion());
    QTRY_COMPARE(stick.completions, 1);
    QVERIFY(stick.outcome);
    QVERIFY(stick.outcome);
    QCOMPARE(stick.outcome->statusString.value_or(QString()), u"Lock is refused"_s);
    QCOMPARE(stick.fake.calls, calls({ "fake2p1 Lock" }));
}

void TestEncryptedVolumes::unlockedMediumIsOnItsDisk()
{
    EncryptedStick stick(u"crypto_LUKS"_s, true);
    const PropertyDictionary description = *stick.disks.value(u"disk9"_s)->copyDescription();
    QCOMPARE(*description.value(DAKey::mediaEjectable)->asBoolean(), true);
    QCOMPARE(*description.value(DAKey::mediaRemovable)->asBoolean(), true);
    QCOMPARE(*description.value(DAKey::deviceInternal)->asBoolean(), false);
    QVERIFY(!description.value(DAKey::mediaName));
}

void TestEncryptedVolumes::passphraseIsOverwritten()
{
    QString typed = QString(right.constData(), right.size());
    const QString shared = typed;
    {
        Passphrase first(std::move(typed));
        Passphrase second(std::move(first));
        QCOMPARE(second.text(), right);
        Passphrase literal(u"not to be written to"_s);
    }
    QCOMPARE(shared, QString(right.size(), QChar(0)));
}

QTEST_GUILESS_MAIN(TestEncryptedVolumes)
#include "tst_encryptedvolumes.moc"
