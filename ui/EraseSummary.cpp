// SPDX-License-Identifier: MIT
#include "ui/EraseSummary.h"

#include "platform/Localization.h"
#include "ui/color_rules.h"
#include "ui/Units.h"

#include <QEvent>
#include <QGridLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QScreen>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int usualWidth = 364; // units

QLabel *makeLabel(const QString &text)
{
    auto *label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    return label;
}

QLabel *makeValue(const SummaryLine &line)
{
    QLabel *const value = makeLabel(line.value);
    value->setObjectName(u"summaryValue"_s);
    value->setWordWrap(true);
    value->setTextInteractionFlags(Qt::TextSelectableByMouse);
    // Beside its caption, whatever the direction of the value itself is.
    value->setAlignment(Qt::AlignAbsolute | Qt::AlignTop
        | (QGuiApplication::layoutDirection() == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft));
    QFont font;
    font.setBold(line.isBold);
    value->setFont(font);
    return value;
}

} // namespace

EraseSummary::EraseSummary(const SummaryBlock &present, const SummaryBlock &future)
{
    auto *content = new QWidget;
    auto *grid = new QGridLayout(content);
    grid->setColumnStretch(1, 1);
    addBlock(grid, present);
    auto *line = new QFrame;
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);
    grid->addWidget(line, grid->rowCount(), 0, 1, 2);
    addBlock(grid, future);
    setFrameShape(QFrame::StyledPanel);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFocusPolicy(Qt::NoFocus);
    setWidgetResizable(true);
    setWidget(content);
    for (QWidget *area : { viewport(), content })
        area->setBackgroundRole(QPalette::Base);
    layOut();
    colorCaptions();
}

void EraseSummary::layOut()
{
    auto *grid = qobject_cast<QGridLayout *>(widget()->layout());
    grid->setContentsMargins(units(12), units(10), units(12), units(10));
    grid->setHorizontalSpacing(units(12));
    grid->setVerticalSpacing(units(6));
}

void EraseSummary::addBlock(QGridLayout *grid, const SummaryBlock &block)
{
    for (const SummaryLine &line : block) {
        const int row = grid->rowCount();
        QLabel *const caption = makeLabel(line.caption);
        caption->setForegroundRole(QPalette::WindowText);
        m_captions.push_back(caption);
        grid->addWidget(caption, row, 0, Qt::AlignTrailing | Qt::AlignTop);
        grid->addWidget(makeValue(line), row, 1);
        m_lines.append(
            formatLocalized(localizedString("FORMAT_QUESTION_LINE_FMT"), { line.caption, line.value }));
    }
}

// Captions stand back behind the values, on the colour that is behind both.
void EraseSummary::colorCaptions()
{
    QPalette onBase = palette();
    for (const QPalette::ColorGroup group : { QPalette::Active, QPalette::Inactive, QPalette::Disabled }) {
        onBase.setColor(group, QPalette::WindowText, palette().color(group, QPalette::Text));
        onBase.setColor(group, QPalette::Window, palette().color(group, QPalette::Base));
    }
    QPalette quiet; // of this one colour
    quiet.setColor(QPalette::WindowText, ColorRules::quietText(onBase));
    for (QLabel *caption : m_captions)
        caption->setPalette(quiet);
}

void EraseSummary::changeEvent(QEvent *event)
{
    QScrollArea::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        colorCaptions();
    else if (event->type() == QEvent::FontChange && widget())
        layOut();
}

QSize EraseSummary::sizeHint() const
{
    const int frame = 2 * frameWidth();
    const QSize room = screen()->availableSize() / 2;
    const int width = std::clamp(
        widget()->minimumSizeHint().width(), units(usualWidth), std::max(room.width(), units(usualWidth)));
    const int height = widget()->layout()->totalHeightForWidth(width);
    return { width + frame, std::min(height, room.height()) + frame };
}

QSize EraseSummary::minimumSizeHint() const
{
    return sizeHint();
}
