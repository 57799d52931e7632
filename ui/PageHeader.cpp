// SPDX-License-Identifier: MIT
#include "ui/PageHeader.h"

#include "ui/ElidingLabel.h"
#include "ui/QuietText.h"
#include "ui/Units.h"

#include <QEvent>
#include <QGridLayout>

namespace {

constexpr int pictureSize = 36; // units
constexpr int spacing = 12; // units, between picture and texts
constexpr qreal nameScale = 1.2; // of the font's size

} // namespace

PageHeader::PageHeader(QWidget *parent)
    : QWidget(parent)
    , m_picture(new QLabel(this))
    , m_name(new ElidingLabel(this))
    , m_details(new ElidingLabel(this))
{
    m_details->setObjectName("pageDetails");
    for (ElidingLabel *label : { m_name, m_details })
        label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    QFont bold;
    bold.setBold(true);
    m_name->setFont(bold);
    m_name->setFontScale(nameScale);
    QuietText::apply(m_details);

    auto *layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setHorizontalSpacing(units(spacing));
    layout->setVerticalSpacing(0);
    layout->addWidget(m_picture, 0, 0, 2, 1);
    layout->addWidget(m_name, 0, 1, Qt::AlignBottom);
    layout->addWidget(m_details, 1, 1, Qt::AlignTop);
    layout->setColumnStretch(1, 1);
}

void PageHeader::setMedium(const QPixmap &picture, const QString &name, const QString &details)
{
    const qreal ratio = picture.devicePixelRatio();
    const QSize size = QSize(units(pictureSize), units(pictureSize)) * ratio;
    m_picture->setPixmap(
        picture.isNull() ? QPixmap() : picture.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation));
    m_name->setText(name);
    m_details->setText(details);
}

void PageHeader::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        qobject_cast<QGridLayout *>(layout())->setHorizontalSpacing(units(spacing));
}
