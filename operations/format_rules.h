// SPDX-License-Identifier: MIT
//
// Decisions of a format. Functions of values, any thread.
#pragma once

#include <QString>

#include <optional>

namespace FormatRules {

// The label of a volume that is given none.
QString defaultLabel(const QString &bundleName);

struct Labels
{
    QString volumeLabel; // for the formatter
    std::optional<QString> postFormatLabel; // for the rename that follows
};

// Where the label goes. The program's own formatters always make the same name, and a label that was typed is
// given by a rename; all others get the label themselves.
Labels labelsFor(const QString &typed, const QString &bundleName);

// What to tell a user who has not selected both a disk and a file system.
QString nothingSelectedText(bool hasFilesystem, bool hasDisk);

// The arguments of the erase, each in single quotes. Nothing is escaped.
QString eraseArguments(const QString &personality, const QString &label, const QString &bsdName);

} // namespace FormatRules
