// SPDX-License-Identifier: MIT
//
// Says what is running on the selected disk, and how far it has come when that is known. Takes no space while
// nothing runs. Main thread only.
#pragma once

#include <QWidget>

#include <optional>

class ElidingLabel;
class QProgressBar;

class OperationBar : public QWidget
{
    Q_OBJECT

public:
    explicit OperationBar(QWidget *parent = nullptr);

    // Shows the text, with a percentage of 0 to 100 or as an activity without one. An empty text hides the
    // bar.
    void setOperation(const QString &text, std::optional<int> percentage);

private:
    ElidingLabel *m_label;
    QProgressBar *m_bar;
};
