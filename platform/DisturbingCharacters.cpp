// SPDX-License-Identifier: MIT
#include "platform/DisturbingCharacters.h"

bool disturbsLine(QChar c)
{
    const QChar::Category category = c.category();
    const bool reorders = (c >= QChar(0x202A) && c <= QChar(0x202E))
        || (c >= QChar(0x2066) && c <= QChar(0x2069)) || c == QChar(0x200E) || c == QChar(0x200F)
        || c == QChar(0x061C);
    return reorders || category == QChar::Other_Control || category == QChar::Separator_Line
        || category == QChar::Separator_Paragraph;
}

QString harmlessName(const QString &name)
{
    QString result = name;
    for (QChar &c : result) {
        if (disturbsLine(c))
            c = QChar(QChar::ReplacementCharacter);
    }
    return result;
}

QString nameToShow(const QString &name)
{
    if (name.size() <= longestShownName)
        return harmlessName(name);
    return harmlessName(name.left(longestShownName - 1)) + QChar(0x2026);
}
