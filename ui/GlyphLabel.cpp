// SPDX-License-Identifier: MIT
#include "ui/GlyphLabel.h"

#include "ui/color_rules.h"
#include "ui/ElidingLabel.h"
#include "ui/ImageResources.h"
#include "ui/QuietText.h"
#include "ui/Units.h"

#include <QEvent>
#include <QHBoxLayout>

GlyphLabel::GlyphLabel(QWidget *parent)
    : QWidget(parent)
    , m_glyph(new QLabel(this))
    , m_label(new ElidingLabel(this))
{
    m_label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_glyph->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    QuietText::apply(m_label);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_glyph, 0, Qt::AlignTop);
    layout->addWidget(m_label, 1);
    layOut();
}

QString GlyphLabel::text() const
{
    return m_label->text();
}

void GlyphLabel::setText(const QString &text, const QString &glyph)
{
    m_label->setText(text);
    m_glyphName = glyph;
    drawGlyph();
    setVisible(!text.isEmpty());
}

bool GlyphLabel::wordWrap() const
{
    return m_label->wordWrap();
}

void GlyphLabel::setWordWrap(bool wraps)
{
    m_label->setWordWrap(wraps);
}

void GlyphLabel::setAlignment(Qt::Alignment alignment)
{
    m_label->setAlignment(alignment);
}

// In the size of the text.
void GlyphLabel::layOut()
{
    layout()->setSpacing(units(6));
    drawGlyph();
}

void GlyphLabel::drawGlyph()
{
    m_glyph->setVisible(!m_glyphName.isEmpty());
    if (!m_glyphName.isEmpty())
        m_glyph->setPixmap(glyphNamed(m_glyphName, ColorRules::quietText(palette()), devicePixelRatio())
                .value_or(QPixmap()));
}

void GlyphLabel::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        drawGlyph();
    else if (event->type() == QEvent::FontChange)
        layOut();
}
