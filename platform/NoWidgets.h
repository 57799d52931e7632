// SPDX-License-Identifier: MIT
//
// Included last by every file of rules: decisions are functions of values and do not know the window.
#ifdef QWIDGET_H
#error "a rule file must not include a widget header"
#endif
#ifdef QGUIAPPLICATION_H
#error "a rule file must not include a user interface header"
#endif
