// SPDX-License-Identifier: MIT
//
// The button that mounts, unmounts and ejects: which requests it makes, and what is told of their outcome.
#include "tests/support/TestController.h"

#include "ui/AlertSheet.h"
#include "ui/ImageButton.h"
#include "ui/OutlineView.h"

#include <QTest>

#include <cstring>

using Kind = MemoryDiskService::RequestKind;

namespace {

const QString diskName = QStringLiteral("disk2");
const QString volumeName = QStringLiteral("disk2s1");

MemoryDiskRef diskWithPartitions()
{
    const MemoryDiskRef disk = makeDisk(diskName);
    disk->description->insert(DAKey::mediaLeaf, false);
    return disk;
}

// The window with one volume that is selected and mounted, or not.
struct VolumeTest : TestController
{
    explicit VolumeTest(bool isMounted)
    {
        launch();
        if (isMounted)
            setMounted(volume, QStringLiteral("/media/A"));
        record = add(volume);
        select(volumeName);
    }

    void click() { controller().clickMountUnmountButton(nullptr); }
    const MemoryDiskService::Request &request() const { return service.requests().front(); }
    QString alertText() const
    {
        return sheets().isEmpty() ? QString() : sheets().constFirst()->informativeText();
    }
    void endSheet(int returnCode) { sheets().constFirst()->buttonForReturn(returnCode)->click(); }

    MemoryDiskRef volume = makePartition(volumeName, 1000);
    OutlineItem record;
};

constexpr int force = AlertSheet::firstButtonReturn;
constexpr int cancel = AlertSheet::firstButtonReturn + 1;

} // namespace

class TestMountUnmountEject : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void mountedVolumeIsUnmounted();
    void unmountedVolumeIsMounted();
    void mountedWholeDiskWithoutPartitionsIsUnmounted();
    void diskWithPartitionsIsEjected();
    void nothingHappensWithoutASelectionOrDuringAnOperation();
    void refusedUnmountOffersForce();
    void cancelLeavesTheVolumeMounted();
    void refusedForceIsReported();
    void refusedEjectOffersForceForAllVolumes();
    void refusedForcedUnmountOfAnEjectIsNotReportedByItself();
    void cancelOfAnEjectReportsNothing();
    void refusedEjectIsReported();
    void refusedMountNamesTheReason_data();
    void refusedMountNamesTheReason();
    void refreshThatFailsIsLogged_data();
    void refreshThatFailsIsLogged();
    void volumeThatVanishesDuringItsMount();
    void forceDialogsNeitherWaitForAlertsNorKeepThemAway();
    void dissenterTexts_data();
    void dissenterTexts();
};

void TestMountUnmountEject::mountedVolumeIsUnmounted()
{
    VolumeTest test(true);
    test.click();
    QCOMPARE(test.service.requests().size(), std::size_t { 1 });
    QCOMPARE(test.request().kind, Kind::Unmount);
    QCOMPARE(test.request().options, 0U);
    QVERIFY(test.record->operationInProgress);
    QVERIFY(!test.controller().mountUnmountButton->isEnabled());
    setMounted(test.volume, {});
    test.service.completeRequest();
    QVERIFY(!test.record->operationInProgress && !test.record->volumePath);
    QVERIFY(test.controller().mountUnmountButton->isEnabled());
    QVERIFY(test.sheets().isEmpty());
}

void TestMountUnmountEject::unmountedVolumeIsMounted()
{
    VolumeTest test(false);
    test.click();
    QCOMPARE(test.request().kind, Kind::Mount);
    QCOMPARE(test.request().options, 0U);
    setMounted(test.volume, QStringLiteral("/media/A"));
    test.service.completeRequest();
    QVERIFY(!test.record->operationInProgress);
    QCOMPARE(test.record->volumePath->toLocalFile(), QStringLiteral("/media/A"));
}

void TestMountUnmountEject::mountedWholeDiskWithoutPartitionsIsUnmounted()
{
    TestController test;
    test.launch();
    const MemoryDiskRef disk = makeDisk(diskName);
    setMounted(disk, QStringLiteral("/media/A"));
    test.add(disk);
    test.select(diskName);
    test.controller().clickMountUnmountButton(nullptr);
    QCOMPARE(test.service.requests().front().kind, Kind::Unmount);
    QCOMPARE(test.service.requests().front().options, 0U);
    setMounted(disk, {});
    test.service.completeRequest();
    test.controller().clickMountUnmountButton(nullptr);
    QCOMPARE(test.service.requests().front().kind, Kind::Mount);
}

void TestMountUnmountEject::diskWithPartitionsIsEjected()
{
    TestController test;
    test.launch();
    const OutlineItem record = test.add(diskWithPartitions());
    test.select(diskName);
    test.controller().clickMountUnmountButton(nullptr);
    QCOMPARE(test.service.requests().front().kind, Kind::Unmount);
    QCOMPARE(test.service.requests().front().options, 1U);
    test.service.completeRequest();
    QCOMPARE(test.service.requests().front().kind, Kind::Eject);
    QCOMPARE(test.service.requests().front().options, 0U);
    QVERIFY(record->operationInProgress);
    test.service.completeRequest();
    QVERIFY(!record->operationInProgress);
    QVERIFY(test.sheets().isEmpty());
}

void TestMountUnmountEject::nothingHappensWithoutASelectionOrDuringAnOperation()
{
    VolumeTest test(true);
    test.click();
    test.click();
    QCOMPARE(test.service.requests().size(), std::size_t { 1 });
    test.controller().leftOutlineView->selectRow(-1);
    test.click();
    QCOMPARE(test.service.requests().size(), std::size_t { 1 });
}

void TestMountUnmountEject::refusedUnmountOffersForce()
{
    VolumeTest test(true);
    test.click();
    test.service.completeRequest(makeDissenter(DAReturn::Busy, QStringLiteral("the reason")));
    QCOMPARE(test.sheets().size(), 1);
    QCOMPARE(test.sheets().constFirst()->icon(), QMessageBox::Information);
    QVERIFY(test.alertText().contains(volumeName));
    QVERIFY(!test.alertText().contains(QStringLiteral("the reason")));
    QVERIFY(test.record->operationInProgress);
    test.endSheet(force);
    QCOMPARE(test.request().kind, Kind::Unmount);
    QCOMPARE(test.request().options, 0x80000U);
    setMounted(test.volume, {});
    test.service.completeRequest();
    QVERIFY(!test.record->operationInProgress);
    QTRY_VERIFY(test.sheets().isEmpty());
}

void TestMountUnmountEject::cancelLeavesTheVolumeMounted()
{
    VolumeTest test(true);
    test.click();
    test.service.completeRequest(makeDissenter(DAReturn::Busy));
    test.endSheet(cancel);
    QVERIFY(test.service.requests().empty());
    QVERIFY(!test.record->operationInProgress);
    QVERIFY(test.record->volumePath);
    QTRY_VERIFY(test.sheets().isEmpty());
    // Escape is Cancel.
    test.click();
    test.service.completeRequest(makeDissenter(DAReturn::Busy));
    QTest::keyClick(test.sheets().constFirst(), Qt::Key_Escape);
    QVERIFY(test.service.requests().empty());
    QVERIFY(!test.record->operationInProgress);
}

void TestMountUnmountEject::refusedForceIsReported()
{
    VolumeTest test(true);
    test.click();
    test.service.completeRequest(makeDissenter(DAReturn::Busy));
    test.endSheet(force);
    QTRY_VERIFY(test.sheets().isEmpty());
    test.service.completeRequest(makeDissenter(DAReturn::NotPermitted));
    QCOMPARE(test.alertText(), QStringLiteral("Error while unmounting disk2s1: kDAReturnNotPermitted"));
    QCOMPARE(test.sheets().constFirst()->text(), QStringLiteral("Error"));
    QVERIFY(!test.record->operationInProgress);
}

void TestMountUnmountEject::refusedEjectOffersForceForAllVolumes()
{
    TestController test;
    test.launch();
    test.add(diskWithPartitions());
    test.select(diskName);
    test.controller().clickMountUnmountButton(nullptr);
    test.service.completeRequest(makeDissenter(DAReturn::Busy));
    QCOMPARE(test.sheets().size(), 1);
    QVERIFY(test.sheets().constFirst()->informativeText().contains(diskName));
    test.sheets().constFirst()->buttonForReturn(force)->click();
    QCOMPARE(test.service.requests().front().kind, Kind::Unmount);
    QCOMPARE(test.service.requests().front().options, 0x80001U);
    test.service.completeRequest();
    QCOMPARE(test.service.requests().front().kind, Kind::Eject);
}

void TestMountUnmountEject::refusedForcedUnmountOfAnEjectIsNotReportedByItself()
{
    TestController test;
    test.launch();
    const OutlineItem record = test.add(diskWithPartitions());
    test.select(diskName);
    test.controller().clickMountUnmountButton(nullptr);
    test.service.completeRequest(makeDissenter(DAReturn::Busy));
    test.sheets().constFirst()->buttonForReturn(force)->click();
    QTRY_VERIFY(test.sheets().isEmpty());
    test.service.completeRequest(makeDissenter(DAReturn::NotPermitted));
    QVERIFY(test.sheets().isEmpty());
    QCOMPARE(test.service.requests().front().kind, Kind::Eject);
    test.service.completeRequest();
    QVERIFY(test.sheets().isEmpty());
    QVERIFY(!record->operationInProgress);
}

void TestMountUnmountEject::cancelOfAnEjectReportsNothing()
{
    TestController test;
    test.launch();
    const OutlineItem record = test.add(diskWithPartitions());
    test.select(diskName);
    test.controller().clickMountUnmountButton(nullptr);
    test.service.completeRequest(makeDissenter(DAReturn::Busy));
    test.sheets().constFirst()->buttonForReturn(cancel)->click();
    QVERIFY(test.service.requests().empty());
    QVERIFY(!record->operationInProgress);
    QTRY_VERIFY(test.sheets().isEmpty());
}

void TestMountUnmountEject::refusedEjectIsReported()
{
    TestController test;
    test.launch();
    test.add(diskWithPartitions());
    test.select(diskName);
    test.controller().clickMountUnmountButton(nullptr);
    test.service.completeRequest();
    test.service.completeRequest(makeDissenter(DAReturn::Error, QStringLiteral("tray is stuck")));
    QCOMPARE(test.sheets().constFirst()->informativeText(),
        QStringLiteral("Error while ejecting disk2: tray is stuck"));
}

void TestMountUnmountEject::refusedMountNamesTheReason_data()
{
    QTest::addColumn<quint32>("status");
    QTest::addColumn<QString>("text");
    QTest::newRow("unsupported") << 0xF8DA000CU
                                 << QStringLiteral(
                                        "Error while mounting disk2s1: No supported file system found.");
    QTest::newRow("busy") << 0xF8DA0002U << QStringLiteral("Error while mounting disk2s1: kDAReturnBusy");
}

void TestMountUnmountEject::refusedMountNamesTheReason()
{
    QFETCH(const quint32, status);
    QFETCH(const QString, text);
    VolumeTest test(false);
    test.click();
    test.service.completeRequest(std::make_shared<const DADissenter>(DADissenter { status, {} }));
    QCOMPARE(test.alertText(), text);
    QVERIFY(!test.record->operationInProgress);
}

void TestMountUnmountEject::refreshThatFailsIsLogged_data()
{
    QTest::addColumn<bool>("isMounted");
    QTest::addColumn<QString>("line");
    QTest::newRow("mount") << false << QStringLiteral("Error while updating disk description after mount.");
    QTest::newRow("unmount") << true
                             << QStringLiteral("Error while updating disk description after unmount.");
}

void TestMountUnmountEject::refreshThatFailsIsLogged()
{
    QFETCH(const bool, isMounted);
    QFETCH(const QString, line);
    VolumeTest test(isMounted);
    test.click();
    test.volume->description->remove(DAKey::mediaLeaf);
    test.log.clear();
    test.service.completeRequest();
    QCOMPARE(test.log.lines(), QStringList { line });
    QVERIFY(!test.record->operationInProgress);
    QVERIFY(test.sheets().isEmpty());
}

void TestMountUnmountEject::volumeThatVanishesDuringItsMount()
{
    VolumeTest test(false);
    test.click();
    test.service.removeDisk(test.volume);
    QVERIFY(test.rowNames().isEmpty());
    test.service.completeRequest(makeDissenter(DAReturn::NotFound));
    QCOMPARE(test.alertText(), QStringLiteral("Error while mounting disk2s1: kDAReturnNotFound"));
    QVERIFY(!test.record->operationInProgress);
}

void TestMountUnmountEject::forceDialogsNeitherWaitForAlertsNorKeepThemAway()
{
    VolumeTest test(true);
    test.controller().errorMessage(QStringLiteral("first"));
    test.click();
    test.service.completeRequest(makeDissenter(DAReturn::Busy));
    QCOMPARE(test.sheets().size(), 2);
    test.sheets().constFirst()->buttonForReturn(AlertSheet::firstButtonReturn)->click();
    QVERIFY(!test.controller().alertInProgress);
    test.controller().errorMessage(QStringLiteral("second"));
    QVERIFY(test.controller().alertInProgress);
}

void TestMountUnmountEject::dissenterTexts_data()
{
    QTest::addColumn<quint32>("status");
    QTest::addColumn<QString>("text");
    static const char *const statusNames[]
        = { "Error", "Busy", "BadArgument", "ExclusiveAccess", "NoResources", "NotFound", "NotMounted",
              "NotPermitted", "NotPrivileged", "NotReady", "NotWritable", "Unsupported" };
    for (quint32 i = 0; i < 12; ++i)
        QTest::newRow(statusNames[i])
            << 0xF8DA0001U + i << QString(QStringLiteral("kDAReturn") + QLatin1String(statusNames[i]));
    QTest::newRow("success") << 0U << QStringLiteral("kDAReturnSuccess");
    QTest::newRow("system error") << 0xC010U << QString::fromLocal8Bit(std::strerror(16));
    QTest::newRow("unknown") << 0x1234U << QStringLiteral("<Unknown DAReturn value: 1234>");
    QTest::newRow("one bit only") << 0x4ABCU << QStringLiteral("<Unknown DAReturn value: 4ABC>");
    QTest::newRow("beyond the table") << 0x00DA000DU << QStringLiteral("<Unknown DAReturn value: DA000D>");
}

void TestMountUnmountEject::dissenterTexts()
{
    QFETCH(const quint32, status);
    QFETCH(const QString, text);
    QCOMPARE(ZorvexDiskManagerAppDelegate::dissenterStatusToString({ status, {} }), text);
    QCOMPARE(ZorvexDiskManagerAppDelegate::dissenterStatusToString({ status, QStringLiteral("own words") }),
        QStringLiteral("own words"));
}

QTEST_MAIN(TestMountUnmountEject)
#include "tst_mountunmounteject.moc"
