// SPDX-License-Identifier: MIT
//
// The mount path as a link. Functions of values, any thread.
#pragma once

#include <QString>

#include <optional>

namespace HelpRules {

// The text between LEFT-TO-RIGHT EMBEDDING and POP DIRECTIONAL FORMATTING, so that a path reads left to right
// in every language.
QString leftToRightText(const QString &text);

// Whether this generation of the system has its own link colour; an unknown one has none.
bool usesSystemLinkColor(std::optional<unsigned long> generation);

// Whether a change of the text view's selection is a click on the link: an empty selection inside the text,
// while a row of the tree is selected.
bool isClickOnLink(qsizetype location, qsizetype length, int selectedRow, qsizetype textLength);

} // namespace HelpRules
