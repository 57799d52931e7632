// SPDX-License-Identifier: MIT
#include "platform/disturbing_characters.h"

bool disturbsLine(QChar c)
{
    const QChar::Category category = c.category();
    const bool reorders = (c >= QChar(0x202A) && c <= QChar(0x202E))
        || (c >= QChar(0x2066) && c <= QChar(0x2069)) || c == QChar(0x200E) || c == QChar(0x200F)
        || c == QChar(0x061C);
    return reorders || category == QChar::Other_Control || category == QChar::Separator_Line
        || category == QChar::Separator_Paragraph;
}
