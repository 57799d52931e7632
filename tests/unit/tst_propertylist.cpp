// SPDX-License-Identifier: MIT
//
// Reading XML and binary property lists: every kind of value, and everything that files should not hold.
#include "platform/propertylists/PropertyList.h"
#include "platform/propertylists/PropertyListGuard.h"

#include <QElapsedTimer>
#include <QTest>
#include <QTimeZone>

#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace {

QByteArray xmlOf(const QByteArray &body)
{
    return QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                      "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                      "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<plist version=\"1.0\">")
        + body + "</plist>\n";
}

QByteArray nestedArrays(int depth)
{
    return QByteArray("<array>").repeated(depth) + QByteArray("</array>").repeated(depth);
}

// A binary list of the objects, which refer to each other by one byte; the first is the root.
QByteArray binaryOf(const QList<QByteArray> &objects, char root = 0)
{
    QByteArray data("bplist00");
    QByteArray offsets;
    for (const QByteArray &object : objects) {
        for (int shift = 24; shift >= 0; shift -= 8)
            offsets.append(static_cast<char>(data.size() >> shift & 0xFF));
        data += object;
    }
    const qsizetype table = data.size();
    data += offsets;
    data += QByteArray(6, '\0') + char(4) + char(1);
    data += QByteArray(7, '\0') + static_cast<char>(objects.size());
    data += QByteArray(7, '\0') + root;
    data += QByteArray(4, '\0');
    for (int shift = 24; shift >= 0; shift -= 8)
        data.append(static_cast<char>(table >> shift & 0xFF));
    return data;
}

// A binary array of references.
QByteArray binaryArray(const QByteArray &references)
{
    return static_cast<char>(0xA0 + references.size()) + references;
}

} // namespace

class TestPropertyList : public QObject
{
    Q_OBJECT

private slots:
    void xmlValuesKeepTheirTypes();
    void dictionaryKeysKeepTheirOrder();
    void lastOfTwoEqualKeysWins();
    void integersKeepTheirSign();
    void textKeepsItsCharacters();
    void commentsAndCharacterDataAreRead();
    void byteOrderMarkIsSkipped();
    void malformedListGivesNothing_data();
    void malformedListGivesNothing();
    void nestingUpToTheLimitIsRead();
    void deepNestingGivesNothing();
    void nestingHiddenFromTheCountGivesNothing_data();
    void nestingHiddenFromTheCountGivesNothing();
    void hundredsOfThousandsOfValuesGiveNothing();
    void stringOfOneMegabyteIsRead();
    void dictionaryOfManyKeysIsReadInTime();
    void binaryValuesKeepTheirTypes();
    void binaryCycleGivesNothing();
    void binaryBombGivesNothing();
    void moreBinaryObjectsThanValuesGiveNothing_data();
    void moreBinaryObjectsThanValuesGiveNothing();
    void binaryStringRepeatedBeyondTheLimitGivesNothing();
    void binaryDeepNestingGivesNothing();
    void binaryKeysOfHalfASurrogatePairNeverCrash();
    void sharedBinaryValueIsReadTwice();
    void damagedBinaryListNeverCrashes();
    void truncatedXmlNeverCrashes();
};

void TestPropertyList::xmlValuesKeepTheirTypes()
{
    const auto root
        = readPropertyList(xmlOf("<dict><key>s</key><string>text</string><key>t</key><true/><key>f</key>"
                                 "<false/><key>i</key><integer>42</integer><key>r</key><real>1.5</real>"
                                 "<key>d</key><data>AAEC</data><key>w</key><date>2020-01-01T00:00:00Z</date>"
                                 "<key>a</key><array><string>x</string></array><key>e</key><dict/></dict>"));
    QVERIFY(root);
    const PropertyDictionary expected {
        { u"s"_s, u"text"_s },
        { u"t"_s, true },
        { u"f"_s, false },
        { u"i"_s, PropertyNumber(qint64 { 42 }) },
        { u"r"_s, PropertyNumber(1.5) },
        { u"d"_s, QByteArray("\x00\x01\x02", 3) },
        { u"w"_s, QDateTime(QDate(2020, 1, 1), QTime(0, 0), QTimeZone::utc()) },
        { u"a"_s, PropertyArray { u"x"_s } },
        { u"e"_s, PropertyDictionary() },
    };
    QCOMPARE(root->type(), PropertyType::Dictionary);
    QVERIFY(*root->asDictionary() == expected);
}

void TestPropertyList::dictionaryKeysKeepTheirOrder()
{
    const auto root
        = readPropertyList(xmlOf("<dict><key>z</key><true/><key>a</key><true/><key>m</key><true/></dict>"));
    QVERIFY(root && root->asDictionary());
    QStringList keys;
    for (const auto &entry : *root->asDictionary())
        keys.append(entry.first);
    QCOMPARE(keys, QStringList({ u"z"_s, u"a"_s, u"m"_s }));
}

void TestPropertyList::lastOfTwoEqualKeysWins()
{
    const QByteArray binary = binaryOf({ QByteArray("\xD2\x01\x01\x02\x03", 5), "\x51k", "\x08", "\x09" });
    for (const QByteArray &data : { xmlOf("<dict><key>k</key><false/><key>k</key><true/></dict>"), binary }) {
        const auto root = readPropertyList(data);
        QVERIFY(root && root->asDictionary());
        QCOMPARE(root->asDictionary()->size(), std::size_t { 1 });
        QVERIFY(root->asDictionary()->value(u"k"_s)->booleanValue());
    }
}

void TestPropertyList::integersKeepTheirSign()
{
    const auto root
        = readPropertyList(xmlOf("<array><integer>-1</integer><integer>18446744073709551615</integer>"
                                 "<integer>9223372036854775807</integer>"
                                 "<integer>-9223372036854775808</integer></array>"));
    QVERIFY(root && root->asArray());
    const PropertyArray expected {
        PropertyNumber(qint64 { -1 }),
        PropertyNumber(std::numeric_limits<quint64>::max()),
        PropertyNumber(std::numeric_limits<qint64>::max()),
        PropertyNumber(std::numeric_limits<qint64>::min()),
    };
    QVERIFY(*root->asArray() == expected);
}

void TestPropertyList::textKeepsItsCharacters()
{
    const auto root = readPropertyList(xmlOf("<string>Ñandú \xF0\x9F\x92\xBE &lt;&amp;&gt; &#65;</string>"));
    QVERIFY(root && root->asString());
    QCOMPARE(*root->asString(), u"Ñandú \U0001F4BE <&> A"_s);
}

void TestPropertyList::commentsAndCharacterDataAreRead()
{
    const auto root
        = readPropertyList(xmlOf("<array><!-- </array> --><string><![CDATA[a <b> c]]></string></array>"));
    QVERIFY(root && root->asArray());
    QVERIFY(*root->asArray() == PropertyArray { u"a <b> c"_s });
}

void TestPropertyList::byteOrderMarkIsSkipped()
{
    const auto root = readPropertyList("\xEF\xBB\xBF" + xmlOf("<true/>"));
    QVERIFY(root && root->booleanValue());
}

void TestPropertyList::malformedListGivesNothing_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("plain text") << QByteArray("FSPersonalities");
    QTest::newRow("no value") << xmlOf("");
    QTest::newRow("unknown element") << xmlOf("<blob/>");
    QTest::newRow("not closed") << xmlOf("<dict><key>a</key>");
    QTest::newRow("closed twice") << xmlOf("<array></array></array>");
    QTest::newRow("closed crosswise") << xmlOf("<array></dict>");
    QTest::newRow("value without key") << xmlOf("<dict><true/></dict>");
    QTest::newRow("comment without end") << xmlOf("<!-- <true/>");
    QTest::newRow("own entity") << QByteArray(
        "<!DOCTYPE plist [<!ENTITY a \"b\">]><plist><string>&a;</string></plist>");
    QTest::newRow("zero byte") << xmlOf(QByteArray("<dict><key>a\0b</key><true/></dict>", 34));
    QTest::newRow("zero byte by number") << xmlOf("<dict><key>a&#0;b</key><true/></dict>");
    QTest::newRow("binary key with a zero byte")
        << binaryOf({ QByteArray("\xD1\x01\x02", 3), QByteArray("\x52\0a", 3), "\x09" });
    QTest::newRow("binary string with a zero byte") << binaryOf({ QByteArray("\x52\0a", 3) });
    QTest::newRow("binary UTF-16 key with a zero unit")
        << binaryOf({ QByteArray("\xD1\x01\x02", 3), QByteArray("\x62\0a\0\0", 5), "\x09" });
    QTest::newRow("only a binary header") << QByteArray("bplist00");
    QTest::newRow("binary of another version")
        << QByteArray(binaryOf({ "\x09" })).replace("bplist00", "bplist99");
    QTest::newRow("binary with root out of range") << binaryOf({ "\x09" }, 7);
    QTest::newRow("binary with reference out of range") << binaryOf({ binaryArray("\x05"), "\x09" });
    QTest::newRow("binary with unknown object") << binaryOf({ QByteArray("\x70", 1) });
    QTest::newRow("binary string longer than the file")
        << binaryOf({ QByteArray("\x5F\x12\x7F\xFF\xFF\xFF", 6) });
    QTest::newRow("binary dictionary with a number as key")
        << binaryOf({ QByteArray("\xD1\x01\x02", 3), QByteArray("\x10\x01", 2), "\x09" });
}

void TestPropertyList::malformedListGivesNothing()
{
    QFETCH(const QByteArray, data);
    QVERIFY(!readPropertyList(data));
}

void TestPropertyList::nestingUpToTheLimitIsRead()
{
    QVERIFY(readPropertyList(xmlOf(nestedArrays(64))));
    QVERIFY(!readPropertyList(xmlOf(nestedArrays(65))));
}

void TestPropertyList::deepNestingGivesNothing()
{
    QVERIFY(!readPropertyList(xmlOf(nestedArrays(250'000))));
    QVERIFY(!readPropertyList(xmlOf(QByteArray("<array>").repeated(500'000))));
    QVERIFY(!readPropertyList(xmlOf(QByteArray("<dict><key>a</key>").repeated(200'000))));
}

void TestPropertyList::nestingHiddenFromTheCountGivesNothing_data()
{
    // Each closes, for a careless count, what it has opened.
    QTest::addColumn<QByteArray>("level");
    QTest::newRow("closed in a comment") << QByteArray("<array><!-- </array> -->");
    QTest::newRow("closed in an attribute") << QByteArray("<array a=\"</array>\">");
    QTest::newRow("closed behind a quoted bracket") << QByteArray("<array a=\"></array>\">");
    QTest::newRow("closed in character data") << QByteArray("<array><![CDATA[</array>]]>");
    QTest::newRow("closed in an instruction") << QByteArray("<array><? </array> ?>");
    QTest::newRow("opened behind an empty comment") << QByteArray("<!--><array>--><!-- -->");
    QTest::newRow("opened behind short character data")
        << QByteArray("<string><![CDATA[ x> <array> ]]></string>");
    QTest::newRow("closed by another name") << QByteArray("<array><x></arrays></x>");
}

void TestPropertyList::nestingHiddenFromTheCountGivesNothing()
{
    QFETCH(const QByteArray, level);
    QVERIFY(!readPropertyList(xmlOf(level.repeated(100'000))));
}

void TestPropertyList::hundredsOfThousandsOfValuesGiveNothing()
{
    QVERIFY(!readPropertyList(xmlOf("<array>" + QByteArray("<true/>").repeated(500'000) + "</array>")));
}

void TestPropertyList::stringOfOneMegabyteIsRead()
{
    const auto root = readPropertyList(xmlOf("<string>" + QByteArray(1'000'000, 'x') + "</string>"));
    QVERIFY(root && root->asString());
    QCOMPARE(root->asString()->size(), 1'000'000);
}

void TestPropertyList::dictionaryOfManyKeysIsReadInTime()
{
    QByteArray body;
    for (int i = 0; i < 30'000; ++i)
        body += "<key>k" + QByteArray::number(i) + "</key><true/>";
    QElapsedTimer timer;
    timer.start();
    const auto root = readPropertyList(xmlOf("<dict>" + body + "</dict>"));
    QVERIFY(root && root->asDictionary());
    QCOMPARE(root->asDictionary()->size(), std::size_t { 30'000 });
    QCOMPARE_LT(timer.elapsed(), 3000);
}

void TestPropertyList::binaryValuesKeepTheirTypes()
{
    const auto root = readPropertyList(binaryOf({
        binaryArray("\x01\x02\x03\x04\x05\x06\x07"),
        "\x53"
        "abc",
        QByteArray("\x62\x00\xE4\x26\x3A", 5),
        QByteArray("\x10\x2A", 2),
        QByteArray("\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF", 9),
        QByteArray("\x23\x3F\xF8\x00\x00\x00\x00\x00\x00", 9),
        "\x09",
        QByteArray("\x42\x00\x01", 3),
    }));
    QVERIFY(root && root->asArray());
    const PropertyArray expected { u"abc"_s, u"ä☺"_s, PropertyNumber(qint64 { 42 }),
        PropertyNumber(qint64 { -1 }), PropertyNumber(1.5), true, QByteArray("\x00\x01", 2) };
    QVERIFY(*root->asArray() == expected);
}

void TestPropertyList::binaryCycleGivesNothing()
{
    QVERIFY(!readPropertyList(binaryOf({ binaryArray(QByteArray(1, '\0')) })));
    QVERIFY(!readPropertyList(binaryOf({ binaryArray("\x01"), binaryArray(QByteArray(1, '\0')) })));
}

void TestPropertyList::moreBinaryObjectsThanValuesGiveNothing_data()
{
    QTest::addColumn<std::size_t>("objects");
    QTest::addColumn<bool>("isRead");
    QTest::newRow("as many") << PropertyListLimits::values << true;
    QTest::newRow("one more") << PropertyListLimits::values + 1 << false;
}

// They are counted before any is looked at: none but the first is referred to.
void TestPropertyList::moreBinaryObjectsThanValuesGiveNothing()
{
    QFETCH(const std::size_t, objects);
    QFETCH(const bool, isRead);
    QByteArray data("bplist00\x09");
    data += QByteArray(static_cast<qsizetype>(objects), '\x08'); // each object is the one behind the header
    data += QByteArray(6, '\0') + char(1) + char(1) + QByteArray(4, '\0');
    for (int shift = 24; shift >= 0; shift -= 8)
        data.append(static_cast<char>(objects >> shift & 0xFF));
    data += QByteArray(15, '\0') + char(9);
    QCOMPARE(readPropertyList(data).has_value(), isRead);
}

void TestPropertyList::binaryBombGivesNothing()
{
    // Five values, each holding the next ten times: a hundred thousand values from a hundred bytes. Every
    // further level would multiply them by ten.
    QList<QByteArray> objects;
    for (char i = 1; i <= 5; ++i)
        objects.append(binaryArray(QByteArray(10, i)));
    objects.append("\x09");
    QVERIFY(!readPropertyList(binaryOf(objects)));
}

void TestPropertyList::binaryStringRepeatedBeyondTheLimitGivesNothing()
{
    // 225 times a string of one megabyte.
    const QByteArray string = QByteArray("\x5F\x12\x00\x0F\x42\x40", 6) + QByteArray(1'000'000, 'x');
    QVERIFY(!readPropertyList(
        binaryOf({ binaryArray(QByteArray(14, '\x01')), binaryArray(QByteArray(14, '\x02')), string })));
    QVERIFY(readPropertyList(binaryOf({ binaryArray(QByteArray(14, '\x01')), string })));
}

void TestPropertyList::binaryDeepNestingGivesNothing()
{
    QList<QByteArray> objects;
    for (char i = 1; i <= 100; ++i)
        objects.append(binaryArray(QByteArray(1, i)));
    objects.append("\x09");
    QVERIFY(!readPropertyList(binaryOf(objects)));
    QVERIFY(readPropertyList(binaryOf(objects, 60)));
}

void TestPropertyList::binaryKeysOfHalfASurrogatePairNeverCrash()
{
    const auto root = readPropertyList(
        binaryOf({ QByteArray("\xD1\x01\x02", 3), QByteArray("\x61\xD8\x3D", 3), "\x09" }));
    QVERIFY(!root || root->asDictionary());
}

void TestPropertyList::sharedBinaryValueIsReadTwice()
{
    const auto root = readPropertyList(binaryOf({ binaryArray("\x01\x01"), binaryArray("\x02"), "\x09" }));
    QVERIFY(root && root->asArray());
    const PropertyArray inner { true };
    QVERIFY(*root->asArray() == PropertyArray({ inner, inner }));
}

void TestPropertyList::damagedBinaryListNeverCrashes()
{
    const QByteArray whole = binaryOf({ QByteArray("\xD2\x01\x02\x03\x04", 5), "\x51k", "\x52kk",
        binaryArray("\x05\x05"), QByteArray("\x62\x00\xE4\x26\x3A", 5), QByteArray("\x10\x2A", 2) });
    QVERIFY(readPropertyList(whole));
    int stillReadable = 0;
    for (qsizetype at = 0; at < whole.size(); ++at) {
        QVERIFY(!readPropertyList(whole.left(at)));
        for (int byte = 0; byte < 256; ++byte) {
            QByteArray damaged = whole;
            damaged[at] = static_cast<char>(byte);
            stillReadable += readPropertyList(damaged) ? 1 : 0;
        }
    }
    QCOMPARE_GT(stillReadable, whole.size()); // each byte unchanged once, and harmless changes
}

void TestPropertyList::truncatedXmlNeverCrashes()
{
    const QByteArray whole
        = xmlOf("<dict><key>a</key><array><integer>1</integer><data>AAEC</data></array></dict>");
    QVERIFY(readPropertyList(whole));
    for (qsizetype size = 0; size < whole.indexOf("</dict>"); ++size)
        QVERIFY2(!readPropertyList(whole.left(size)), qPrintable(QString::number(size)));
}

QTEST_APPLESS_MAIN(TestPropertyList)
#include "tst_propertylist.moc"
