// SPDX-License-Identifier: MIT
#include "ui/EraseDiskSheet.h"

#include "platform/Localization.h"
#include "ui/AlertSheet.h"
#include "ui/ElidingLabel.h"
#include "ui/FormatMenuDelegate.h"
#include "ui/QuietText.h"
#include "ui/Units.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int margin = 18; // units, as all below
constexpr QSize leastButton { 80, 30 };

} // namespace

EraseDiskSheet::EraseDiskSheet(
    const QString &disk, const FormatMenuRules::FormatMenu &menu, PartitionScheme scheme)
    : filesystemPopupButton(new QComboBox(this))
    , labelField(new QLineEdit(this))
    , schemePopupButton(new QComboBox(this))
    , remarkLabel(new ElidingLabel(this))
{
    setWindowTitle(localizedString("WINDOW_TITLE"));
    auto *heading = new QLabel(localizedString("ERASE_DISK_SHEET_TITLE"), this);
    QFont bold;
    bold.setBold(true);
    heading->setFont(bold);
    auto *name = new QLabel(disk, this);
    name->setTextFormat(Qt::PlainText);
    name->setObjectName(u"diskName"_s);
    name->setWordWrap(true);
    // Below its heading, whatever the direction of the name itself is.
    name->setAlignment(Qt::AlignAbsolute | Qt::AlignVCenter
        | (QGuiApplication::layoutDirection() == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft));
    setAccessibleDescription(heading->text() + localizedString("LIST_SEPARATOR_TEXT") + disk);
    fillMenus(menu, scheme);

    auto *buttons = new QDialogButtonBox(this);
    QPushButton *const goOn = buttons->addButton(
        localizedString("ERASE_DISK_CONTINUE_BUTTON_TEXT"), QDialogButtonBox::AcceptRole);
    buttons->addButton(
        localizedString("CONFIRM_FORMAT_DIALOG_CANCEL_BUTTON_TEXT"), QDialogButtonBox::RejectRole);
    goOn->setDefault(true); // the question follows
    goOn->setEnabled(filesystemPopupButton->currentIndex() >= 0);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    for (QAbstractButton *button : buttons->buttons())
        button->setMinimumSize(units(leastButton.width()), units(leastButton.height()));
    labelField->setPlaceholderText(localizedString("LABEL_PLACEHOLDER_TEXT"));
    remarkLabel->setWordWrap(true);
    QuietText::apply(remarkLabel);
    auto *layout = new QFormLayout(this);
    const int room = units(margin);
    layout->setContentsMargins(room, room, room, room);
    layout->setHorizontalSpacing(units(12));
    layout->setVerticalSpacing(units(8));
    layout->addRow(heading);
    layout->addRow(name);
    layout->addRow(localizedString("FORMAT_FILESYSTEM_CAPTION"), filesystemPopupButton);
    layout->addRow(localizedString("FORMAT_LABEL_CAPTION"), labelField);
    layout->addRow(QString(), remarkLabel);
    layout->addRow(localizedString("ERASE_DISK_SCHEME_CAPTION"), schemePopupButton);
    layout->addRow(buttons);
    layout->setLabelAlignment(Qt::AlignRight | Qt::AlignTrailing | Qt::AlignVCenter);
    for (QWidget *field : { static_cast<QWidget *>(filesystemPopupButton), static_cast<QWidget *>(labelField),
             static_cast<QWidget *>(schemePopupButton) }) {
        // A form puts a caption that is much lower than its field at the field's top.
        for (QWidget *widget : { field, layout->labelForField(field) })
            widget->setMinimumHeight(units(leastButton.height()));
    }
}

void EraseDiskSheet::fillMenus(const FormatMenuRules::FormatMenu &menu, PartitionScheme scheme)
{
    FormatMenuDelegate::install(filesystemPopupButton);
    for (const FormatMenuRules::FormatMenuItem &item : menu.items) {
        filesystemPopupButton->addItem(item.title, QVariant::fromValue(item.record));
        FormatMenuDelegate::enableItem(
            *filesystemPopupButton, filesystemPopupButton->count() - 1, item.reason);
    }
    const auto first = std::find_if(menu.items.begin(), menu.items.end(),
        [](const FormatMenuRules::FormatMenuItem &item) { return item.isEnabled(); });
    const int firstEnabled = first == menu.items.end() ? -1 : static_cast<int>(first - menu.items.begin());
    filesystemPopupButton->setCurrentIndex(menu.selectedIndex >= 0 ? menu.selectedIndex : firstEnabled);

    // Names of standards, the same in every language.
    schemePopupButton->addItem(u"Master Boot Record (MBR)"_s, static_cast<int>(PartitionScheme::Mbr));
    schemePopupButton->addItem(u"GUID Partition Table (GPT)"_s, static_cast<int>(PartitionScheme::Gpt));
    schemePopupButton->setCurrentIndex(schemePopupButton->findData(static_cast<int>(scheme)));
}

EraseDiskChoice EraseDiskSheet::choice() const
{
    return { filesystemPopupButton->currentData().value<FilesystemBundleRef>(), labelField->text(),
        static_cast<PartitionScheme>(schemePopupButton->currentData().toInt()),
        filesystemPopupButton->currentText(), schemePopupButton->currentText() };
}

void EraseDiskSheet::showRemarks(std::function<QString(const EraseDiskChoice &choice)> remarkOn)
{
    const auto show = [this, remarkOn = std::move(remarkOn)] {
        const QString remark = remarkOn(choice());
        remarkLabel->setText(remark);
        labelField->setAccessibleDescription(remark);
    };
    connect(filesystemPopupButton, &QComboBox::currentIndexChanged, this, show);
    show();
}

void EraseDiskSheet::accept()
{
    const std::optional<QString> objection = m_findObjectionToLabel(choice());
    if (!objection) {
        QDialog::accept();
        return;
    }
    auto *alert = new AlertSheet(AlertSheet::Style::Warning);
    alert->addButtonWithTitle(u"OK"_s);
    alert->setMessageText(localizedString("INVALID_VOLUME_LABEL_TEXT"));
    alert->setInformativeText(*objection);
    alert->beginSheetModalForWindow(this, [this](int) { labelField->setFocus(); });
}

void EraseDiskSheet::beginSheetModalForWindow(QWidget *window,
    std::function<std::optional<QString>(const EraseDiskChoice &choice)> findObjectionToLabel,
    std::function<void(const EraseDiskChoice &choice)> didChoose)
{
    m_findObjectionToLabel = std::move(findObjectionToLabel);
    setParent(window, Qt::Dialog);
    setWindowModality(Qt::WindowModal);
    setAttribute(Qt::WA_DeleteOnClose);
    connect(
        this, &QDialog::accepted, this, [this, didChoose = std::move(didChoose)] { didChoose(choice()); });
    open();
}
