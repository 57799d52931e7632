// SPDX-License-Identifier: MIT
#include "ui/ImageButton.h"

#include "ui/FocusFrame.h"
#include "ui/ImageResources.h"

#include <QStyleOptionButton>
#include <QStylePainter>

#include <algorithm>

namespace {

constexpr int spacing = 6; // between image and text
constexpr int padding = 6; // between content and the button's edge

} // namespace

ImageButton::ImageButton(QWidget *parent)
    : QPushButton(parent)
{
}

void ImageButton::setImagePosition(ImagePosition position)
{
    m_imagePosition = position;
    update();
}

void ImageButton::setTextAlignment(Qt::Alignment alignment)
{
    m_textAlignment = alignment;
    update();
}

QSize ImageButton::sizeHint() const
{
    return QPushButton::sizeHint() + QSize(spacing + 2 * padding, 0);
}

void ImageButton::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    painter.drawControl(QStyle::CE_PushButtonBevel, option);
    const int mnemonic = style()->styleHint(QStyle::SH_UnderlineShortcut, &option, this)
        ? Qt::TextShowMnemonic
        : Qt::TextHideMnemonic;

    QRect content = style()->subElementRect(QStyle::SE_PushButtonContents, &option, this);
    content.adjust(padding, 0, -padding, 0);
    const bool onLeft = m_imagePosition == ImagePosition::Left;
    if (!icon().isNull()) {
        const QSize size = iconSize();
        const int textWidth = option.fontMetrics.size(mnemonic, text()).width();
        const int groupWidth = std::min(content.width(), size.width() + spacing + textWidth);
        if (m_textAlignment.testFlag(Qt::AlignHCenter))
            content = QStyle::alignedRect(
                Qt::LeftToRight, Qt::AlignCenter, QSize(groupWidth, content.height()), content);
        QRect imageRect(QPoint(), size);
        imageRect.moveCenter(content.center());
        imageRect.moveLeft(onLeft ? content.left() : content.right() - size.width() + 1);
        QPixmap image = icon().pixmap(size, devicePixelRatio());
        paintOver(image, option.palette.color(QPalette::ButtonText));
        const QSize shown = image.deviceIndependentSize().toSize();
        painter.drawPixmap(
            QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, shown, imageRect).topLeft(), image);
        content.adjust(onLeft ? size.width() + spacing : 0, 0, onLeft ? 0 : -size.width() - spacing, 0);
    }
    const Qt::Alignment horizontal
        = m_textAlignment.testFlag(Qt::AlignHCenter) && !icon().isNull() ? Qt::AlignLeft : m_textAlignment;
    painter.drawItemText(content,
        static_cast<int>((horizontal & Qt::AlignHorizontal_Mask) | Qt::AlignVCenter | Qt::AlignAbsolute)
            | mnemonic,
        option.palette, isEnabled(), text(), QPalette::ButtonText);
    if (option.state.testFlag(QStyle::State_HasFocus))
        drawFocusFrame(
            painter, *this, style()->subElementRect(QStyle::SE_PushButtonFocusRect, &option, this));
}
