// SPDX-License-Identifier: MIT
//
// Shows a tool's output as it grows. Left to right in every language, as the tools write it. Main thread
// only.
#pragma once

#include <QPlainTextEdit>

class OutputView : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit OutputView(QWidget *parent = nullptr);

    // Shows this output, decoded as UTF-8, or the end of it when it is very long. Only the part
    // that has changed is laid out. The view follows the end unless the user has scrolled up.
    void setOutput(const QByteArray &output);

protected:
    void changeEvent(QEvent *event) override;

private:
    void layOut();

    QByteArray m_output; // as it is shown
};
