// SPDX-License-Identifier: MIT
#include "ui/PassphraseSheet.h"

#include "platform/Localization.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int leastFieldWidth = 320;

QLabel *makeLabel(const QString &text, const QString &name)
{
    auto *label = new QLabel(text);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

} // namespace

PassphraseSheet::PassphraseSheet(const QString &volumeText, bool isRetry)
    : m_field(new QLineEdit)
{
    const QString title = localizedString("UNLOCK_DIALOG_TITLE");
    setWindowTitle(localizedString("WINDOW_TITLE"));
    QLabel *const heading = makeLabel(title, u"titleLabel"_s);
    QFont bold = heading->font();
    bold.setBold(true);
    heading->setFont(bold);

    m_field->setObjectName(u"passphraseField"_s);
    m_field->setEchoMode(QLineEdit::Password);
    m_field->setMinimumWidth(leastFieldWidth);
    m_field->setAccessibleName(localizedString("PASSPHRASE_ACCESSIBLE_NAME"));

    auto *buttons = new QDialogButtonBox;
    QPushButton *const unlock
        = buttons->addButton(localizedString("UNLOCK_BUTTON_TITLE"), QDialogButtonBox::AcceptRole);
    buttons->addButton(localizedString("CANCEL_UNLOCK_BUTTON_TITLE"), QDialogButtonBox::RejectRole);
    unlock->setDefault(true);
    unlock->setEnabled(false);
    connect(m_field, &QLineEdit::textChanged, unlock,
        [unlock](const QString &text) { unlock->setEnabled(!text.isEmpty()); });
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(heading);
    layout->addWidget(makeLabel(volumeText, u"volumeLabel"_s));
    layout->addWidget(m_field);
    if (isRetry) {
        const QString wrong = localizedString("WRONG_PASSPHRASE_TEXT");
        layout->addWidget(makeLabel(wrong, u"wrongPassphraseLabel"_s));
        m_field->setAccessibleDescription(wrong);
    }
    layout->addWidget(buttons);
    m_field->setFocus();
}

void PassphraseSheet::beginSheetModalForWindow(
    QWidget *window, std::function<void(std::optional<Passphrase> passphrase)> didEnd)
{
    setParent(window, Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint);
    setWindowModality(Qt::WindowModal);
    setAttribute(Qt::WA_DeleteOnClose);
    connect(this, &QDialog::finished, this, [this, didEnd = std::move(didEnd)](int result) {
        // The field and the passphrase share the memory, which is overwritten at the end of this.
        Passphrase typed(m_field->text());
        if (result == QDialog::Accepted)
            didEnd(std::move(typed));
        else
            didEnd(std::nullopt);
    });
    open();
}
