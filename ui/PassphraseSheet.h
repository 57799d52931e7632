// SPDX-License-Identifier: MIT
//
// The question for a passphrase as a sheet of a window: modal to that window alone, shown without waiting. It
// deletes itself when it has ended, or when its window goes first. Main thread only.
#pragma once

#include "platform/Passphrase.h"

#include <QDialog>

#include <functional>
#include <optional>

class QLineEdit;

class PassphraseSheet : public QDialog
{
    Q_OBJECT

public:
    // The text says which volume the passphrase is for. A retry also says that the last one was wrong.
    PassphraseSheet(const QString &volumeText, bool isRetry);

    // Shows the sheet; didEnd is told the passphrase, or none when the user declines.
    void beginSheetModalForWindow(
        QWidget *window, std::function<void(std::optional<Passphrase> passphrase)> didEnd);

private:
    QLineEdit *m_field;
};
