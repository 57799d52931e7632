// SPDX-License-Identifier: MIT
//
// Errors and notices: one sheet at a time.
#include "tests/support/TestController.h"
#include "ui/AlertSheet.h"

#include <QAction>
#include <QLabel>
#include <QMetaMethod>
#include <QPushButton>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

// What nothing can be made of without a value.
struct Unmakable
{
    explicit Unmakable(int given)
        : value(given)
    {
    }
    int value;
};

// A controller with actions to follow an alert.
class FollowingController : public ZorvexDiskManagerAppDelegate
{
    Q_OBJECT

public:
    using ZorvexDiskManagerAppDelegate::ZorvexDiskManagerAppDelegate;

    Q_INVOKABLE void sheetDidEnd(AlertSheet *alert, int returnCode, void *contextInfo)
    {
        calls += u"%1 %2 %3 %4"_s.arg(alert->text())
                     .arg(returnCode)
                     .arg(contextInfo ? u"context"_s : u"none"_s)
                     .arg(alertInProgress ? u"showing"_s : u"idle"_s);
    }
    Q_INVOKABLE void alertAlone(AlertSheet *alert) { calls += alert->text(); }
    Q_INVOKABLE void nothingAtAll() { calls += u"nothing"_s; }
    Q_INVOKABLE int withResult(QObject *alert, int returnCode)
    {
        calls += u"result %1 %2"_s.arg(alert != nullptr).arg(returnCode);
        return 1;
    }
    Q_INVOKABLE void otherArguments(AlertSheet *alert, int returnCode, const QString &text, int fourth)
    {
        calls += u"other %1 %2 %3 %4"_s.arg(alert != nullptr).arg(returnCode).arg(text.size()).arg(fourth);
    }
    Q_INVOKABLE void unmakableArgument(AlertSheet *, int, const Unmakable &third)
    {
        calls += u"unmakable %1"_s.arg(third.value);
    }
    Q_INVOKABLE void nextAlert(AlertSheet *alert) { errorMessage(u"after "_s + alert->text()); }

    QStringList calls;
};

class TestAlerts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void errorIsAWarningSheetWithOneButton();
    void errorTitleIsEnglishInEveryLanguage();
    void noticeIsInformational();
    void cascadingAlertIsDroppedWithALogLine();
    void droppedAlertHasNoFollowUp();
    void nextAlertIsShownAfterTheFirstHasEnded();
    void keyEndsAnAlert_data();
    void keyEndsAnAlert();
    void followUpIsGivenAlertAndReturnCode();
    void followUpOfAnySignature_data();
    void followUpOfAnySignature();
    void followUpThatCannotBeCalledIsLogged_data();
    void followUpThatCannotBeCalledIsLogged();
    void followUpMayShowTheNextAlert();
    void hostileTextsArePlain();
    void longTextKeepsTheWindowSmall();

private:
    static std::unique_ptr<TestController> launched();
};

namespace {

bool hasInvokable(const QObject &object, const QByteArray &name)
{
    const QMetaObject &meta = *object.metaObject();
    for (int i = 0; i < meta.methodCount(); ++i) {
        if (meta.method(i).name() == name)
            return true;
    }
    return false;
}

FollowingController &following(TestController &test)
{
    return static_cast<FollowingController &>(test.controller());
}

} // namespace

std::unique_ptr<TestController> TestAlerts::launched()
{
    auto test = std::make_unique<TestController>();
    test->makeController
        = [](const ApplicationPlatform &platform) { return std::make_unique<FollowingController>(platform); };
    test->launch();
    return test;
}

void TestAlerts::errorIsAWarningSheetWithOneButton()
{
    const auto test = launched();
    test->controller().errorMessageWithTitle(u"Title"_s, u"Text"_s);
    QVERIFY(test->controller().alertInProgress);
    QCOMPARE(test->sheets().size(), 1);
    const AlertSheet *const sheet = test->sheets().constFirst();
    QCOMPARE(sheet->windowTitle(), u"Zorvex Disk Manager"_s);
    QCOMPARE(sheet->text(), u"Title"_s);
    QCOMPARE(sheet->informativeText(), u"Text"_s);
    QCOMPARE(sheet->icon(), QMessageBox::Warning);
    QCOMPARE(sheet->buttons().size(), 1);
    QCOMPARE(sheet->buttons().constFirst()->text(), u"OK"_s);
    QCOMPARE(sheet->windowModality(), Qt::WindowModal);
    QCOMPARE(sheet->parentWidget(), &test->window());
}

void TestAlerts::errorTitleIsEnglishInEveryLanguage()
{
    for (const QString &language : { u"en"_s, u"de"_s, u"ar"_s }) {
        TestController test(language);
        test.launch();
        test.controller().errorMessage(u"Text"_s);
        QCOMPARE(test.sheets().constFirst()->text(), u"Error"_s);
        QCOMPARE(test.sheets().constFirst()->buttons().constFirst()->text(), u"OK"_s);
    }
}

void TestAlerts::noticeIsInformational()
{
    const auto test = launched();
    test->controller().infoMessageWithTitle(u"Title"_s, u"Text"_s);
    QCOMPARE(test->sheets().constFirst()->icon(), QMessageBox::Information);
}

void TestAlerts::cascadingAlertIsDroppedWithALogLine()
{
    const auto test = launched();
    test->controller().errorMessage(u"first"_s);
    test->controller().errorMessage(u"second %1"_s);
    test->controller().infoMessageWithTitle(u"T"_s, u"third"_s);
    QCOMPARE(test->sheets().size(), 1);
    QCOMPARE(test->sheets().constFirst()->informativeText(), u"first"_s);
    const QString line = u"Warning: Silently dropping cascading alert with titleText=\"%1\" infoText=\"%2\" "
                         "alertStyle=%3..."_s;
    QCOMPARE(test->log.lines(),
        (QStringList { line.arg(u"Error"_s, u"second %1"_s, u"0"_s), line.arg(u"T"_s, u"third"_s, u"1"_s) }));
    press(test->sheets().constFirst(), AlertSheet::firstButtonReturn);
    QVERIFY(!test->controller().alertInProgress);
    QTRY_VERIFY(test->sheets().isEmpty());
}

void TestAlerts::droppedAlertHasNoFollowUp()
{
    const auto test = launched();
    test->controller().errorMessage(u"first"_s);
    test->controller().messageWithTitle(u"T"_s, u"x"_s, 0, "nothingAtAll");
    press(test->sheets().constFirst(), AlertSheet::firstButtonReturn);
    QCOMPARE(following(*test).calls, QStringList());
}

void TestAlerts::nextAlertIsShownAfterTheFirstHasEnded()
{
    const auto test = launched();
    test->controller().errorMessage(u"first"_s);
    press(test->sheets().constFirst(), AlertSheet::firstButtonReturn);
    test->controller().errorMessage(u"second"_s);
    QCOMPARE(test->sheets().size(), 1);
    QCOMPARE(test->sheets().constFirst()->informativeText(), u"second"_s);
    QCOMPARE(test->log.lines(), QStringList());
}

void TestAlerts::keyEndsAnAlert_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Escape") << Qt::Key_Escape;
    QTest::newRow("Return") << Qt::Key_Return;
    QTest::newRow("Enter") << Qt::Key_Enter;
    QTest::newRow("space bar") << Qt::Key_Space;
}

void TestAlerts::keyEndsAnAlert()
{
    QFETCH(const Qt::Key, key);
    const auto test = launched();
    test->controller().messageWithTitle(u"T"_s, u"x"_s, 0, "sheetDidEnd");
    AlertSheet *const sheet = test->sheets().constFirst();
    QVERIFY(QTest::qWaitForWindowActive(sheet));
    QTest::keyClick(sheet->windowHandle(), key);
    QTRY_VERIFY(!test->controller().alertInProgress);
    QCOMPARE(following(*test).calls, QStringList { u"T 1000 none idle"_s });
}

void TestAlerts::followUpIsGivenAlertAndReturnCode()
{
    const auto test = launched();
    test->controller().messageWithTitle(u"T"_s, u"x"_s, 2, "sheetDidEnd");
    QCOMPARE(test->sheets().constFirst()->icon(), QMessageBox::Critical);
    press(test->sheets().constFirst(), AlertSheet::firstButtonReturn);
    QCOMPARE(following(*test).calls, QStringList { u"T 1000 none idle"_s });
}

void TestAlerts::followUpOfAnySignature_data()
{
    QTest::addColumn<QString>("call");
    QTest::newRow("alertAlone") << u"T"_s;
    QTest::newRow("nothingAtAll") << u"nothing"_s;
    QTest::newRow("withResult") << u"result 1 1000"_s;
    QTest::newRow("otherArguments") << u"other 1 1000 0 0"_s;
}

void TestAlerts::followUpOfAnySignature()
{
    const auto test = launched();
    test->controller().messageWithTitle(u"T"_s, u"x"_s, 0, QTest::currentDataTag());
    press(test->sheets().constFirst(), AlertSheet::firstButtonReturn);
    QTEST(following(*test).calls.join(u','), "call");
    QCOMPARE(test->log.lines(), QStringList());
}

void TestAlerts::followUpThatCannotBeCalledIsLogged_data()
{
    QTest::addColumn<bool>("isImplemented");
    QTest::newRow("nobodyImplementsThis") << false;
    QTest::newRow("unmakableArgument") << true;
}

void TestAlerts::followUpThatCannotBeCalledIsLogged()
{
    QFETCH(const bool, isImplemented);
    const auto test = launched();
    QCOMPARE(hasInvokable(test->controller(), QTest::currentDataTag()), isImplemented);
    test->controller().messageWithTitle(u"T"_s, u"x"_s, 0, QTest::currentDataTag());
    press(test->sheets().constFirst(), AlertSheet::firstButtonReturn);
    QVERIFY(!test->controller().alertInProgress);
    QCOMPARE(test->log.lines(), QStringList { u"Unable to find selector passed to alertDidEnd."_s });
    QCOMPARE(following(*test).calls, QStringList());
}

void TestAlerts::followUpMayShowTheNextAlert()
{
    const auto test = launched();
    test->controller().messageWithTitle(u"T"_s, u"x"_s, 0, "nextAlert");
    press(test->sheets().constFirst(), AlertSheet::firstButtonReturn);
    QVERIFY(test->controller().alertInProgress);
    QTRY_COMPARE(test->sheets().size(), 1);
    QCOMPARE(test->sheets().constFirst()->informativeText(), u"after T"_s);
    QCOMPARE(test->log.lines(), QStringList());
}

void TestAlerts::hostileTextsArePlain()
{
    const auto test = launched();
    const QString hostile = u"<b>bold</b><img src=\"file:///etc/passwd\"> a<b &amp; %1"_s;
    test->controller().errorMessageWithTitle(hostile, hostile);
    const AlertSheet *const sheet = test->sheets().constFirst();
    QCOMPARE(sheet->informativeText(), hostile);
    for (const char *name : { "qt_msgbox_label", "qt_msgbox_informativelabel" }) {
        const auto *label = sheet->findChild<QLabel *>(QLatin1String(name));
        QVERIFY(label);
        QCOMPARE(label->text(), hostile);
        QCOMPARE(label->textFormat(), Qt::PlainText);
    }
}

void TestAlerts::longTextKeepsTheWindowSmall()
{
    const auto test = launched();
    const QString text = QString(u"output line\n"_s).repeated(20000);
    test->controller().errorMessage(text);
    const AlertSheet *const sheet = test->sheets().constFirst();
    QVERIFY(sheet->informativeText().size() < 2000);
    QVERIFY(sheet->detailedText().startsWith(text.left(100000)));
}

QTEST_MAIN(TestAlerts)
#include "tst_alerts.moc"
