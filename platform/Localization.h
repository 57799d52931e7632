// SPDX-License-Identifier: MIT
//
// The texts of the program in the language of its user. Texts are found by key in string tables that are part
// of the program; English is complete and is used for what another table lacks.
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

// The localizations that the program has a string table for, such as "de" or "pt_BR".
QStringList bundleLocalizations();

// The languages that the user asks for, best first, such as "de-AT", "de". Main thread.
QStringList userLanguages();

// The identifier of the user's locale, such as "ar_EG". Main thread.
QString currentLocaleIdentifier();

// Those of the available localizations that serve one of the user's languages, best first: "de-AT" is served
// by de, traditional Chinese of any region by zh_TW, simplified by zh_CN. When none does, "en" if that is
// available. Empty only when none fits and there is no "en". Any thread.
QStringList preferredLocalizations(const QStringList &available, const QStringList &userLanguages);

// Whether a program in the first of the preferred localizations is laid out from right to left; the locale
// decides when there is no list or an empty one. Only Arabic is. Any thread.
bool isRightToLeftIdentifier(
    const std::optional<QStringList> &preferredLocalizations, const QString &localeIdentifier);

// Puts the localization in use, and with it Qt's own texts in that language where they are installed. May be
// called again to change the language. Returns false when there is no table for it: English is in use then.
// Main thread.
bool loadLocalization(const QString &localization);

// The localization in use; empty before loadLocalization. Main thread.
QString localizationInUse();

// The text of the key in the language in use, in English when that language lacks it, else empty. Main
// thread.
QString localizedString(const char *key);

// The format with its placeholders filled: %@ takes the arguments in turn, %2$@ takes the second one, and %%
// is a percent sign. A placeholder without an argument is left out. Placeholders in arguments are not filled.
// Any thread.
QString formatLocalized(const QString &format, const QStringList &arguments);
