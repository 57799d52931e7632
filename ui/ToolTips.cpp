// SPDX-License-Identifier: MIT
#include "ui/ToolTips.h"

using namespace Qt::Literals::StringLiterals;

QString plainToolTip(const QString &text)
{
    if (text.isEmpty())
        return {};
    return "<span style=\"white-space: pre-wrap\">"_L1 + text.toHtmlEscaped() + "</span>"_L1;
}
