// SPDX-License-Identifier: MIT
//
// Names the medium that a page acts on: its picture, its name, and one quiet line about it. Main thread only.
#pragma once

#include <QWidget>

class ElidingLabel;
class QLabel;

class PageHeader : public QWidget
{
    Q_OBJECT

public:
    explicit PageHeader(QWidget *parent = nullptr);

    // The picture is fitted into the header, as large as the text asks for at this time.
    void setMedium(const QPixmap &picture, const QString &name, const QString &details);

protected:
    void changeEvent(QEvent *event) override;

private:
    QLabel *m_picture;
    ElidingLabel *m_name;
    ElidingLabel *m_details;
};
