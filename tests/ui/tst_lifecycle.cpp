// SPDX-License-Identifier: MIT
//
// How the window comes up and goes.
#include "tests/support/TestController.h"

#include "ui/FlippedOutlineView.h"
#include "ui/ImageButton.h"
#include "ui/OutputView.h"

#include <QComboBox>
#include <QLabel>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTest>

class TestLifecycle : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void opensWithTheInfoTabAlone();
    void opensAtItsSizeAndNotBelowTheSmallest();
    void arabicIsMirrored_data();
    void arabicIsMirrored();
    void localeDecidesWithoutAList();
    void threePanesAreLeftAlone();
    void withoutAServiceTheTreeStaysEmpty();
    void disksThatArePresentAreShownExpandedAndUnselected();
    void activationReadsTheBundlesAgain();
    void closingTheWindowQuits();
    void terminationGivesTheSessionBack();
    void everyOutletBearsItsName();
};

void TestLifecycle::opensWithTheInfoTabAlone()
{
    TestController test;
    test.launch();
    const QTabWidget *tabs = test.controller().rightTabView;
    QCOMPARE(tabs->count(), 1);
    QCOMPARE(tabs->widget(0), test.controller().infoTab);
    QVERIFY(test.controller().formatTab && test.controller().maintenanceTab);
    QVERIFY(!test.controller().infoNameLabel->text().isEmpty());
    QVERIFY(!test.controller().mountUnmountButton->isEnabled());
}

void TestLifecycle::opensAtItsSizeAndNotBelowTheSmallest()
{
    TestController test;
    test.load();
    const int treeWidth = test.controller().mainSplitView->sizes().constFirst();
    test.launch();
    QCOMPARE(test.window().size(), QSize(800, 450));
    QCOMPARE(test.window().minimumSize(), QSize(720, 420));
    QVERIFY(qAbs(test.controller().mainSplitView->sizes().constFirst() - treeWidth) <= 1);
    test.window().resize(100, 100);
    QCOMPARE(test.window().size(), QSize(720, 420));
}

void TestLifecycle::arabicIsMirrored_data()
{
    QTest::addColumn<QString>("localization");
    QTest::addColumn<bool>("isMirrored");
    QTest::newRow("ar") << QStringLiteral("ar") << true;
    QTest::newRow("ar_SA") << QStringLiteral("ar_SA") << true;
    QTest::newRow("ar-SA") << QStringLiteral("ar-SA") << false;
    QTest::newRow("arx") << QStringLiteral("arx") << false;
    QTest::newRow("fr") << QStringLiteral("fr") << false;
}

void TestLifecycle::arabicIsMirrored()
{
    QFETCH(const QString, localization);
    QFETCH(const bool, isMirrored);
    TestController test(localization);
    test.launch();
    const ZorvexDiskManagerAppDelegate &controller = test.controller();
    QCOMPARE(controller.isRightToLeftLocalization(), isMirrored);
    QCOMPARE(controller.mainSplitView->widget(isMirrored ? 1 : 0), controller.outlineViewContainer);
    QCOMPARE(controller.mountUnmountButton->imagePosition(),
        isMirrored ? ImageButton::ImagePosition::Right : ImageButton::ImagePosition::Left);
    QCOMPARE(controller.mountUnmountButton->textAlignment().testFlag(Qt::AlignRight), isMirrored);
    const int treeLeft = controller.outlineViewContainer->mapTo(&test.window(), QPoint(0, 0)).x();
    QCOMPARE(treeLeft > 0, isMirrored);
    QCOMPARE(qobject_cast<FlippedOutlineView *>(controller.leftOutlineView) != nullptr, isMirrored);
    QCOMPARE(controller.checkRepairOutputView->layoutDirection(), Qt::LeftToRight);
}

void TestLifecycle::localeDecidesWithoutAList()
{
    for (const bool isAbsent : { true, false }) {
        TestController test;
        test.platform().preferredLocalizations
            = isAbsent ? std::optional<QStringList>() : std::optional<QStringList>(QStringList());
        test.platform().localeIdentifier = QStringLiteral("ar_EG");
        test.load();
        QVERIFY(test.controller().isRightToLeftLocalization());
    }
}

void TestLifecycle::threePanesAreLeftAlone()
{
    TestController test(QStringLiteral("ar"));
    test.load();
    // A second time: the panes were swapped when the window was loaded.
    const QWidget *first = test.controller().mainSplitView->widget(0);
    test.controller().mainSplitView->addWidget(new QWidget);
    test.log.clear();
    test.controller().awakeFromNib();
    QCOMPARE(test.log.lines(), QStringList { QStringLiteral("Unexpected subview count: 3") });
    QCOMPARE(test.controller().mainSplitView->widget(0), first);
    QVERIFY(test.controller().mountUnmountButton->textAlignment().testFlag(Qt::AlignRight));
}

void TestLifecycle::withoutAServiceTheTreeStaysEmpty()
{
    TestController test;
    test.platform().createSession = [] { return std::unique_ptr<DASession>(); };
    test.launch();
    QVERIFY(test.log.lines().contains(QStringLiteral("Unable to create DASession.")));
    QCOMPARE(test.rowNames(), QStringList());
    QVERIFY(test.sheets().isEmpty());
}

void TestLifecycle::disksThatArePresentAreShownExpandedAndUnselected()
{
    TestController test;
    test.service.addDisk(makePartition(QStringLiteral("disk1s1"), 1000));
    test.service.addDisk(makeDisk(QStringLiteral("disk1")));
    test.launch();
    QCOMPARE(test.rowNames(), (QStringList { QStringLiteral("disk1"), QStringLiteral("disk1s1") }));
    QCOMPARE(test.controller().leftOutlineView->selectedRow(), -1);
}

void TestLifecycle::activationReadsTheBundlesAgain()
{
    TestController test;
    test.launch();
    QCOMPARE(test.controller().formatFilesystemsPopupButton->count(), 0);
    for (const char *name : { "one", "two" }) {
        writeBundle(test.localDirectory(), QLatin1String(name),
            QByteArray("<key>CFBundleIdentifier</key><string>org.example</string><key>FSPersonalities</"
                       "key><dict><key>")
                + name + "</key><dict><key>FSName</key><string>" + name
                + "</string><key>FSFormatExecutable</key><string>x</string></dict></dict>");
        const int before = test.controller().formatFilesystemsPopupButton->count();
        QEvent activation(QEvent::WindowActivate);
        QApplication::sendEvent(&test.window(), &activation);
        QCOMPARE(test.controller().formatFilesystemsPopupButton->count(), before + 1);
    }
    QCOMPARE(test.controller().formatFilesystemsPopupButton->currentIndex(), -1);
}

void TestLifecycle::closingTheWindowQuits()
{
    TestController test;
    test.launch();
    QSignalSpy aboutToQuit(qApp, &QCoreApplication::aboutToQuit);
    QMetaObject::invokeMethod(&test.window(), &QWidget::close, Qt::QueuedConnection);
    QCOMPARE(QApplication::exec(), 0);
    QCOMPARE(aboutToQuit.count(), 1);
}

void TestLifecycle::terminationGivesTheSessionBack()
{
    TestController test;
    test.launch();
    QVERIFY(test.service.hasScheduledSession());
    test.controller().applicationWillTerminate();
    QVERIFY(!test.service.hasScheduledSession());
    QVERIFY(!test.controller().session && !test.controller().allFilesystemBundlesList);
    test.controller().applicationWillTerminate();
    QVERIFY(!test.controller().session);
}

void TestLifecycle::everyOutletBearsItsName()
{
    TestController test;
    test.launch();
    QStringList missing;
    for (const char *name : { "mainSplitView", "rightTabView", "infoTab", "leftOutlineView",
             "outlineViewContainer", "outlineViewScrollContainer", "mountUnmountButton", "infoBigImageField",
             "infoNameLabel", "infoDiskSpaceLabel", "infoMountedPathView", "filesystemLabel", "bsdNameLabel",
             "wholeDeviceLabel", "removableLabel", "contentHintLabel", "ejectableLabel",
             "preferredBlockSizeLabel" }) {
        if (!test.window().findChild<QWidget *>(QLatin1String(name)))
            missing.append(QLatin1String(name));
    }
    QCOMPARE(missing, QStringList());
    QCOMPARE(test.window().objectName(), QStringLiteral("window"));
    for (const char *name : { "formatFilesystemsPopupButton", "formatVolumeLabelField", "formatButton" })
        QVERIFY(test.controller().formatTab->findChild<QWidget *>(QLatin1String(name)));
    for (const char *name : { "checkRepairOutputView", "checkButton", "repairButton" })
        QVERIFY(test.controller().maintenanceTab->findChild<QWidget *>(QLatin1String(name)));
}

QTEST_MAIN(TestLifecycle)
#include "tst_lifecycle.moc"
