// SPDX-License-Identifier: MIT
//
// An alert as a sheet of a window: modal to that window alone, shown without waiting. It deletes itself when
// it has ended, or when its window goes first. Main thread only.
#pragma once

#include <QMessageBox>

#include <functional>
#include <vector>

class AlertSheet : public QMessageBox
{
    Q_OBJECT

public:
    enum class Style : unsigned { Warning = 0, Informational = 1, Critical = 2 };

    // What the end of a sheet reports for its first button, and so on.
    static constexpr int firstButtonReturn = 1000;

    explicit AlertSheet(Style style);

    // Buttons are numbered in the order in which they are added. The last one is the Escape button.
    QPushButton *addButtonWithTitle(const QString &title);

    // Plain text, whatever it holds; very long texts are cut, and kept whole among the details.
    void setMessageText(const QString &text);
    void setInformativeText(const QString &text);

    // What stands below the informative text; the sheet owns it. Set before the sheet is shown. The text is
    // the same for a screen reader.
    void setAccessory(QWidget *accessory, const QString &text);
    QString accessoryText() const { return accessibleDescription(); }

    // The button with this return code.
    QPushButton *buttonForReturn(int returnCode) const;

    // The button that Return presses; the first one unless it is set.
    void setDefaultReturn(int returnCode);

    // Shows the sheet; didEnd is told the return code of the button that ended it.
    void beginSheetModalForWindow(QWidget *window, std::function<void(int returnCode)> didEnd);

protected:
    void changeEvent(QEvent *event) override;

private:
    void layOutButtons();
    void placeAccessory();
    void sharpenPicture();

    bool m_isLaidOut = false;
    QWidget *m_accessory = nullptr;
    std::vector<QPushButton *> m_buttons;
};
