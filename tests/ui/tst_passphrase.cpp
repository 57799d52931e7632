// SPDX-License-Identifier: MIT
//
// The question for the passphrase of an encrypted volume, and locking it again.
#include "tests/support/TestController.h"
#include "ui/AlertSheet.h"
#include "ui/ImageButton.h"
#include "ui/PassphraseSheet.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using Kind = MemoryDiskService::RequestKind;

namespace {

// A stick with a locked partition, and the partition's row selected.
struct LockedVolume
{
    LockedVolume()
    {
        disk->description->insert(DAKey::mediaLeaf, false);
        disk->description->insert(DAKey::mediaName, u"Blue Stick"_s);
        volume->node = u"/dev/sdb3"_s;
        volume->description->insert(DAKey::mediaSize, PropertyNumber(qint64 { 20000000000 }));
        volume->partInEncryption = DADisk::Encryption::Encrypted;
        test.launch();
        test.add(disk);
        test.add(volume);
        test.select(u"disk2s3"_s);
    }

    void ask(bool isRetry)
    {
        test.service.askPassphrase(volume, isRetry, [this](std::optional<Passphrase> passphrase) {
            answers.append(passphrase ? QString(passphrase->text().constData(), passphrase->text().size())
                                      : u"declined"_s);
        });
    }

    PassphraseSheet *sheet() const { return test.window().findChild<PassphraseSheet *>(); }
    QLineEdit *field() const { return sheet()->findChild<QLineEdit *>(); }
    QString text(const QString &name) const
    {
        const auto *label = sheet()->findChild<QLabel *>(name);
        return label ? label->text() : QString();
    }
    QPushButton *button(QDialogButtonBox::ButtonRole role) const
    {
        const auto *box = sheet()->findChild<QDialogButtonBox *>();
        for (QAbstractButton *candidate : box->buttons()) {
            if (box->buttonRole(candidate) == role)
                return qobject_cast<QPushButton *>(candidate);
        }
        return nullptr;
    }

    mutable TestController test;
    MemoryDiskRef disk = makeDisk(u"disk2"_s);
    MemoryDiskRef volume = makePartition(u"disk2s3"_s, 1024);
    QStringList answers;
};

// What is unlocked, mounted and selected.
MemoryDiskRef addUnlocked(TestController &test)
{
    const MemoryDiskRef unlocked = makeDisk(u"disk9"_s);
    unlocked->description->insert(DAKey::volumeName, u"SECRETS"_s);
    unlocked->description->insert(DAKey::volumeMountable, true);
    unlocked->partInEncryption = DADisk::Encryption::Unlocked;
    setMounted(unlocked, u"/media/SECRETS"_s);
    test.add(unlocked);
    test.select(u"disk9"_s);
    return unlocked;
}

} // namespace

class TestPassphrase : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void questionSaysWhichVolume();
    void passphraseIsTyped();
    void cancelDeclines_data();
    void cancelDeclines();
    void wrongPassphraseIsTold();
    void hostileNameIsPlain();
    void windowThatGoesTakesTheQuestionAlong();
    void mediumThatGoesTakesTheQuestionAlong();
    void unlockedVolumeOutOfReachIsTold();
    void unmountLocks_data();
    void unmountLocks();
    void refusedLockIsTold();
};

void TestPassphrase::questionSaysWhichVolume()
{
    LockedVolume v;
    v.ask(false);
    QVERIFY(v.sheet()->isVisible());
    QCOMPARE(v.sheet()->windowModality(), Qt::WindowModal);
    QCOMPARE(v.sheet()->windowTitle(), u"Zorvex Disk Manager"_s);
    QCOMPARE(v.text(u"titleLabel"_s), u"Unlock the volume?"_s);
    QCOMPARE(v.text(u"volumeLabel"_s), u"20 GB on Blue Stick, /dev/sdb3"_s);
    QCOMPARE(v.text(u"wrongPassphraseLabel"_s), QString());
    QCOMPARE(v.field()->echoMode(), QLineEdit::Password);
    QCOMPARE(v.field()->accessibleName(), u"Passphrase"_s);
    QVERIFY(!v.button(QDialogButtonBox::AcceptRole)->isEnabled()); // nothing is typed yet
    QVERIFY(v.answers.isEmpty());
}

void TestPassphrase::passphraseIsTyped()
{
    LockedVolume v;
    v.ask(false);
    QTest::keyClicks(v.field(), u"two words"_s);
    QTest::keyClick(v.field(), Qt::Key_Return);
    QCOMPARE(v.answers, QStringList { u"two words"_s });
    QTRY_VERIFY(!v.sheet());
}

void TestPassphrase::cancelDeclines_data()
{
    QTest::addColumn<bool>("byKey");
    QTest::newRow("Escape") << true;
    QTest::newRow("Cancel") << false;
}

void TestPassphrase::cancelDeclines()
{
    QFETCH(bool, byKey);
    LockedVolume v;
    QTest::mouseClick(v.test.controller().mountUnmountButton, Qt::LeftButton);
    v.ask(false);
    QTest::keyClicks(v.field(), u"typed"_s);
    if (byKey)
        QTest::keyClick(v.sheet(), Qt::Key_Escape);
    else
        v.button(QDialogButtonBox::RejectRole)->click();
    QCOMPARE(v.answers, QStringList { u"declined"_s });
    v.test.service.completeRequest(makeDeclinedDissenter());
    QVERIFY(v.test.sheets().isEmpty());
    QVERIFY(!v.test.recordOf(u"disk2s3"_s)->operationInProgress);
}

void TestPassphrase::wrongPassphraseIsTold()
{
    LockedVolume v;
    v.ask(true);
    QCOMPARE(v.text(u"wrongPassphraseLabel"_s), u"That was not the passphrase. Try again."_s);
    QCOMPARE(v.field()->accessibleDescription(), v.text(u"wrongPassphraseLabel"_s));
    QCOMPARE(v.field()->text(), QString());
}

void TestPassphrase::hostileNameIsPlain()
{
    LockedVolume v;
    v.disk->description->insert(DAKey::mediaName, u"<b>Blue</b> & %@"_s);
    v.test.service.changeDisk(v.disk);
    v.ask(false);
    const auto *label = v.sheet()->findChild<QLabel *>(u"volumeLabel"_s);
    QCOMPARE(label->text(), u"20 GB on <b>Blue</b> & %@, /dev/sdb3"_s);
    QCOMPARE(label->textFormat(), Qt::PlainText);
}

void TestPassphrase::windowThatGoesTakesTheQuestionAlong()
{
    QStringList answers;
    {
        LockedVolume v;
        v.test.service.askPassphrase(
            v.volume, false, [&answers](const std::optional<Passphrase> &) { answers.append(u"one"_s); });
        QVERIFY(v.sheet());
    }
    QVERIFY(answers.isEmpty());
}

void TestPassphrase::mediumThatGoesTakesTheQuestionAlong()
{
    LockedVolume v;
    const DiskRecord record = v.test.recordOf(u"disk2s3"_s);
    const MemoryDiskRef other = makeDisk(u"disk3"_s);
    v.test.add(other);
    QTest::mouseClick(v.test.controller().mountUnmountButton, Qt::LeftButton);
    v.ask(false);
    v.test.service.removeDisk(other);
    QVERIFY(v.sheet()->isVisible());
    v.test.service.removeDisk(v.volume);
    QCOMPARE(v.answers, QStringList { u"declined"_s });
    QTRY_VERIFY(!v.sheet());
    v.test.service.completeRequest(makeDeclinedDissenter());
    QVERIFY(v.test.sheets().isEmpty());
    QVERIFY(!record->operationInProgress);
}

void TestPassphrase::unlockedVolumeOutOfReachIsTold()
{
    LockedVolume v;
    v.test.workspace->isFolderOpen = false;
    v.test.mountTable->mounted = { { "/dev/dm-0", "/media/root/SECRETS", { 1, 2 }, {} } };
    QTest::mouseClick(v.test.controller().mountUnmountButton, Qt::LeftButton);
    const MemoryDiskRef unlocked = addUnlocked(v.test);
    setMounted(unlocked, u"/media/root/SECRETS"_s);
    v.volume->unlocked = unlocked;
    v.test.service.completeRequest();
    QCOMPARE(v.test.sheets().size(), 1);
    const QString text = v.test.sheets().constFirst()->informativeText();
    QVERIFY2(text.contains(u"“SECRETS”"_s) && text.contains(u"/media/root/SECRETS"_s), qPrintable(text));
}

void TestPassphrase::unmountLocks_data()
{
    QTest::addColumn<bool>("isForced");
    QTest::newRow("plain") << false;
    QTest::newRow("forced") << true;
}

void TestPassphrase::unmountLocks()
{
    QFETCH(bool, isForced);
    TestController test;
    test.launch();
    const MemoryDiskRef unlocked = addUnlocked(test);
    QTest::mouseClick(test.controller().mountUnmountButton, Qt::LeftButton);
    if (isForced) {
        test.service.completeRequest(makeDissenter(DAReturn::Busy));
        press(test.sheets().constFirst(), AlertSheet::firstButtonReturn);
        QTRY_VERIFY(test.sheets().isEmpty());
    }
    QCOMPARE(test.service.requests().front().kind, Kind::Unmount);
    setMounted(unlocked, {});
    test.service.completeRequest();
    QCOMPARE(test.service.requests().size(), std::size_t { 1 });
    QCOMPARE(test.service.requests().front().kind, Kind::Lock);
    QCOMPARE(test.service.requests().front().disk, DADiskRef(unlocked));
    QVERIFY(test.recordOf(u"disk9"_s)->operationInProgress);
    test.service.removeDisk(unlocked);
    test.service.completeRequest();
    QVERIFY(test.sheets().isEmpty());
    QVERIFY(test.service.requests().empty());
}

void TestPassphrase::refusedLockIsTold()
{
    TestController test;
    test.launch();
    const MemoryDiskRef unlocked = addUnlocked(test);
    QTest::mouseClick(test.controller().mountUnmountButton, Qt::LeftButton);
    setMounted(unlocked, {});
    test.service.completeRequest();
    test.service.completeRequest(makeDissenter(DAReturn::Busy, u"Device or resource busy"_s));
    QCOMPARE(test.sheets().size(), 1);
    QCOMPARE(test.sheets().constFirst()->informativeText(),
        u"Error while unmounting disk9: Device or resource busy"_s);
    QVERIFY(!test.recordOf(u"disk9"_s)->operationInProgress);
}

QTEST_MAIN(TestPassphrase)
#include "tst_passphrase.moc"
