// SPDX-License-Identifier: MIT
//
// One alert at a time, and what follows it.
#include "tests/support/TestController.h"

#include "ui/AlertSheet.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>

class TestAlerts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void errorIsAWarningUnderAFixedTitle();
    void noticeIsInformational();
    void cascadingAlertIsDroppedWithALine_data();
    void cascadingAlertIsDroppedWithALine();
    void nextAlertIsShownAfterTheFirst();
    void followUpMayShowAnAlert();
    void unknownFollowUpIsLogged();
    void hostileTextsArePlain();
};

void TestAlerts::errorIsAWarningUnderAFixedTitle()
{
    TestController test(QStringLiteral("de"));
    test.launch();
    test.controller().errorMessage(QStringLiteral("text"));
    QVERIFY(test.controller().alertInProgress);
    const AlertSheet *sheet = test.sheets().constFirst();
    QCOMPARE(sheet->text(), QStringLiteral("Error"));
    QCOMPARE(sheet->informativeText(), QStringLiteral("text"));
    QCOMPARE(sheet->icon(), QMessageBox::Warning);
    QCOMPARE(sheet->windowModality(), Qt::WindowModal);
    QCOMPARE(sheet->buttons().size(), 1);
    QCOMPARE(sheet->buttons().constFirst()->text(), QStringLiteral("OK"));
    QCOMPARE(sheet->parentWidget(), &test.window());
}

void TestAlerts::noticeIsInformational()
{
    TestController test;
    test.launch();
    test.controller().infoMessageWithTitle(QStringLiteral("title"), QStringLiteral("text"));
    QCOMPARE(test.sheets().constFirst()->text(), QStringLiteral("title"));
    QCOMPARE(test.sheets().constFirst()->icon(), QMessageBox::Information);
}

void TestAlerts::cascadingAlertIsDroppedWithALine_data()
{
    QTest::addColumn<bool>("isError");
    QTest::addColumn<QString>("line");
    QTest::newRow("error") << true
                           << QStringLiteral(
                                  "Warning: Silently dropping cascading alert with titleText=\"t %1\" "
                                  "infoText=\"i %2\" alertStyle=0...");
    QTest::newRow("notice") << false
                            << QStringLiteral(
                                   "Warning: Silently dropping cascading alert with titleText=\"t %1\" "
                                   "infoText=\"i %2\" alertStyle=1...");
}

void TestAlerts::cascadingAlertIsDroppedWithALine()
{
    QFETCH(const bool, isError);
    QFETCH(const QString, line);
    TestController test;
    test.launch();
    test.controller().errorMessage(QStringLiteral("first"));
    test.log.clear();
    // Placeholders in the texts are texts.
    if (isError)
        test.controller().errorMessageWithTitle(QStringLiteral("t %1"), QStringLiteral("i %2"));
    else
        test.controller().infoMessageWithTitle(QStringLiteral("t %1"), QStringLiteral("i %2"));
    QCOMPARE(test.log.lines(), QStringList { line });
    QCOMPARE(test.sheets().size(), 1);
    QCOMPARE(test.sheets().constFirst()->informativeText(), QStringLiteral("first"));
}

void TestAlerts::nextAlertIsShownAfterTheFirst()
{
    TestController test;
    test.launch();
    test.controller().errorMessage(QStringLiteral("first"));
    QTest::keyClick(test.sheets().constFirst(), Qt::Key_Escape);
    QVERIFY(!test.controller().alertInProgress);
    QTRY_VERIFY(test.sheets().isEmpty());
    test.controller().errorMessage(QStringLiteral("second"));
    QCOMPARE(test.sheets().size(), 1);
    QCOMPARE(test.sheets().constFirst()->informativeText(), QStringLiteral("second"));
}

void TestAlerts::followUpMayShowAnAlert()
{
    TestController test;
    test.launch();
    // Any invokable of the controller can follow; this one answers with an alert of its own when nothing is
    // selected.
    test.controller().messageWithTitle(QStringLiteral("t"), QStringLiteral("i"), 0, "clickFormatButton");
    test.log.clear();
    test.sheets().constFirst()->buttonForReturn(AlertSheet::firstButtonReturn)->click();
    QVERIFY(test.controller().alertInProgress);
    QTRY_COMPARE(test.sheets().size(), 1);
    QCOMPARE(test.sheets().constFirst()->informativeText(),
        QStringLiteral("No file system and no disk selected."));
    QCOMPARE(test.log.lines(), QStringList());
}

void TestAlerts::unknownFollowUpIsLogged()
{
    TestController test;
    test.launch();
    test.controller().messageWithTitle(QStringLiteral("t"), QStringLiteral("i"), 0, "nobodyImplementsThis");
    test.log.clear();
    test.sheets().constFirst()->buttonForReturn(AlertSheet::firstButtonReturn)->click();
    QCOMPARE(
        test.log.lines(), QStringList { QStringLiteral("Unable to find selector passed to alertDidEnd.") });
    QVERIFY(!test.controller().alertInProgress);
}

void TestAlerts::hostileTextsArePlain()
{
    TestController test;
    test.launch();
    const QString markup = QStringLiteral("<b>bold</b> & <img src=\"/etc/passwd\">");
    test.controller().errorMessageWithTitle(markup, markup + QString(100000, u'x'));
    const AlertSheet *sheet = test.sheets().constFirst();
    QCOMPARE(sheet->textFormat(), Qt::PlainText);
    for (const QLabel *label : sheet->findChildren<QLabel *>()) {
        if (label->text().contains(QStringLiteral("<b>")))
            QCOMPARE(label->textFormat(), Qt::PlainText);
    }
    QVERIFY(sheet->informativeText().size() < 2000);
    QVERIFY(sheet->detailedText().startsWith(markup));
}

QTEST_MAIN(TestAlerts)
#include "tst_alerts.moc"
