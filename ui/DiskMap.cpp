// SPDX-License-Identifier: MIT
#include "ui/DiskMap.h"

#include "ui/color_rules.h"
#include "ui/ImageResources.h"
#include "ui/ToolTips.h"
#include "ui/Units.h"

#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int mapHeight = 46; // units, as all below
constexpr int ringRoom = 3; // around the parts, for the frame of the one with the focus
constexpr int gap = 2;
constexpr int leastWidth = 12; // so that it can be hit
constexpr int textMargin = 7;
constexpr int stripHeight = 4;
constexpr qreal cornerRadius = 3;
constexpr qreal smallText = 11.0 / 13; // of the font's size

class PartInterface : public QAccessibleWidget
{
public:
    explicit PartInterface(DiskMapPart *part)
        : QAccessibleWidget(part, QAccessible::ListItem)
    {
    }

    // The arrow keys reach each volume, Tab only one of them.
    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.focusable = part().isVolume();
        return state;
    }

    QStringList actionNames() const override
    {
        return part().isVolume() ? QStringList { pressAction(), setFocusAction() } : QStringList();
    }

    void doAction(const QString &name) override
    {
        if (name == pressAction())
            part().choose();
        else
            QAccessibleWidget::doAction(name);
    }

private:
    DiskMapPart &part() const { return *static_cast<DiskMapPart *>(widget()); }
};

QAccessibleInterface *interfaceFor(const QString &, QObject *object)
{
    if (auto *part = qobject_cast<DiskMapPart *>(object))
        return new PartInterface(part);
    if (auto *map = qobject_cast<DiskMap *>(object))
        return new QAccessibleWidget(map, QAccessible::List);
    return nullptr;
}

} // namespace

DiskMap::DiskMap(QWidget *parent)
    : QWidget(parent)
{
    QAccessible::installFactory(&interfaceFor); // does nothing the second time
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFocusPolicy(Qt::StrongFocus); // for its place among the stops of Tab
}

void DiskMap::setParts(const std::vector<Part> &parts)
{
    if (parts == m_parts)
        return;
    const auto idWhere = [this](auto holds) {
        const auto found = std::find_if(m_widgets.begin(), m_widgets.end(), holds);
        return found == m_widgets.end() ? QString() : (*found)->part().id;
    };
    const QString focused = idWhere([](const DiskMapPart *widget) { return widget->hasFocus(); });
    const QString current
        = idWhere([](const DiskMapPart *widget) { return widget->focusPolicy() != Qt::NoFocus; });
    m_parts = parts;
    for (DiskMapPart *widget : std::exchange(m_widgets, {}))
        delete widget;
    // Qt gives a place only to what can have the focus, behind what can have it.
    setFocusPolicy(Qt::StrongFocus);
    QWidget *previous = this;
    for (const Part &part : m_parts) {
        m_widgets.push_back(new DiskMapPart(part, this));
        m_widgets.back()->show();
        m_widgets.back()->setFocusPolicy(Qt::StrongFocus);
        setTabOrder(previous, m_widgets.back());
        previous = m_widgets.back();
    }
    // Tab reaches one, the first at the beginning, and the arrow keys the others.
    DiskMapPart *reached = nullptr;
    for (DiskMapPart *widget : m_widgets) {
        if (widget->isVolume() && (!reached || widget->part().id == current))
            reached = widget;
    }
    setFocusPolicy(Qt::NoFocus);
    haveTabReach(reached);
    if (reached && !focused.isEmpty())
        reached->setFocus(Qt::OtherFocusReason);
    layOutParts();
}

void DiskMap::haveTabReach(const DiskMapPart *part)
{
    for (DiskMapPart *widget : m_widgets)
        widget->setFocusPolicy(widget == part ? Qt::StrongFocus : Qt::NoFocus);
}

QSize DiskMap::sizeHint() const
{
    return { units(200), units(mapHeight + 2 * ringRoom) };
}

QSize DiskMap::minimumSizeHint() const
{
    return { 0, sizeHint().height() };
}

void DiskMap::layOutParts()
{
    if (m_widgets.empty())
        return;
    const int count = static_cast<int>(m_widgets.size());
    const QRect room = rect().adjusted(units(ringRoom), units(ringRoom), -units(ringRoom), -units(ringRoom));
    qint64 bytes = 0;
    for (const Part &part : m_parts)
        bytes += part.bytes;
    const int free = std::max(room.width() - (count - 1) * units(gap) - count * units(leastWidth), 0);
    int position = 0;
    for (DiskMapPart *widget : m_widgets) {
        const double share
            = bytes > 0 ? static_cast<double>(widget->part().bytes) / static_cast<double>(bytes) : 0;
        const int width = units(leastWidth) + static_cast<int>(free * share);
        const int left = layoutDirection() == Qt::RightToLeft ? room.right() + 1 - position - width
                                                              : room.left() + position;
        widget->setGeometry(left, room.top(), width, room.height());
        position += width + units(gap);
    }
}

void DiskMap::resizeEvent(QResizeEvent *)
{
    layOutParts();
}

void DiskMap::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LayoutDirectionChange)
        layOutParts();
}

void DiskMap::paintEvent(QPaintEvent *)
{
    for (const DiskMapPart *widget : m_widgets) {
        if (!widget->hasFocus())
            continue;
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(palette().color(QPalette::WindowText), units(2)));
        const qreal room = units(2);
        painter.drawRoundedRect(QRectF(widget->geometry()).adjusted(-room, -room, room, room),
            units(cornerRadius + 1), units(cornerRadius + 1));
    }
}

void DiskMap::moveFocus(int step)
{
    const auto current = std::find_if(
        m_widgets.begin(), m_widgets.end(), [](const DiskMapPart *widget) { return widget->hasFocus(); });
    if (current == m_widgets.end())
        return;
    const auto count = static_cast<std::ptrdiff_t>(m_widgets.size());
    for (auto next = current - m_widgets.begin() + step; next >= 0 && next < count; next += step) {
        DiskMapPart *const widget = m_widgets[static_cast<std::size_t>(next)];
        if (!widget->isVolume())
            continue;
        widget->setFocus(Qt::OtherFocusReason);
        return;
    }
}

void DiskMap::keyPressEvent(QKeyEvent *event)
{
    const bool isMirrored = layoutDirection() == Qt::RightToLeft;
    if (event->key() == Qt::Key_Right)
        moveFocus(isMirrored ? -1 : 1);
    else if (event->key() == Qt::Key_Left)
        moveFocus(isMirrored ? 1 : -1);
    else
        QWidget::keyPressEvent(event);
}

DiskMapPart::DiskMapPart(const DiskMap::Part &part, DiskMap *map)
    : QWidget(map)
    , m_part(part)
    , m_map(map)
{
    setToolTip(plainToolTip(part.toolTip));
    setAccessibleName(part.toolTip);
    if (isVolume())
        setCursor(Qt::PointingHandCursor);
}

void DiskMapPart::choose()
{
    if (isVolume())
        Q_EMIT m_map->partChosen(m_part.id);
}

void DiskMapPart::drawUnused(QPainter &painter) const
{
    QPen line(ColorRules::border(palette()), 1, Qt::DashLine);
    painter.setPen(line);
    painter.setBrush(QBrush(ColorRules::border(palette()), Qt::BDiagPattern));
    painter.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
}

void DiskMapPart::drawTexts(QPainter &painter) const
{
    const int margin = units(textMargin);
    const QRect room = rect().adjusted(margin, units(4), -margin, -units(stripHeight + 3));
    QFont small = font();
    small.setPointSizeF(font().pointSizeF() * smallText);
    const QFontMetrics smallMetrics(small);
    const int glyphRoom = m_part.isLocked ? units(18) : 0;
    const bool hasRoom = std::max(fontMetrics().horizontalAdvance(m_part.name) + glyphRoom,
                             smallMetrics.horizontalAdvance(m_part.size))
        <= room.width();
    if (!hasRoom)
        return;
    const bool isMirrored = layoutDirection() == Qt::RightToLeft;
    const int side = isMirrored ? Qt::AlignRight : Qt::AlignLeft;
    painter.setPen(palette().color(QPalette::WindowText));
    if (m_part.isLocked) {
        const auto glyph
            = glyphNamed(u"state_locked.png"_s, palette().color(QPalette::WindowText), devicePixelRatio());
        const int left = isMirrored ? room.right() - units(15) : room.left() - units(2);
        if (glyph)
            painter.drawPixmap(left, room.top(), *glyph);
    }
    const QRect names = isMirrored ? room.adjusted(0, 0, -glyphRoom, 0) : room.adjusted(glyphRoom, 0, 0, 0);
    painter.drawText(names, side | Qt::AlignTop, m_part.name);
    painter.setFont(small);
    painter.drawText(room, side | Qt::AlignBottom, m_part.size);
}

void DiskMapPart::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (m_part.kind == DiskMap::Part::Kind::Unused) {
        drawUnused(painter);
        return;
    }
    if (m_part.kind == DiskMap::Part::Kind::NotListed) {
        painter.setPen(ColorRules::border(palette()));
        painter.setBrush(ColorRules::track(palette()));
        painter.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor filled = ColorRules::filled(palette());
    painter.setPen(filled);
    painter.setBrush(ColorRules::mix(filled, palette().color(QPalette::Window), 0.2));
    painter.drawRoundedRect(
        QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), units(cornerRadius), units(cornerRadius));
    drawUsed(painter);
    drawTexts(painter);
}

// A strip at the foot.
void DiskMapPart::drawUsed(QPainter &painter) const
{
    if (!m_part.used)
        return;
    const int margin = units(3);
    QRectF strip(margin, height() - margin - units(stripHeight), width() - 2 * margin, units(stripHeight));
    const qreal usedWidth = strip.width() * *m_part.used / 100;
    if (layoutDirection() == Qt::RightToLeft)
        strip.setLeft(strip.right() - usedWidth);
    else
        strip.setWidth(usedWidth);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ColorRules::filled(palette()));
    painter.drawRect(strip);
}

void DiskMapPart::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        choose();
}

void DiskMapPart::keyPressEvent(QKeyEvent *event)
{
    const int key = event->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space)
        choose();
    else
        QWidget::keyPressEvent(event);
}

void DiskMapPart::focusInEvent(QFocusEvent *event)
{
    QWidget::focusInEvent(event);
    m_map->haveTabReach(this);
    m_map->update();
}

void DiskMapPart::focusOutEvent(QFocusEvent *event)
{
    QWidget::focusOutEvent(event);
    m_map->update();
}
