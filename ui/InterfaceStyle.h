// SPDX-License-Identifier: MIT
//
// The desktop's style, except that no letter is underlined in a script whose letters are joined: Qt draws an
// underlined letter by itself, and its neighbours do not join it. Its shortcut works all the same. Main
// thread.
#pragma once

#include <QProxyStyle>

class InterfaceStyle : public QProxyStyle
{
    Q_OBJECT

public:
    // Puts it on top of the application's style, once.
    static void install();

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
        QStyleHintReturn *returnData) const override;

private:
    using QProxyStyle::QProxyStyle;
};
