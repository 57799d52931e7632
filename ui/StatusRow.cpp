// SPDX-License-Identifier: MIT
#include "ui/StatusRow.h"

#include "platform/Localization.h"
#include "ui/color_rules.h"
#include "ui/ElidingLabel.h"
#include "ui/ImageResources.h"
#include "ui/QuietText.h"
#include "ui/Units.h"
#include "ui/UsageBar.h"

#include <QAccessible>
#include <QEvent>
#include <QHBoxLayout>
#include <QLocale>
#include <QPushButton>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int rowHeight = 30; // units, as all below
constexpr QSize leastButton { 80, 30 };

} // namespace

StatusRow::StatusRow(QWidget *parent)
    : QWidget(parent)
    , m_glyph(new QLabel(this))
    , m_text(new ElidingLabel(this))
    , m_bar(new UsageBar(this))
    , m_share(new QLabel(this))
    , m_time(new QLabel(this))
    , m_stop(new QPushButton(localizedString("STOP_BUTTON_TITLE"), this))
{
    m_text->setObjectName(u"statusText"_s);
    for (QLabel *label : { m_share, m_time }) {
        label->setTextFormat(Qt::PlainText);
        QuietText::apply(label);
    }
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_glyph);
    layout->addWidget(m_text);
    layout->addWidget(m_bar);
    layout->addWidget(m_share);
    layout->addWidget(m_time);
    layout->addWidget(m_stop);
    connect(m_stop, &QPushButton::clicked, this, &StatusRow::stopClicked);
    layOut();
    show(Kind::Hint, {}, {});
}

void StatusRow::layOut()
{
    layout()->setSpacing(units(8));
    m_stop->setMinimumSize(units(leastButton.width()), units(leastButton.height()));
    setMinimumHeight(std::max(units(rowHeight), 2 * fontMetrics().lineSpacing()));
}

void StatusRow::placeStopBehind(QWidget *widget)
{
    setTabOrder(widget, m_stop);
}

QString StatusRow::text() const
{
    return m_text->text();
}

void StatusRow::stop()
{
    if (m_stop->isVisible())
        m_stop->click();
}

void StatusRow::show(Kind kind, const QString &text, const QString &glyph)
{
    m_kind = kind;
    m_glyphName = glyph;
    m_text->setWordWrap(m_wraps && kind != Kind::Operation);
    // The bar has what a short sentence leaves of the row.
    const bool fillsRow = kind != Kind::Operation;
    m_text->setSizePolicy(fillsRow ? QSizePolicy::Ignored : QSizePolicy::Preferred, QSizePolicy::Preferred);
    qobject_cast<QBoxLayout *>(layout())->setStretchFactor(m_text, fillsRow ? 1 : 0);
    m_text->setText(text);
    m_glyph->setVisible(!glyph.isEmpty());
    m_bar->setVisible(kind == Kind::Operation);
    m_share->setVisible(kind == Kind::Operation && !m_share->text().isEmpty());
    m_time->setVisible(kind != Kind::Hint);
    m_stop->setVisible(kind == Kind::Operation && m_canBeStopped);
    if (kind != Kind::Verdict)
        setAccessibleName({});
    draw();
}

void StatusRow::showHint(const QString &text, const QString &glyph)
{
    show(Kind::Hint, text, glyph);
}

void StatusRow::showOperation(
    const QString &text, std::optional<int> percentage, std::chrono::seconds elapsed, bool canBeStopped)
{
    m_canBeStopped = canBeStopped;
    m_bar->showProgress(percentage);
    m_bar->setAccessibleName(text);
    m_share->setText(percentage
            ? formatLocalized(localizedString("PERCENT_FMT"), { QLocale().toString(*percentage) })
            : QString());
    m_time->setText(durationText(elapsed));
    show(Kind::Operation, text, {});
}

void StatusRow::showVerdict(const QString &text, const QString &glyph, const QString &when)
{
    m_time->setText(when);
    show(Kind::Verdict, text, glyph);
    // What has ended is told to a screen reader, wherever its user is.
    const QString told = text + localizedString("LIST_SEPARATOR_TEXT") + when;
    if (told == accessibleName())
        return;
    setAccessibleName(told);
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
    QAccessibleAnnouncementEvent announcement(this, told);
    QAccessible::updateAccessibility(&announcement);
#endif
}

// A hint is quiet, a verdict bold.
void StatusRow::draw()
{
    QPalette own;
    const QColor color
        = m_kind == Kind::Hint ? ColorRules::quietText(palette()) : palette().color(QPalette::WindowText);
    own.setColor(QPalette::WindowText, color);
    m_text->setPalette(own);
    QFont font;
    font.setBold(m_kind == Kind::Verdict);
    m_text->setFont(font);
    if (!m_glyphName.isEmpty())
        m_glyph->setPixmap(glyphNamed(m_glyphName, color, devicePixelRatio()).value_or(QPixmap()));
}

void StatusRow::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        layOut();
    if (event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange)
        draw();
}

QString StatusRow::durationText(std::chrono::seconds duration)
{
    const auto twoDigits = [](qint64 number) { return u"%1"_s.arg(number, 2, 10, QLatin1Char('0')); };
    const qint64 minutes = duration.count() / 60;
    const QString seconds = twoDigits(duration.count() % 60);
    return minutes < 60 ? u"%1:%2"_s.arg(minutes).arg(seconds)
                        : u"%1:%2:%3"_s.arg(minutes / 60).arg(twoDigits(minutes % 60), seconds);
}
