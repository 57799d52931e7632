// SPDX-License-Identifier: MIT
//
// Asks how a whole disk is to be erased: file system, label and partition scheme. A sheet of its window,
// which deletes itself when it has ended. Main thread only.
#pragma once

#include "filesystems/disk_layout_rules.h"
#include "filesystems/format_menu_rules.h"

#include <QDialog>

#include <functional>
#include <optional>

class ElidingLabel;
class QComboBox;
class QLineEdit;

struct EraseDiskChoice
{
    FilesystemBundleRef filesystem; // null when the menu has none that fits
    QString label; // as it was typed
    PartitionScheme scheme = PartitionScheme::Gpt;
    QString filesystemTitle; // as the menus show them
    QString schemeTitle;
};

class EraseDiskSheet : public QDialog
{
    Q_OBJECT

public:
    // The name and the device say which disk it is.
    EraseDiskSheet(const QString &disk, const FormatMenuRules::FormatMenu &menu, PartitionScheme scheme);

    // Shows the sheet. didChoose is called when the user goes on, and never when they cancel. What
    // findObjectionToLabel returns is shown above the sheet, which stays open.
    void beginSheetModalForWindow(QWidget *window,
        std::function<std::optional<QString>(const EraseDiskChoice &choice)> findObjectionToLabel,
        std::function<void(const EraseDiskChoice &choice)> didChoose);

    EraseDiskChoice choice() const;

    // What to know about a file system stands below the label. remarkOn is asked again for each choice.
    void showRemarks(std::function<QString(const EraseDiskChoice &choice)> remarkOn);

    // Goes on, unless there is an objection to the label.
    void accept() override;

    // The controls.
    QComboBox *filesystemPopupButton = nullptr;
    QLineEdit *labelField = nullptr;
    QComboBox *schemePopupButton = nullptr;
    ElidingLabel *remarkLabel = nullptr;

private:
    void fillMenus(const FormatMenuRules::FormatMenu &menu, PartitionScheme scheme);

    std::function<std::optional<QString>(const EraseDiskChoice &choice)> m_findObjectionToLabel;
};
