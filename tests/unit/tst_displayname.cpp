// SPDX-License-Identifier: MIT
//
// The display name of a personality, and every way in which a bundle may fail to give one.
#include "BundleFolder.h"
#include "filesystems/DisplayName.h"
#include "platform/SystemLog.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestDisplayName : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_fsName = PropertyValue(u"fallback"_s); }
    void localizedNameIsShown();
    void unlocalizedNameIsShownWithoutTheLanguage();
    void exfatIsRespelled();
    void ownExfatKeepsItsSpelling();
    void bundleIsReadAnewEachTime();
    void personalityMissingFromTheTableFallsBack();
    void failureIsLoggedAndFallsBack_data();
    void failureIsLoggedAndFallsBack();
    void missingBundleIsLogged();
    void fallbackIsTheBundleNameWithoutAUsableName();

private:
    // The name of the personality "P" of the bundle.
    QString nameOf(const BundleFolder &folder, const QString &bundleName)
    {
        const FilesystemBundleRef record = ZorvexDiskManagerFSBundle::alloc();
        record->baseDir = folder.path();
        record->bundleName = bundleName;
        record->fsPersonality = u"P"_s;
        record->fsName = m_fsName;
        m_log.clear();
        const SystemLogRedirection redirection([this](const QString &line) { m_log.append(line); });
        return getFilesystemTypeString(*record, { u"de"_s });
    }

    std::optional<PropertyValue> m_fsName; // of the record
    QStringList m_log;
};

namespace {

const QByteArray personality = "<key>P</key><dict><key>FSName</key><string>Plain</string></dict>";

} // namespace

void TestDisplayName::localizedNameIsShown()
{
    const BundleFolder folder;
    QVERIFY(folder.addPersonalities(u"a"_s, personality));
    QVERIFY(folder.addStrings(u"a"_s, u"de"_s, "FSPersonalities = { P = { FSName = \"Schlicht\"; }; };"));
    QCOMPARE(nameOf(folder, u"a"_s), u"Schlicht"_s);
    QCOMPARE(m_log, QStringList());
}

void TestDisplayName::unlocalizedNameIsShownWithoutTheLanguage()
{
    const BundleFolder folder;
    QVERIFY(folder.addPersonalities(u"a"_s, personality));
    QVERIFY(folder.addStrings(u"a"_s, u"fr"_s, "FSPersonalities = { P = { FSName = \"Simple\"; }; };"));
    QCOMPARE(nameOf(folder, u"a"_s), u"Plain"_s);
    QCOMPARE(m_log, QStringList());
}

void TestDisplayName::exfatIsRespelled()
{
    const BundleFolder folder;
    QVERIFY(folder.addPersonalities(
        u"exfat"_s, "<key>P</key><dict><key>FSName</key><string>ExFAT, EXFAT (ExFAT)</string></dict>"));
    QCOMPARE(nameOf(folder, u"exfat"_s), u"exFAT, EXFAT (exFAT)"_s);
}

void TestDisplayName::ownExfatKeepsItsSpelling()
{
    const BundleFolder folder;
    QVERIFY(folder.addPersonalities(
        u"zorvex_exfat"_s, "<key>P</key><dict><key>FSName</key><string>ExFAT</string></dict>"));
    QCOMPARE(nameOf(folder, u"zorvex_exfat"_s), u"ExFAT"_s);
}

void TestDisplayName::bundleIsReadAnewEachTime()
{
    const BundleFolder folder;
    QVERIFY(folder.addPersonalities(u"a"_s, personality));
    QCOMPARE(nameOf(folder, u"a"_s), u"Plain"_s);
    QVERIFY(folder.addStrings(u"a"_s, u"de"_s, "FSPersonalities = { P = { FSName = \"Schlicht\"; }; };"));
    QCOMPARE(nameOf(folder, u"a"_s), u"Schlicht"_s);
}

void TestDisplayName::personalityMissingFromTheTableFallsBack()
{
    const BundleFolder folder;
    QVERIFY(folder.addPersonalities(u"a"_s, personality));
    QVERIFY(folder.addStrings(u"a"_s, u"de"_s, "FSPersonalities = { Q = { FSName = \"Anders\"; }; };"));
    QCOMPARE(nameOf(folder, u"a"_s), u"fallback"_s);
    QCOMPARE(m_log,
        QStringList(
            u"Could not get \"P\" dictionary from localized bundle info dictionary: Key not found."_s));
}

void TestDisplayName::failureIsLoggedAndFallsBack_data()
{
    QTest::addColumn<QByteArray>("info");
    QTest::addColumn<QString>("line");
    const auto row = [](const char *name, const char *info, const QString &line) {
        QTest::newRow(name) << QByteArray(info) << line;
    };
    row("no personalities", "<dict/>",
        u"Could not get FSPersonalities dictionary from bundle info dictionary: Key not found."_s);
    row("personalities of another type", "<dict><key>FSPersonalities</key><array/></dict>",
        u"Could not get FSPersonalities dictionary from bundle info dictionary: Unexpected object type."_s);
    row("no personality", "<dict><key>FSPersonalities</key><dict/></dict>",
        u"Could not get \"P\" dictionary from localized bundle info dictionary: Key not found."_s);
    row("personality of another type",
        "<dict><key>FSPersonalities</key><dict><key>P</key><true/></dict></dict>",
        u"Could not get \"P\" dictionary from localized bundle info dictionary: Unexpected object type."_s);
    row("no name", "<dict><key>FSPersonalities</key><dict><key>P</key><dict/></dict></dict>",
        u"Could not get FSName value from FS personality dictionary: Key not found."_s);
    row("name of another type",
        "<dict><key>FSPersonalities</key><dict><key>P</key><dict><key>FSName</key><integer>7</integer></"
        "dict></dict></dict>",
        u"Could not get FSName value from FS personality dictionary: Unexpected object type (7)."_s);
}

void TestDisplayName::failureIsLoggedAndFallsBack()
{
    QFETCH(const QByteArray, info);
    QFETCH(const QString, line);
    const BundleFolder folder;
    QVERIFY(folder.addBundle(u"a"_s, info));
    QCOMPARE(nameOf(folder, u"a"_s), u"fallback"_s);
    QCOMPARE(m_log, QStringList(line));
}

void TestDisplayName::missingBundleIsLogged()
{
    const BundleFolder folder;
    QCOMPARE(nameOf(folder, u"a"_s), u"fallback"_s);
    QCOMPARE(m_log,
        QStringList("Could not get localized info dictionary from bundle: "_L1 + folder.path() + "/a.fs"_L1));
}

void TestDisplayName::fallbackIsTheBundleNameWithoutAUsableName()
{
    const BundleFolder folder;
    QVERIFY(folder.addPersonalities(u"msdos"_s, "<key>P</key><dict/>"));
    m_fsName.reset();
    QCOMPARE(nameOf(folder, u"msdos"_s), u"msdos"_s);
    m_fsName = PropertyValue(PropertyNumber(1.0));
    QCOMPARE(nameOf(folder, u"msdos"_s), u"msdos"_s);
}

QTEST_APPLESS_MAIN(TestDisplayName)
#include "tst_displayname.moc"
