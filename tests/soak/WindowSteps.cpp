// SPDX-License-Identifier: MIT
//
// What a user does with a window alone.
#include "tests/soak/Steps.h"

#include "platform/Localization.h"
#include "ui/OutlineView.h"
#include "ui/SplitView.h"

#include <QApplication>
#include <QLabel>
#include <QTabWidget>

using namespace Qt::Literals::StringLiterals;

bool selectRow(SoakWorld &world)
{
    RealWindow &window = world.anyWindow();
    OutlineView *const view = window.controller().leftOutlineView;
    const int row = world.below(view->numberOfRows() + 1) - 1;
    world.note(u"select row %1"_s.arg(row));
    view->selectRow(row);
    const DiskRecord record = view->itemAtRow(row);
    SoakWorld::require(
        window.controller().bsdNameLabel->text() == (record ? record->description() : QString()),
        u"row %1 is selected and '%2' described"_s.arg(row).arg(window.controller().bsdNameLabel->text()));
    return true;
}

bool resizeWindow(SoakWorld &world)
{
    RealWindow &window = world.anyWindow();
    const QSize size(600 + world.below(1400), 300 + world.below(900));
    const int divider = world.below(size.width());
    world.note(u"resize to %1 x %2, divider to %3"_s.arg(size.width()).arg(size.height()).arg(divider));
    window.window().resize(size);
    window.controller().mainSplitView->moveDivider(divider);
    return true;
}

bool switchPage(SoakWorld &world)
{
    QTabWidget *const pages = world.anyWindow().controller().rightTabView;
    const int page = world.below(pages->count());
    world.note(u"switch to page %1"_s.arg(page));
    pages->setCurrentIndex(page);
    return true;
}

bool activateWindow(SoakWorld &world)
{
    world.note(u"activate a window"_s);
    QEvent activation(QEvent::WindowActivate);
    QApplication::sendEvent(&world.anyWindow().window(), &activation);
    return true;
}

bool changeLanguage(SoakWorld &world)
{
    const QString language = world.oneOf(bundleLocalizations());
    world.note(u"open the window again in "_s + language);
    world.changing.reset();
    world.changing = std::make_unique<RealWindow>(language);
    return true;
}
