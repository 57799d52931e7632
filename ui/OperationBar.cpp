// SPDX-License-Identifier: MIT
#include "ui/OperationBar.h"

#include "ui/ElidingLabel.h"

#include <QHBoxLayout>
#include <QProgressBar>

OperationBar::OperationBar(QWidget *parent)
    : QWidget(parent)
    , m_label(new ElidingLabel(this))
    , m_bar(new QProgressBar(this))
{
    m_label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_bar->setTextVisible(true);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_label, 1);
    layout->addWidget(m_bar, 1);
    hide();
}

void OperationBar::setOperation(const QString &text, std::optional<int> percentage)
{
    m_label->setText(text);
    m_bar->setAccessibleName(text);
    m_bar->setRange(0, percentage ? 100 : 0);
    if (percentage)
        m_bar->setValue(*percentage);
    setVisible(!text.isEmpty());
}
