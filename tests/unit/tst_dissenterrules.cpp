// SPDX-License-Identifier: MIT
//
// What the user is told of a refused request, without a window.
#include "operations/dissenter_rules.h"
#include "platform/SystemLog.h"

#include <QTest>

#include <cerrno>

using namespace Qt::Literals::StringLiterals;

class TestDissenterRules : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void statusHasAName_data();
    void statusHasAName();
    void wordsOfTheServiceComeFirst();
    void wrappedSystemError();
    void unknownStatus();
};

namespace {

QString textOf(quint32 status)
{
    return DissenterRules::textOf(DADissenter { status, std::nullopt });
}

} // namespace

void TestDissenterRules::statusHasAName_data()
{
    QTest::addColumn<quint32>("status");
    const std::pair<quint32, const char *> names[] = {
        { 0, "kDAReturnSuccess" },
        { 0xF8DA0001, "kDAReturnError" },
        { 0xF8DA0002, "kDAReturnBusy" },
        { 0xF8DA0003, "kDAReturnBadArgument" },
        { 0xF8DA0004, "kDAReturnExclusiveAccess" },
        { 0xF8DA0005, "kDAReturnNoResources" },
        { 0xF8DA0006, "kDAReturnNotFound" },
        { 0xF8DA0007, "kDAReturnNotMounted" },
        { 0xF8DA0008, "kDAReturnNotPermitted" },
        { 0xF8DA0009, "kDAReturnNotPrivileged" },
        { 0xF8DA000A, "kDAReturnNotReady" },
        { 0xF8DA000B, "kDAReturnNotWritable" },
        { 0xF8DA000C, "kDAReturnUnsupported" },
    };
    for (const auto &[status, name] : names)
        QTest::newRow(name) << status;
}

void TestDissenterRules::statusHasAName()
{
    QFETCH(quint32, status);
    QCOMPARE(textOf(status), QString::fromLatin1(QTest::currentDataTag()));
}

void TestDissenterRules::wordsOfTheServiceComeFirst()
{
    QCOMPARE(DissenterRules::textOf(DADissenter { 0xF8DA0002, u"target is busy"_s }), u"target is busy"_s);
    QCOMPARE(DissenterRules::textOf(DADissenter { 0x1234, QString() }), QString());
}

void TestDissenterRules::wrappedSystemError()
{
    QCOMPARE(textOf(0xC010), errnoText(EBUSY));
    QCOMPARE(EBUSY, 16);
    QCOMPARE(textOf(0xC001), errnoText(EPERM));
}

void TestDissenterRules::unknownStatus()
{
    QCOMPARE(textOf(0x1234), u"<Unknown DAReturn value: 1234>"_s);
    QCOMPARE(textOf(0xF8DA000D), u"<Unknown DAReturn value: F8DA000D>"_s);
    QCOMPARE(textOf(0x4010), u"<Unknown DAReturn value: 4010>"_s);
    QCOMPARE(textOf(0x8010), u"<Unknown DAReturn value: 8010>"_s);
    QCOMPARE(textOf(0xABC), u"<Unknown DAReturn value: ABC>"_s);
    for (const quint32 status : { 0x1234U, 0xF8DA000DU, 0x4010U, 0x8010U })
        QVERIFY(!DissenterRules::hasReason(DADissenter { status, std::nullopt }));
    for (const quint32 status : { 0U, 0xF8DA0001U, 0xF8DA000CU, 0xC010U })
        QVERIFY(DissenterRules::hasReason(DADissenter { status, std::nullopt }));
    QVERIFY(DissenterRules::hasReason(DADissenter { 0x1234, u"words"_s }));
}

QTEST_APPLESS_MAIN(TestDissenterRules)
#include "tst_dissenterrules.moc"
