// SPDX-License-Identifier: MIT
//
// Reading strings tables, above all their old text form.
#include "platform/propertylists/PropertyList.h"

#include <QElapsedTimer>
#include <QStringEncoder>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestStringsTable : public QObject
{
    Q_OBJECT

private slots:
    void value_data();
    void value();
    void severalEntriesKeepTheirOrder();
    void bracesAroundTheWholeAreAllowed();
    void lastOfTwoEqualKeysWins();
    void emptyTextIsAnEmptyTable();
    void encoding_data();
    void encoding();
    void malformedTextGivesNothing_data();
    void malformedTextGivesNothing();
    void deepNestingGivesNothing();
    void hundredsOfThousandsOfEntriesGiveNothing();
    void largeTextIsReadInTime_data();
    void largeTextIsReadInTime();
    void xmlTableIsRead();
    void rootThatIsNoDictionaryGivesNothing();
    void textAboveTheLimitGivesNothing();
    void truncatedTextNeverCrashes();
};

void TestStringsTable::value_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<PropertyValue>("expected");
    const auto row = [](const char *name, const QByteArray &text, const PropertyValue &expected) {
        QTest::newRow(name) << text << expected;
    };
    row("quoted", R"("k" = "v";)", u"v"_s);
    row("without blanks", R"("k"="v";)", u"v"_s);
    row("apostrophes", R"('k' = 'a "v"';)", u"a \"v\""_s);
    row("tokens", "k = com.example:a/b-c_$1;", u"com.example:a/b-c_$1"_s);
    row("empty", R"("k" = "";)", QString());
    row("shorthand", R"("k";)", u"k"_s);
    row("escapes", R"("k" = "a\n\t\r\"\\\'b";)", u"a\n\t\r\"\\'b"_s);
    row("rare escapes", R"("k" = "\a\b\f\v";)", u"\a\b\f\v"_s);
    row("Unicode escape", R"("k" = "\U00e9\u00E8\Ud83d\udcbe";)", u"éè\U0001F4BE"_s);
    row("Unicode escape of fewer digits", R"("k" = "\U41-";)", u"A-"_s);
    row("octal escape", R"("k" = "\101\60\7z";)", u"A0\az"_s);
    row("unknown escape", R"("k" = "\q";)", u"q"_s);
    row("escaped line break", "\"k\" = \"a\\\nb\";", u"a\nb"_s);
    row("line break", "\"k\" = \"a\nb\";", u"a\nb"_s);
    row("line comment", "// a \"\n\"k\" = // b ;\n \"v\" ; // c", u"v"_s);
    row("block comment", "/* a \" ; */\"k\"/* b */=/***/\"v\"/**/;/* c */", u"v"_s);
    row("comment marks in a string", R"("k" = "/* // */";)", u"/* // */"_s);
    row("not ASCII", R"("k" = "日本語";)", u"日本語"_s);
    row("data", "k = <0fBD 77\n1c>;", QByteArray("\x0F\xBD\x77\x1C", 4));
    row("empty data", "k = <>;", QByteArray());
    row("array", R"(k = ( one, "two", ( ) );)", PropertyArray { u"one"_s, u"two"_s, PropertyArray() });
    row("array with a comma at the end", "k = (a, b,);", PropertyArray { u"a"_s, u"b"_s });
    row("dictionary", R"(k = { a = { b = c; }; "d" = (e); };)",
        PropertyDictionary {
            { u"a"_s, PropertyDictionary { { u"b"_s, u"c"_s } } }, { u"d"_s, PropertyArray { u"e"_s } } });
    row("empty dictionary", "k = {};", PropertyDictionary());
}

void TestStringsTable::value()
{
    QFETCH(const QByteArray, text);
    QFETCH(const PropertyValue, expected);
    const auto table = readStringsTable(text);
    QVERIFY(table);
    QCOMPARE(table->size(), std::size_t { 1 });
    QVERIFY(table->value(u"k"_s));
    QVERIFY2(*table->value(u"k"_s) == expected, qPrintable(table->value(u"k"_s)->logText()));
}

void TestStringsTable::severalEntriesKeepTheirOrder()
{
    const auto table = readStringsTable("z = 1; a = 2;\n\nm = 3;");
    QVERIFY(table);
    QVERIFY(*table == PropertyDictionary({ { u"z"_s, u"1"_s }, { u"a"_s, u"2"_s }, { u"m"_s, u"3"_s } }));
}

void TestStringsTable::bracesAroundTheWholeAreAllowed()
{
    const auto table = readStringsTable("/* whole */ { a = 1; } // end");
    QVERIFY(table);
    QVERIFY(*table == PropertyDictionary({ { u"a"_s, u"1"_s } }));
}

void TestStringsTable::lastOfTwoEqualKeysWins()
{
    const auto table = readStringsTable("a = 1; b = 2; a = 3;");
    QVERIFY(table);
    QVERIFY(*table == PropertyDictionary({ { u"a"_s, u"3"_s }, { u"b"_s, u"2"_s } }));
}

void TestStringsTable::emptyTextIsAnEmptyTable()
{
    for (const QByteArray &text :
        { QByteArray(), QByteArray(" \n"), QByteArray("// nothing"), QByteArray("{}") }) {
        const auto table = readStringsTable(text);
        QVERIFY(table && table->isEmpty());
    }
}

void TestStringsTable::encoding_data()
{
    QTest::addColumn<int>("encoding");
    QTest::addColumn<bool>("mark");
    QTest::newRow("UTF-8") << int(QStringConverter::Utf8) << false;
    QTest::newRow("UTF-8 with mark") << int(QStringConverter::Utf8) << true;
    QTest::newRow("UTF-16 little-endian") << int(QStringConverter::Utf16LE) << false;
    QTest::newRow("UTF-16 little-endian with mark") << int(QStringConverter::Utf16LE) << true;
    QTest::newRow("UTF-16 big-endian") << int(QStringConverter::Utf16BE) << false;
    QTest::newRow("UTF-16 big-endian with mark") << int(QStringConverter::Utf16BE) << true;
}

void TestStringsTable::encoding()
{
    QFETCH(const int, encoding);
    QFETCH(const bool, mark);
    QStringEncoder encoder(static_cast<QStringConverter::Encoding>(encoding),
        mark ? QStringConverter::Flag::WriteBom : QStringConverter::Flag::Default);
    const QByteArray bytes = encoder.encode(u"\"ключ\" = \"значение \U0001F4BE\";\n"_s);
    const auto table = readStringsTable(bytes);
    QVERIFY(table);
    QVERIFY(*table == PropertyDictionary({ { u"ключ"_s, u"значение \U0001F4BE"_s } }));
}

void TestStringsTable::malformedTextGivesNothing_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("no semicolon") << QByteArray("a = b");
    QTest::newRow("no value") << QByteArray("a = ;");
    QTest::newRow("no key") << QByteArray("= b;");
    QTest::newRow("string without end") << QByteArray("\"a\" = \"b;");
    QTest::newRow("escape at the end") << QByteArray("\"a\" = \"b\\");
    QTest::newRow("comment without end") << QByteArray("a = b; /* c");
    QTest::newRow("comment after a key without end") << QByteArray("a /* = b;");
    QTest::newRow("brace without end") << QByteArray("{ a = b;");
    QTest::newRow("brace without start") << QByteArray("a = b; }");
    QTest::newRow("something after the whole") << QByteArray("{ a = b; } c");
    QTest::newRow("array without end") << QByteArray("a = (b;");
    QTest::newRow("array without comma") << QByteArray("a = (b c);");
    QTest::newRow("array with two commas") << QByteArray("a = (b,,c);");
    QTest::newRow("odd data") << QByteArray("a = <123>;");
    QTest::newRow("data with other characters") << QByteArray("a = <xy>;");
    QTest::newRow("data without end") << QByteArray("a = <12");
    QTest::newRow("data as key") << QByteArray("<12> = a;");
    QTest::newRow("not UTF-8") << QByteArray("\"a\" = \"\xE9t\xE9\";");
    QTest::newRow("half a character at the end") << QByteArray("a; // caf\xC3");
    QTest::newRow("UTF-16 of an odd size") << QByteArray("\xFF\xFE"
                                                         "a\0;\0x",
        7);
    QTest::newRow("half a surrogate pair") << QByteArray("\xFF\xFE"
                                                         "a\0\x3D\xD8",
        6);
    QTest::newRow("half a surrogate pair in a comment") << QByteArray("\xFF\xFE/\0/\0\x3D\xD8", 8);
    QTest::newRow("zero byte") << QByteArray("ab = \0c;", 8);
}

void TestStringsTable::malformedTextGivesNothing()
{
    QFETCH(const QByteArray, text);
    QVERIFY(!readStringsTable(text));
}

void TestStringsTable::deepNestingGivesNothing()
{
    QVERIFY(readStringsTable("a = " + QByteArray("(").repeated(60) + QByteArray(")").repeated(60) + ";"));
    QVERIFY(!readStringsTable(
        "a = " + QByteArray("(").repeated(1'000'000) + QByteArray(")").repeated(1'000'000) + ";"));
    QVERIFY(!readStringsTable("a = " + QByteArray("{a=").repeated(500'000)));
}

void TestStringsTable::hundredsOfThousandsOfEntriesGiveNothing()
{
    QVERIFY(!readStringsTable(QByteArray("a;").repeated(500'000)));
    QVERIFY(!readStringsTable("a = (" + QByteArray("a,").repeated(500'000) + ");"));
}

void TestStringsTable::largeTextIsReadInTime_data()
{
    QTest::addColumn<QByteArray>("text");
    QByteArray keys;
    for (int i = 0; i < 60'000; ++i)
        keys += "key" + QByteArray::number(i) + " = v;\n";
    QTest::newRow("many keys") << keys;
    QTest::newRow("string of one megabyte") << QByteArray("a = \"" + QByteArray(1'000'000, 'x') + "\";");
    QTest::newRow("escapes of one megabyte")
        << QByteArray("a = \"" + QByteArray("\\n").repeated(500'000) + "\";");
    QTest::newRow("comments of one megabyte") << QByteArray(QByteArray("/**/").repeated(250'000) + "a;");
    QTest::newRow("comment of one megabyte") << QByteArray("/*" + QByteArray(1'000'000, '*') + "/a;");
    QTest::newRow("data of one megabyte") << QByteArray("a = <" + QByteArray("0f").repeated(500'000) + ">;");
}

void TestStringsTable::largeTextIsReadInTime()
{
    QFETCH(const QByteArray, text);
    QElapsedTimer timer;
    timer.start();
    QVERIFY(readStringsTable(text));
    QCOMPARE_LT(timer.elapsed(), 3000);
}

void TestStringsTable::xmlTableIsRead()
{
    const auto table = readStringsTable("<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>a</key>"
                                        "<string>b</string></dict></plist>");
    QVERIFY(table);
    QVERIFY(*table == PropertyDictionary({ { u"a"_s, u"b"_s } }));
}

void TestStringsTable::rootThatIsNoDictionaryGivesNothing()
{
    QVERIFY(!readStringsTable("<?xml version=\"1.0\"?><plist version=\"1.0\"><array/></plist>"));
    QVERIFY(!readStringsTable("(a, b)"));
    QVERIFY(!readStringsTable("\"text\""));
}

void TestStringsTable::textAboveTheLimitGivesNothing()
{
    constexpr qsizetype limit = 4 * 1024 * 1024;
    QVERIFY(readStringsTable("a;" + QByteArray(limit - 2, ' ')));
    QVERIFY(!readStringsTable("a;" + QByteArray(limit - 1, ' ')));
}

void TestStringsTable::truncatedTextNeverCrashes()
{
    const QByteArray whole = R"({ "a\U00e9" = ( b, <0f>, { c = 'd\101'; } ); /* e */ })";
    QVERIFY(readStringsTable(whole));
    for (qsizetype size = 1; size < whole.size(); ++size)
        QVERIFY2(!readStringsTable(whole.left(size)), whole.left(size).constData());
}

QTEST_APPLESS_MAIN(TestStringsTable)
#include "tst_stringstable.moc"
