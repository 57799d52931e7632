// SPDX-License-Identifier: MIT
#include "ui/UsageBar.h"

#include "ui/color_rules.h"
#include "ui/Units.h"

#include <QPainter>
#include <QPainterPath>
#include <QStyle>
#include <QTimerEvent>

#include <cmath>

namespace {

constexpr int barHeight = 10; // units
constexpr int leastWidth = 80; // units
constexpr int frameTime = 40; // milliseconds
constexpr int stepsOfARound = 80;
constexpr qreal movingShare = 0.28; // of the whole length

} // namespace

UsageBar::UsageBar(QWidget *parent)
    : QProgressBar(parent)
{
    setTextVisible(false);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void UsageBar::setState(State state)
{
    m_state = state;
    moveOrRest();
    update();
}

void UsageBar::showShare(int percentage)
{
    setRange(0, 100);
    setValue(percentage);
    setState(State::Share);
}

void UsageBar::showUnknown()
{
    setRange(0, 100);
    reset();
    setState(State::Unknown);
}

void UsageBar::showActivity()
{
    setRange(0, 0);
    setState(State::Activity);
}

void UsageBar::showProgress(std::optional<int> percentage)
{
    if (percentage)
        showShare(*percentage);
    else
        showActivity();
}

void UsageBar::moveOrRest()
{
    const bool moves = m_state == State::Activity && isVisible()
        && style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) > 0;
    if (!moves) {
        m_timer.stop();
        m_step = stepsOfARound / 4; // in the middle
    } else if (!m_timer.isActive()) {
        m_timer.start(frameTime, this);
    }
}

void UsageBar::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_timer.timerId()) {
        QProgressBar::timerEvent(event);
        return;
    }
    m_step = (m_step + 1) % stepsOfARound;
    update();
}

void UsageBar::showEvent(QShowEvent *event)
{
    QProgressBar::showEvent(event);
    moveOrRest();
}

void UsageBar::hideEvent(QHideEvent *event)
{
    QProgressBar::hideEvent(event);
    moveOrRest();
}

QSize UsageBar::sizeHint() const
{
    return { units(leastWidth), units(barHeight) };
}

// What stands beside it is cut only where there is no more room than this.
QSize UsageBar::minimumSizeHint() const
{
    return sizeHint();
}

QRectF UsageBar::filledPart(const QRectF &track) const
{
    QRectF part = track;
    if (m_state == State::Activity) {
        // To and fro.
        const qreal turn = std::abs(1 - 2.0 * m_step / stepsOfARound);
        part.setWidth(track.width() * movingShare);
        part.moveLeft(track.left() + (track.width() - part.width()) * turn);
    } else {
        part.setWidth(track.width() * value() / maximum());
        if (layoutDirection() == Qt::RightToLeft)
            part.moveRight(track.right());
    }
    return part;
}

void UsageBar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF frame = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    const qreal radius = frame.height() / 2;
    QPen line(ColorRules::border(palette()));
    if (m_state == State::Unknown) {
        line.setStyle(Qt::DashLine);
        painter.setPen(line);
        painter.drawRoundedRect(frame, radius, radius);
        return;
    }
    painter.setPen(line);
    painter.setBrush(ColorRules::track(palette()));
    painter.drawRoundedRect(frame, radius, radius);
    QPainterPath inside;
    inside.addRoundedRect(frame, radius, radius);
    painter.setClipPath(inside);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ColorRules::filled(palette()));
    // Only what moves has two round ends.
    const qreal roundness = m_state == State::Activity ? radius : 0;
    painter.drawRoundedRect(filledPart(frame), roundness, roundness);
}
