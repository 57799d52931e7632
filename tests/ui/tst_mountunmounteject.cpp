// SPDX-License-Identifier: MIT
//
// The button that mounts, unmounts and ejects.
#include "platform/Localization.h"
#include "tests/support/TestController.h"
#include "tests/ui/SheetWatch.h"
#include "ui/AlertSheet.h"
#include "ui/GlyphLabel.h"
#include "ui/ImageButton.h"
#include "ui/OutlineView.h"
#include "ui/UsageBar.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;
using Kind = MemoryDiskService::RequestKind;

class TestMountUnmountEject : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void requestOfAMedium_data();
    void requestOfAMedium();
    void slowUnmountIsShown();
    void activityWaitsForTheAnswer();
    void nothingSelectedMakesNoRequest();
    void buttonDoesNothingWhileBusy();
    void mountRefreshesTheRecord();
    void refusedMountIsReported_data();
    void refusedMountIsReported();
    void outcomeIsReportedBeforeTheEnd_data();
    void outcomeIsReportedBeforeTheEnd();
    void declinedQuestionEndsWithoutAnAlert_data();
    void declinedQuestionEndsWithoutAnAlert();
    void declinedQuestionOfAForcedEject();
    void volumeOutOfReachIsTold();
    void volumeThatIsUnmountedMeanwhileIsNotOutOfReach();
    void refusedUnmountOffersForce();
    void cancelLeavesTheVolumeMounted();
    void keysOnTheForceDialog_data();
    void keysOnTheForceDialog();
    void forcedUnmount();
    void refusedForcedUnmountIsReported();
    void ejectUnmountsAllAndEjects();
    void refusedEjectIsReported();
    void forcedEjectIgnoresTheRefusalOfItsUnmount();
    void cancelledEjectReportsNothing();
    void forceDialogShowsBesideAnAlert();
    void recordThatCannotBeRefreshedIsLogged_data();
    void recordThatCannotBeRefreshedIsLogged();
    void mediumThatVanishesMeanwhile();
    void mediumThatVanishesBehindTheForceDialog();
    void diskThatVanishesDuringAnEject_data();
    void diskThatVanishesDuringAnEject();
    void twoDisksSideBySide();

private:
    struct Fixture
    {
        TestController test;
        MemoryDiskRef disk = makeDisk(u"disk2"_s);
        MemoryDiskRef volume = makePartition(u"disk2s1"_s, 1024, u"DATA"_s);
    };
    static std::unique_ptr<Fixture> launched(const QString &mountPoint = {});
    static void click(Fixture &f, const QString &bsdName);
    static bool isBusy(Fixture &f, const QString &bsdName);
};

namespace {

constexpr int firstButton = AlertSheet::firstButtonReturn;
constexpr int secondButton = AlertSheet::firstButtonReturn + 1;

} // namespace

std::unique_ptr<TestMountUnmountEject::Fixture> TestMountUnmountEject::launched(const QString &mountPoint)
{
    auto f = std::make_unique<Fixture>();
    f->disk->description->insert(DAKey::mediaLeaf, false);
    setMounted(f->volume, mountPoint);
    f->test.launch();
    f->test.add(f->disk);
    f->test.add(f->volume);
    return f;
}

void TestMountUnmountEject::click(Fixture &f, const QString &bsdName)
{
    f.test.select(bsdName);
    QTest::mouseClick(f.test.controller().mountUnmountButton, Qt::LeftButton);
}

bool TestMountUnmountEject::isBusy(Fixture &f, const QString &bsdName)
{
    return f.test.recordOf(bsdName)->operationInProgress;
}

void TestMountUnmountEject::requestOfAMedium_data()
{
    QTest::addColumn<bool>("whole");
    QTest::addColumn<bool>("leaf");
    QTest::addColumn<bool>("mounted");
    QTest::addColumn<int>("kind");
    QTest::addColumn<quint32>("options");
    const auto row = [](const char *name, bool whole, bool leaf, bool mounted, Kind kind, quint32 options) {
        QTest::newRow(name) << whole << leaf << mounted << static_cast<int>(kind) << options;
    };
    row("volume", false, true, false, Kind::Mount, 0);
    row("mounted volume", false, true, true, Kind::Unmount, 0);
    row("disk without partitions", true, true, false, Kind::Mount, 0);
    row("mounted disk without partitions", true, true, true, Kind::Unmount, 0);
    row("disk with partitions", true, false, false, Kind::Unmount, 1);
    row("mounted disk with partitions", true, false, true, Kind::Unmount, 0);
    row("partition with parts", false, false, false, Kind::Mount, 0);
}

void TestMountUnmountEject::requestOfAMedium()
{
    QFETCH(bool, whole);
    QFETCH(bool, leaf);
    QFETCH(bool, mounted);
    QFETCH(int, kind);
    const auto f = launched();
    const MemoryDiskRef disk = makeDisk(u"disk3"_s);
    disk->description->insert(DAKey::mediaWhole, whole);
    disk->description->insert(DAKey::mediaLeaf, leaf);
    if (!whole)
        disk->mediaProperties = makePartition(u"disk3s1"_s, 1024)->mediaProperties;
    setMounted(disk, mounted ? u"/media/A"_s : QString());
    f->test.add(disk);
    click(*f, u"disk3"_s);
    QCOMPARE(f->test.service.requests().size(), std::size_t { 1 });
    const auto &request = f->test.service.requests().front();
    QCOMPARE(static_cast<int>(request.kind), kind);
    QTEST(request.options, "options");
    QCOMPARE(request.disk, disk);
    QVERIFY(isBusy(*f, u"disk3"_s));
    QVERIFY(!f->test.controller().mountUnmountButton->isEnabled());
}

void TestMountUnmountEject::slowUnmountIsShown()
{
    const auto f = launched(u"/media/DATA"_s);
    click(*f, u"disk2s1"_s);
    const auto &panel = f->test.controller();
    const QString activity = localizedString("ACTIVITY_UNMOUNTING_TEXT");
    QVERIFY(!panel.infoStatusLabel->text().startsWith(activity));
    QTRY_VERIFY(panel.infoStatusLabel->text().startsWith(activity));
    QCOMPARE(panel.infoUsageBar->maximum(), 0);
    f->test.service.completeRequest();
    QVERIFY(!panel.infoStatusLabel->text().startsWith(activity));
}

// Nothing is written while the user thinks about it.
void TestMountUnmountEject::activityWaitsForTheAnswer()
{
    const auto f = launched(u"/media/DATA"_s);
    click(*f, u"disk2s1"_s);
    const auto &panel = f->test.controller();
    f->test.recordOf(u"disk2s1"_s)->operationBegan -= std::chrono::seconds(1);
    f->test.service.completeRequest(makeDissenter(DAReturn::Busy));
    QCOMPARE(f->test.sheets().size(), 1);
    QCOMPARE(panel.infoStatusLabel->text(), u"Waiting for your answer."_s);
    QVERIFY(panel.infoUsageBar->isUnknown());
    press(f->test.sheets().constFirst(), AlertSheet::firstButtonReturn);
    QVERIFY(panel.infoStatusLabel->text().startsWith(localizedString("ACTIVITY_UNMOUNTING_TEXT")));
    QVERIFY(!panel.infoUsageBar->isUnknown());
    f->test.service.completeRequest(makeDissenter(DAReturn::Busy));
    QVERIFY(!isBusy(*f, u"disk2s1"_s));
}

void TestMountUnmountEject::nothingSelectedMakesNoRequest()
{
    const auto f = launched();
    f->test.controller().clickMountUnmountButton(nullptr);
    QVERIFY(f->test.service.requests().empty());
}

void TestMountUnmountEject::buttonDoesNothingWhileBusy()
{
    const auto f = launched();
    click(*f, u"disk2s1"_s);
    f->test.controller().clickMountUnmountButton(nullptr);
    QCOMPARE(f->test.service.requests().size(), std::size_t { 1 });
}

void TestMountUnmountEject::mountRefreshesTheRecord()
{
    const auto f = launched();
    click(*f, u"disk2s1"_s);
    setMounted(f->volume, u"/media/DATA"_s);
    f->test.service.completeRequest();
    QCOMPARE(f->test.recordOf(u"disk2s1"_s)->volumePath->toLocalFile(), u"/media/DATA"_s);
    QVERIFY(!isBusy(*f, u"disk2s1"_s));
    QCOMPARE(f->test.controller().mountUnmountButton->text(), localizedString("UNMOUNT_BUTTON_TITLE"));
    QVERIFY(f->test.controller().mountUnmountButton->isEnabled());
    QVERIFY(f->test.sheets().isEmpty());
}

void TestMountUnmountEject::refusedMountIsReported_data()
{
    QTest::addColumn<quint32>("status");
    QTest::addColumn<std::optional<QString>>("words"); // the service's own
    QTest::addColumn<QString>("reason");
    const auto none = std::optional<QString>();
    const auto words = std::optional<QString>(u"words of the service"_s);
    const QString unsupported = u"No supported file system found."_s;
    QTest::newRow("busy") << 0xF8DA0002 << none << u"kDAReturnBusy"_s;
    QTest::newRow("busy, in words") << 0xF8DA0002 << words << u"words of the service"_s;
    QTest::newRow("a number of nobody's") << 0xF8DA000DU << none << u"The disk service gave no reason."_s;
    QTest::newRow("unsupported") << 0xF8DA000C << none << unsupported;
    QTest::newRow("unsupported, in words") << 0xF8DA000C << words << unsupported;
}

void TestMountUnmountEject::refusedMountIsReported()
{
    QFETCH(quint32, status);
    QFETCH(std::optional<QString>, words);
    QFETCH(QString, reason);
    const auto f = launched();
    click(*f, u"disk2s1"_s);
    f->test.service.completeRequest(makeDissenter(static_cast<DAReturn>(status), words));
    QCOMPARE(f->test.sheets().size(), 1);
    QCOMPARE(f->test.sheets().constFirst()->text(), u"Error"_s);
    QCOMPARE(f->test.sheets().constFirst()->informativeText(),
        QString(u"Error while mounting disk2s1: "_s + reason));
    QVERIFY(!isBusy(*f, u"disk2s1"_s));
}

void TestMountUnmountEject::outcomeIsReportedBeforeTheEnd_data()
{
    QTest::addColumn<QString>("bsdName");
    QTest::addColumn<QString>("mountPoint");
    QTest::addColumn<QString>("text");
    QTest::newRow("mount") << u"disk2s1"_s << QString() << u"Error while mounting disk2s1: kDAReturnBusy"_s;
    QTest::newRow("unmount") << u"disk2s1"_s << u"/media/A"_s
                             << u"Error while unmounting disk2s1: kDAReturnBusy"_s;
    QTest::newRow("eject") << u"disk2"_s << QString() << u"Error while ejecting disk2: kDAReturnBusy"_s;
}

void TestMountUnmountEject::outcomeIsReportedBeforeTheEnd()
{
    QFETCH(QString, bsdName);
    QFETCH(QString, mountPoint);
    QFETCH(QString, text);
    const auto f = launched(mountPoint);
    click(*f, bsdName);
    if (!mountPoint.isEmpty()) {
        f->test.service.completeRequest(makeDissenter(DAReturn::Busy));
        press(f->test.sheets().constFirst(), firstButton);
    } else if (bsdName == "disk2"_L1) {
        f->test.service.completeRequest();
    }
    const SheetWatch watch(f->test.recordOf(bsdName));
    f->test.service.completeRequest(makeDissenter(DAReturn::Busy));
    QCOMPARE(f->test.sheets().constFirst()->informativeText(), text);
    QCOMPARE(watch.wasBusy, QList { true });
    QVERIFY(!isBusy(*f, bsdName));
}

void TestMountUnmountEject::declinedQuestionEndsWithoutAnAlert_data()
{
    QTest::addColumn<QString>("bsdName");
    QTest::addColumn<QString>("mountPoint");
    QTest::newRow("mount") << u"disk2s1"_s << QString();
    QTest::newRow("unmount") << u"disk2s1"_s << u"/media/A"_s;
    QTest::newRow("eject") << u"disk2"_s << u"/media/A"_s;
}

void TestMountUnmountEject::declinedQuestionEndsWithoutAnAlert()
{
    QFETCH(QString, bsdName);
    QFETCH(QString, mountPoint);
    const auto f = launched(mountPoint);
    click(*f, bsdName);
    QVERIFY(isBusy(*f, bsdName));
    f->test.service.completeRequest(makeDeclinedDissenter(u"The authentication dialog was dismissed"_s));
    QVERIFY(f->test.sheets().isEmpty());
    QVERIFY(!isBusy(*f, bsdName));
    QVERIFY(f->test.service.requests().empty());
}

void TestMountUnmountEject::declinedQuestionOfAForcedEject()
{
    const auto f = launched(u"/media/A"_s);
    click(*f, u"disk2"_s);
    f->test.service.completeRequest(makeDissenter(DAReturn::Busy));
    press(f->test.sheets().constFirst(), firstButton);
    QTRY_VERIFY(f->test.sheets().isEmpty());
    f->test.service.completeRequest(makeDeclinedDissenter());
    QVERIFY(f->test.sheets().isEmpty());
    QVERIFY(f->test.service.requests().empty());
    QVERIFY(!isBusy(*f, u"disk2"_s));
}

void TestMountUnmountEject::volumeOutOfReachIsTold()
{
    const auto f = launched();
    f->test.workspace->isFolderOpen = false;
    f->test.mountTable->mounted = { { "/dev/disk2s1", "/media/root/DATA", { 1, 2 }, {} } };
    click(*f, u"disk2s1"_s);
    setMounted(f->volume, u"/media/root/DATA"_s);
    f->test.service.completeRequest();
    QCOMPARE(f->test.sheets().size(), 1);
    const QString text = f->test.sheets().constFirst()->informativeText();
    QVERIFY2(text.contains(u"“DATA”"_s) && text.contains(u"/media/root/DATA"_s), qPrintable(text));
    QVERIFY(!isBusy(*f, u"disk2s1"_s));
}

// The disk service has not told yet that it is.
void TestMountUnmountEject::volumeThatIsUnmountedMeanwhileIsNotOutOfReach()
{
    const auto f = launched();
    f->test.workspace->isFolderOpen = false;
    click(*f, u"disk2s1"_s);
    setMounted(f->volume, u"/media/root/DATA"_s);
    f->test.service.completeRequest();
    QVERIFY(f->test.sheets().isEmpty());
}

void TestMountUnmountEject::refusedUnmountOffersForce()
{
    const auto f = launched(u"/media/A"_s);
    click(*f, u"disk2s1"_s);
    f->test.service.completeRequest(makeDissenter(DAReturn::Busy, u"secret reason"_s));
    QCOMPARE(f->test.sheets().size(), 1);
    AlertSheet *const sheet = f->test.sheets().constFirst();
    QCOMPARE(sheet->text(), localizedString("FAILED_TO_UNMOUNT_VOLUME_TITLE"));
    QCOMPARE(sheet->informativeText(),
        formatLocalized(localizedString("FAILED_TO_UNMOUNT_VOLUME_BODY_FMT"), { u"disk2s1"_s }));
    QVERIFY(sheet->informativeText().contains(u"disk2s1"_s));
    QVERIFY(!sheet->informativeText().contains(u"secret"_s));
    QCOMPARE(sheet->icon(), QMessageBox::Information);
    QCOMPARE(sheet->buttonForReturn(firstButton)->text(), localizedString("FORCE_UNMOUNT_BUTTON_TITLE"));
    QCOMPARE(sheet->buttonForReturn(secondButton)->text(), localizedString("CANCEL_UNMOUNT_BUTTON_TITLE"));
    QCOMPARE(sheet->defaultButton(), sheet->buttonForReturn(secondButton));
    QVERIFY(!f->test.controller().alertInProgress);
    QVERIFY(isBusy(*f, u"disk2s1"_s));
}

void TestMountUnmountEject::cancelLeavesTheVolumeMounted()
{
    const auto f = launched(u"/media/A"_s);
    click(*f, u"disk2s1"_s);
    f->test.service.completeRequest(makeDissenter(DAReturn::Busy));
    press(f->test.sheets().constFirst(), secondButton);
    QVERIFY(f->test.service.requests().empty());
    QVERIFY(f->test.sheets().isEmpty());
    QVERIFY(!isBusy(*f, u"disk2s1"_s));
    QVERIFY(f->test.recordOf(u"disk2s1"_s)->volumePath);
    QVERIFY(f->test.controller().mountUnmountButton->isEnabled());
}

void TestMountUnmountEject::keysOnTheForceDialog_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::KeyboardModifier>("modifier");
    QTest::addColumn<bool>("forces");
    QTest::newRow("Escape") << Qt::Key_Escape << Qt::NoModifier << false;
    QTest::newRow("Return") << Qt::Key_Return << Qt::NoModifier << false;
    QTest::newRow("Enter") << Qt::Key_Enter << Qt::KeypadModifier << false;
    QTest::newRow("space bar") << Qt::Key_Space << Qt::NoModifier << false;
    QTest::newRow("letter of Cancel") << Qt::Key_C << Qt::AltModifier << false;
    QTest::newRow("letter of Force") << Qt::Key_F << Qt::AltModifier << true;
}

void TestMountUnmountEject::keysOnTheForceDialog()
{
    QFETCH(const Qt::Key, key);
    QFETCH(const Qt::KeyboardModifier, modifier);
    QFETCH(const bool, forces);
    const auto f = launched(u"/media/A"_s);
    click(*f, u"disk2s1"_s);
    f->test.service.completeRequest(makeDissenter(DAReturn::Busy));
    AlertSheet *const sheet = f->test.sheets().constFirst();
    QVERIFY(QTest::qWaitForWindowActive(sheet));
    QTest::keyClick(sheet->windowHandle(), key, modifier);
    QTRY_VERIFY(f->test.sheets().isEmpty());
    QCOMPARE(!f->test.service.requests().empty(), forces);
    QCOMPARE(isBusy(*f, u"disk2s1"_s), forces);
}

void TestMountUnmountEject::forcedUnmount()
{
    const auto f = launched(u"/media/A"_s);
    click(*f, u"disk2s1"_s);
    f->test.service.completeRequest(makeDissenter(DAReturn::Busy));
    press(f->test.sheets().constFirst(), firstButton);
    QCOMPARE(f->test.service.requests().size(), std::size_t { 1 });
    QCOMPARE(f->test.service.requests().front().kind, Kind::Unmount);
    QCOMPARE(f->test.service.requests().front().options, quint32 { 0x80000 });
    QVERIFY(isBusy(*f, u"disk2s1"_s));
    setMounted(f->volume, {});
    f->test.service.completeRequest();
    QVERIFY(!isBusy(*f, u"disk2s1"_s));
    QVERIFY(!f->test.recordOf(u"disk2s1"_s)->volumePath);
    QVERIFY(f->test.sheets().isEmpty());
}

void TestMountUnmountEject::refusedForcedUnmountIsReported()
{
    const auto f = launched(u"/media/A"_s);
    click(*f, u"disk2s1"_s);
    f->test.service.completeRequest(makeDissenter(DAReturn::Busy));
    press(f->test.sheets().constFirst(), firstButton);
    f->test.service.completeRequest(makeDissenter(DAReturn::NotPermitted));
    QCOMPARE(f->test.sheets().size(), 1);
    QCOMPARE(f->test.sheets().constFirst()->informativeText(),
        u"Error while unmounting disk2s1: kDAReturnNotPermitted"_s);
    QVERIFY(!isBusy(*f, u"disk2s1"_s));
}

void TestMountUnmountEject::ejectUnmountsAllAndEjects()
{
    const auto f = launched(u"/media/A"_s);
    click(*f, u"disk2"_s);
    f->test.service.completeRequest();
    QCOMPARE(f->test.service.requests().size(), std::size_t { 1 });
    QCOMPARE(f->test.service.requests().front().kind, Kind::Eject);
    QCOMPARE(f->test.service.requests().front().options, quint32 { 0 });
    QCOMPARE(f->test.service.requests().front().disk, f->disk);
    QVERIFY(isBusy(*f, u"disk2"_s));
    f->test.service.completeRequest();
    QVERIFY(!isBusy(*f, u"disk2"_s));
    QVERIFY(f->test.sheets().isEmpty());
}

void TestMountUnmountEject::refusedEjectIsReported()
{
    const auto f = launched();
    click(*f, u"disk2"_s);
    f->test.service.completeRequest();
    f->test.service.completeRequest(makeDissenter(DAReturn::Error, u"the tray is stuck"_s));
    QCOMPARE(
        f->test.sheets().constFirst()->informativeText(), u"Error while ejecting disk2: the tray is stuck"_s);
    QVERIFY(!isBusy(*f, u"disk2"_s));
}

void TestMountUnmountEject::forcedEjectIgnoresTheRefusalOfItsUnmount()
{
    const auto f = launched(u"/media/A"_s);
    click(*f, u"disk2"_s);
    f->test.service.completeRequest(makeDissenter(DAReturn::Busy));
    AlertSheet *const sheet = f->test.sheets().constFirst();
    QCOMPARE(sheet->text(), localizedString("FAILED_TO_UNMOUNT_VOLUMES_TITLE"));
    QCOMPARE(sheet->informativeText(),
        formatLocalized(localizedString("FAILED_TO_UNMOUNT_VOLUMES_BODY_FMT"), { u"disk2"_s }));
    press(sheet, firstButton);
    QCOMPARE(f->test.service.requests().front().kind, Kind::Unmount);
    QCOMPARE(f->test.service.requests().front().options, quint32 { 0x80001 });
    f->test.service.completeRequest(makeDissenter(DAReturn::NotPermitted));
    QVERIFY(f->test.sheets().isEmpty());
    QCOMPARE(f->test.service.requests().size(), std::size_t { 1 });
    QCOMPARE(f->test.service.requests().front().kind, Kind::Eject);
    f->test.service.completeRequest(makeDissenter(DAReturn::Busy));
    QCOMPARE(
        f->test.sheets().constFirst()->informativeText(), u"Error while ejecting disk2: kDAReturnBusy"_s);
}

void TestMountUnmountEject::cancelledEjectReportsNothing()
{
    const auto f = launched(u"/media/A"_s);
    click(*f, u"disk2"_s);
    f->test.service.completeRequest(makeDissenter(DAReturn::Busy));
    press(f->test.sheets().constFirst(), secondButton);
    QVERIFY(f->test.service.requests().empty());
    QVERIFY(f->test.sheets().isEmpty());
    QVERIFY(!isBusy(*f, u"disk2"_s));
}

void TestMountUnmountEject::forceDialogShowsBesideAnAlert()
{
    const auto f = launched(u"/media/A"_s);
    click(*f, u"disk2s1"_s);
    f->test.controller().errorMessage(u"another"_s);
    f->test.service.completeRequest(makeDissenter(DAReturn::Busy));
    QCOMPARE(f->test.sheets().size(), 2);
    QCOMPARE(f->test.log.lines(), QStringList());
}

void TestMountUnmountEject::recordThatCannotBeRefreshedIsLogged_data()
{
    QTest::addColumn<QString>("bsdName");
    QTest::addColumn<QString>("mountPoint");
    QTest::addColumn<int>("requests");
    QTest::newRow("mount") << u"disk2s1"_s << QString() << 1;
    QTest::newRow("unmount") << u"disk2s1"_s << u"/media/A"_s << 1;
    QTest::newRow("eject") << u"disk2"_s << QString() << 2;
}

void TestMountUnmountEject::recordThatCannotBeRefreshedIsLogged()
{
    QFETCH(QString, bsdName);
    QFETCH(QString, mountPoint);
    QFETCH(int, requests);
    const auto f = launched(mountPoint);
    click(*f, bsdName);
    f->disk->description.reset();
    f->volume->description.reset();
    for (int i = 0; i < requests; ++i)
        f->test.service.completeRequest();
    const QString line = u"Error while updating disk description after %1."_s.arg(
        QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY2(f->test.log.lines().contains(line), qPrintable(f->test.log.lines().join(u'\n')));
    QVERIFY(!isBusy(*f, bsdName));
}

void TestMountUnmountEject::mediumThatVanishesMeanwhile()
{
    const auto f = launched(u"/media/A"_s);
    click(*f, u"disk2s1"_s);
    const DiskRecord record = f->test.recordOf(u"disk2s1"_s);
    f->test.service.removeDisk(f->volume);
    QCOMPARE(f->test.rowNames(), QStringList { u"disk2"_s });
    f->test.service.completeRequest(makeDissenter(DAReturn::NotFound));
    press(f->test.sheets().constFirst(), secondButton);
    QVERIFY(!record->operationInProgress);
}

void TestMountUnmountEject::mediumThatVanishesBehindTheForceDialog()
{
    const auto f = launched(u"/media/A"_s);
    click(*f, u"disk2s1"_s);
    f->test.service.completeRequest(makeDissenter(DAReturn::Busy));
    const DiskRecord record = f->test.recordOf(u"disk2s1"_s);
    f->test.service.removeDisk(f->volume);
    press(f->test.sheets().constFirst(), firstButton);
    f->test.service.completeRequest(makeDissenter(DAReturn::NotFound));
    QCOMPARE(f->test.sheets().constFirst()->informativeText(),
        u"Error while unmounting disk2s1: kDAReturnNotFound"_s);
    QVERIFY(!record->operationInProgress);
}

void TestMountUnmountEject::diskThatVanishesDuringAnEject_data()
{
    QTest::addColumn<int>("answered"); // requests, before it vanishes
    QTest::newRow("while its volumes are unmounted") << 0;
    QTest::newRow("while it is ejected") << 1;
}

void TestMountUnmountEject::diskThatVanishesDuringAnEject()
{
    QFETCH(const int, answered);
    const auto f = launched(u"/media/A"_s);
    click(*f, u"disk2"_s);
    const DiskRecord record = f->test.recordOf(u"disk2"_s);
    for (int i = 0; i < answered; ++i)
        f->test.service.completeRequest();
    f->test.service.removeDisk(f->volume);
    f->test.service.removeDisk(f->disk);
    QCOMPARE(f->test.rowNames(), QStringList());
    f->test.service.completeRequest(makeDissenter(DAReturn::NotFound));
    QCOMPARE(f->test.sheets().size(), 1);
    const QString told = f->test.sheets().constFirst()->informativeText();
    if (answered == 0) {
        QCOMPARE(
            told, formatLocalized(localizedString("FAILED_TO_UNMOUNT_VOLUMES_BODY_FMT"), { u"disk2"_s }));
        press(f->test.sheets().constFirst(), secondButton);
    } else {
        QCOMPARE(told, u"Error while ejecting disk2: kDAReturnNotFound"_s);
    }
    QVERIFY(!record->operationInProgress);
    QVERIFY(f->test.service.requests().empty());
}

void TestMountUnmountEject::twoDisksSideBySide()
{
    const auto f = launched();
    f->test.add(makePartition(u"disk2s2"_s, 2048));
    click(*f, u"disk2s1"_s);
    click(*f, u"disk2s2"_s);
    QCOMPARE(f->test.service.requests().size(), std::size_t { 2 });
    f->test.service.completeRequest();
    QVERIFY(!isBusy(*f, u"disk2s1"_s));
    QVERIFY(isBusy(*f, u"disk2s2"_s));
    f->test.service.completeRequest();
    QVERIFY(!isBusy(*f, u"disk2s2"_s));
}

QTEST_MAIN(TestMountUnmountEject)
#include "tst_mountunmounteject.moc"
