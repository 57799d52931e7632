// SPDX-License-Identifier: MIT
#include "ui/tool_tips.h"

QString plainToolTip(const QString &text)
{
    if (text.isEmpty())
        return {};
    return QLatin1String("<span style=\"white-space: pre-wrap\">") + text.toHtmlEscaped()
        + QLatin1String("</span>");
}
