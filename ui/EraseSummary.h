// SPDX-License-Identifier: MIT
//
// What is on a medium and, below a line, what will be there instead: captions and values in a frame. It is as
// wide as a sheet has room for; what is too high is scrolled. Main thread only.
#pragma once

#include <QScrollArea>
#include <QStringList>

#include <vector>

class QGridLayout;
class QLabel;

struct SummaryLine
{
    QString caption;
    QString value; // several lines where it is a list
    bool isBold = false;
};
using SummaryBlock = std::vector<SummaryLine>;

class EraseSummary : public QScrollArea
{
    Q_OBJECT

public:
    EraseSummary(const SummaryBlock &present, const SummaryBlock &future);

    // The lines as plain text, for a screen reader.
    QString text() const { return m_lines.join(u'\n'); }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void changeEvent(QEvent *event) override;

private:
    void addBlock(QGridLayout *grid, const SummaryBlock &block);
    void layOut();
    void colorCaptions();

    std::vector<QLabel *> m_captions;
    QStringList m_lines;
};
