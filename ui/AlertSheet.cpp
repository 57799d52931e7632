// SPDX-License-Identifier: MIT
#include "ui/AlertSheet.h"

#include "platform/Localization.h"
#include "ui/ImageResources.h"
#include "ui/Units.h"

#include <QDialogButtonBox>
#include <QEvent>
#include <QGridLayout>
#include <QIcon>
#include <QLabel>
#include <QPushButton>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

// More than this is no longer a message, and a label that is laid out for it would hold up the window.
constexpr qsizetype longestMessage = 1500;
constexpr qsizetype longestDetails = 200000;

constexpr int leastButtonHeight = 30; // units, as in the window

// In a message box, Qt's own.
const QString informativeLabelName = u"qt_msgbox_informativelabel"_s;

QString cut(const QString &text, qsizetype length)
{
    return text.size() > length ? QString(text.left(length) + QChar(0x2026)) : text;
}

QMessageBox::Icon iconOf(AlertSheet::Style style)
{
    switch (style) {
    case AlertSheet::Style::Informational:
        return QMessageBox::Information;
    case AlertSheet::Style::Critical:
        return QMessageBox::Critical;
    case AlertSheet::Style::Warning:
        break;
    }
    return QMessageBox::Warning;
}

QString pictureName(QMessageBox::Icon icon)
{
    switch (icon) {
    case QMessageBox::Information:
        return u"sheet_info.png"_s;
    case QMessageBox::Critical:
        return u"sheet_critical.png"_s;
    default:
        return u"sheet_warning.png"_s;
    }
}

} // namespace

AlertSheet::AlertSheet(Style style)
{
    setWindowTitle(localizedString("WINDOW_TITLE"));
    setIcon(iconOf(style));
    setTextFormat(Qt::PlainText);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
}

QPushButton *AlertSheet::addButtonWithTitle(const QString &title)
{
    // The first one does what is asked, the others decline. The platform decides on their places.
    QPushButton *const button = addButton(title, m_buttons.empty() ? AcceptRole : RejectRole);
    m_buttons.push_back(button);
    layOutButtons();
    setEscapeButton(button);
    return button;
}

void AlertSheet::layOutButtons()
{
    for (QPushButton *button : m_buttons)
        button->setMinimumHeight(units(leastButtonHeight));
}

void AlertSheet::setMessageText(const QString &text)
{
    setText(cut(text, longestMessage));
    if (auto *label = findChild<QLabel *>(u"qt_msgbox_label"_s)) {
        QFont bold = label->font();
        bold.setBold(true);
        label->setFont(bold);
    }
}

void AlertSheet::setInformativeText(const QString &text)
{
    QMessageBox::setInformativeText(cut(text, longestMessage));
    // The message box looks for markup in this label whatever the text format of the box is.
    if (auto *label = findChild<QLabel *>(informativeLabelName))
        label->setTextFormat(Qt::PlainText);
    if (text.size() > longestMessage)
        setDetailedText(cut(text, longestDetails));
}

void AlertSheet::setAccessory(QWidget *accessory, const QString &text)
{
    accessory->setParent(this);
    m_accessory = accessory;
    setAccessibleDescription(text);
}

// The message box has no place for it: between its texts and its buttons.
void AlertSheet::placeAccessory()
{
    auto *grid = qobject_cast<QGridLayout *>(layout());
    auto *text = findChild<QLabel *>(informativeLabelName);
    auto *buttons = findChild<QDialogButtonBox *>();
    if (!m_accessory || !grid || !text || !buttons)
        return;
    int row = 0;
    int column = 0;
    int rowSpan = 0;
    int columnSpan = 0;
    grid->getItemPosition(grid->indexOf(text), &row, &column, &rowSpan, &columnSpan);
    grid->removeWidget(buttons);
    grid->addWidget(m_accessory, row + 1, column);
    grid->setRowMinimumHeight(row + 2, grid->verticalSpacing());
    grid->addWidget(buttons, row + 3, 0, 1, grid->columnCount());
}

// Without an icon theme, the message box has a bitmap that is coarse on a fine screen.
void AlertSheet::sharpenPicture()
{
    auto *label = findChild<QLabel *>(u"qt_msgboxex_icon_label"_s);
    if (!label || QIcon::hasThemeIcon(u"dialog-warning"_s))
        return;
    const auto picture
        = glyphNamed(pictureName(icon()), palette().color(QPalette::WindowText), devicePixelRatio());
    if (picture)
        label->setPixmap(*picture);
}

QPushButton *AlertSheet::buttonForReturn(int returnCode) const
{
    return m_buttons.at(static_cast<std::size_t>(returnCode - firstButtonReturn));
}

void AlertSheet::setDefaultReturn(int returnCode)
{
    setDefaultButton(buttonForReturn(returnCode));
}

void AlertSheet::beginSheetModalForWindow(QWidget *window, std::function<void(int returnCode)> didEnd)
{
    setParent(window, Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint);
    setWindowModality(Qt::WindowModal);
    sharpenPicture();
    placeAccessory();
    m_isLaidOut = true;
    setAttribute(Qt::WA_DeleteOnClose);
    if (!defaultButton())
        setDefaultButton(m_buttons.front());
    connect(this, &QDialog::finished, this, [this, didEnd = std::move(didEnd)] {
        const auto clicked = std::find(m_buttons.begin(), m_buttons.end(), clickedButton());
        const auto index = clicked == m_buttons.end() ? m_buttons.size() - 1
                                                      : static_cast<std::size_t>(clicked - m_buttons.begin());
        didEnd(firstButtonReturn + static_cast<int>(index));
    });
    open();
}

void AlertSheet::changeEvent(QEvent *event)
{
    // For another style, a message box makes its layout once more, without what has been placed here.
    QDialog::changeEvent(event); // NOLINT(bugprone-parent-virtual-call)
    const QEvent::Type type = event->type();
    if (!m_isLaidOut)
        return;
    // The row of buttons then hides and shows them, and the one that gets the focus by this becomes the one
    // that Return presses.
    if (type == QEvent::StyleChange)
        QMetaObject::invokeMethod(this, [this] { setDefaultButton(defaultButton()); }, Qt::QueuedConnection);
    if (type == QEvent::FontChange)
        layOutButtons();
    if (type == QEvent::StyleChange || type == QEvent::FontChange || type == QEvent::PaletteChange)
        sharpenPicture();
}
