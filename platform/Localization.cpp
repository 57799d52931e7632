// SPDX-License-Identifier: MIT
#include "platform/Localization.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QLatin1String englishLocalization("en");
constexpr QLatin1String tableFolder(":/translations/");
constexpr QLatin1String tablePrefix("zorvex_");
constexpr QLatin1String tableSuffix(".qm");

struct StringTables
{
    QTranslator english;
    QTranslator language;
    QTranslator toolkit;
    QString inUse;
};

StringTables &stringTables()
{
    static StringTables tables;
    return tables;
}

bool loadTable(QTranslator &translator, const QString &localization)
{
    return translator.load(tableFolder + tablePrefix + localization + tableSuffix);
}

// A language as far as it matters for choosing a table.
struct LanguageTag
{
    QString language;
    QString script; // of Chinese only; from the region when it is missing
    QString territory;
};

QString chineseScript(const QString &territory)
{
    return territory == "TW"_L1 || territory == "HK"_L1 || territory == "MO"_L1 ? u"Hant"_s : u"Hans"_s;
}

// Takes both spellings, pt-BR and pt_BR, and drops the rest of a POSIX locale's name, as in de_DE.UTF-8.
LanguageTag parsedTag(const QString &identifier)
{
    const qsizetype end = identifier.indexOf(u'.');
    QString plain = identifier.left(end).section(u'@', 0, 0);
    plain.replace(u'_', u'-');
    const QStringList parts = plain.split(u'-');
    LanguageTag tag { .language = parts.first().toLower(), .script = {}, .territory = {} };
    if (tag.language == "c"_L1 || tag.language == "posix"_L1)
        tag.language = englishLocalization;
    QString script;
    for (const QString &part : parts.sliced(1)) {
        if (part.size() == 4 && script.isEmpty())
            script = part.left(1).toUpper() + part.mid(1).toLower();
        else if (part.size() == 2 && tag.territory.isEmpty())
            tag.territory = part.toUpper();
    }
    if (tag.language == "zh"_L1)
        tag.script = script.isEmpty() ? chineseScript(tag.territory) : script;
    return tag;
}

// The localization that serves the language: one for its territory, else one for the language at large, else
// one for another territory, since Brazilian Portuguese serves a Portuguese better than English.
QString localizationServing(const QStringList &available, const LanguageTag &wanted)
{
    QString best;
    int bestRank = 0;
    for (const QString &localization : available) {
        const LanguageTag offered = parsedTag(localization);
        if (offered.language != wanted.language || offered.script != wanted.script)
            continue;
        const int rank = offered.territory == wanted.territory ? 3 : offered.territory.isEmpty() ? 2 : 1;
        if (rank > bestRank) {
            best = localization;
            bestRank = rank;
        }
    }
    return best;
}

// The length of the placeholder at the position and the number of its argument, counted from 1; 0 is "the
// next".
struct Placeholder
{
    qsizetype length = 0;
    qsizetype argument = 0;
};

Placeholder placeholderAt(QStringView format, qsizetype position)
{
    qsizetype cursor = position + 1;
    qsizetype number = 0;
    while (cursor < format.size() && format[cursor] >= u'0' && format[cursor] <= u'9' && number < 1000)
        number = number * 10 + (format[cursor++].unicode() - u'0');
    const bool numbered = cursor > position + 1;
    if (numbered) {
        if (number == 0 || cursor >= format.size() || format[cursor] != u'$')
            return {};
        ++cursor;
    }
    if (cursor >= format.size() || format[cursor] != u'@')
        return {};
    return { .length = cursor + 1 - position, .argument = number };
}

// Of the countries where the language is spoken, one whose digits are those in which device names and tools
// write numbers.
QLocale localeWithPlainDigits(const QString &localization)
{
    const QLocale usual(localization);
    QList<QLocale> locales
        = QLocale::matchingLocales(usual.language(), QLocale::AnyScript, QLocale::AnyTerritory);
    locales.prepend(usual);
    const auto plain = std::find_if(
        locales.begin(), locales.end(), [](const QLocale &locale) { return locale.zeroDigit() == "0"_L1; });
    return plain == locales.end() ? QLocale::c() : *plain;
}

} // namespace

QStringList bundleLocalizations()
{
    QStringList localizations;
    for (const QString &name : QDir(tableFolder).entryList({ tablePrefix + u'*' }, QDir::Files, QDir::Name))
        localizations.append(name.sliced(tablePrefix.size()).chopped(tableSuffix.size()));
    return localizations;
}

QStringList userLanguages()
{
    return QLocale::system().uiLanguages();
}

QString currentLocaleIdentifier()
{
    return QLocale::system().name();
}

QStringList preferredLocalizations(const QStringList &available, const QStringList &userLanguages)
{
    QStringList preferred;
    for (const QString &language : userLanguages) {
        const QString localization = localizationServing(available, parsedTag(language));
        if (!localization.isEmpty() && !preferred.contains(localization))
            preferred.append(localization);
    }
    if (preferred.isEmpty() && available.contains(englishLocalization))
        preferred.append(englishLocalization);
    return preferred;
}

bool isRightToLeftIdentifier(
    const std::optional<QStringList> &preferredLocalizations, const QString &localeIdentifier)
{
    const bool listed = preferredLocalizations && !preferredLocalizations->isEmpty();
    const QString &identifier = listed ? preferredLocalizations->first() : localeIdentifier;
    return identifier == "ar"_L1 || identifier.startsWith("ar_"_L1);
}

bool loadLocalization(const QString &localization)
{
    StringTables &tables = stringTables();
    // In this order, because Qt asks the translator first that was installed last.
    QCoreApplication::removeTranslator(&tables.toolkit);
    QCoreApplication::removeTranslator(&tables.language);
    QCoreApplication::removeTranslator(&tables.english);

    // A translator that is asked for de_AT accepts de, so only localizations on offer count as found.
    const bool found = bundleLocalizations().contains(localization);
    tables.inUse = found ? localization : QString(englishLocalization);
    if (loadTable(tables.english, englishLocalization))
        QCoreApplication::installTranslator(&tables.english);
    if (loadTable(tables.language, tables.inUse))
        QCoreApplication::installTranslator(&tables.language);
    if (tables.toolkit.load("qtbase_"_L1 + tables.inUse, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&tables.toolkit);

    QLocale::setDefault(localeWithPlainDigits(tables.inUse));
    return found;
}

QString localizationInUse()
{
    return stringTables().inUse;
}

QString localizedString(const char *key)
{
    // The tables are asked themselves because qtTrId answers an unknown key with the key.
    const StringTables &tables = stringTables();
    const QString text = tables.language.translate(nullptr, key);
    return text.isEmpty() ? tables.english.translate(nullptr, key) : text;
}

QString formatLocalized(const QString &format, const QStringList &arguments)
{
    QString result;
    result.reserve(format.size());
    qsizetype next = 0;
    qsizetype position = 0;
    while (position < format.size()) {
        if (format[position] != u'%') {
            result += format[position++];
            continue;
        }
        if (QStringView(format).mid(position).startsWith(u"%%")) {
            result += u'%';
            position += 2;
            continue;
        }
        const Placeholder placeholder = placeholderAt(format, position);
        if (placeholder.length == 0) {
            result += format[position++];
            continue;
        }
        result += arguments.value(placeholder.argument == 0 ? next++ : placeholder.argument - 1);
        position += placeholder.length;
    }
    return result;
}
