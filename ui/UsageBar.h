// SPDX-License-Identifier: MIT
//
// A thin bar: how full a volume is, that this is not known, or how far an operation has come. A screen reader
// meets a progress bar. Main thread only.
#pragma once

#include <QBasicTimer>
#include <QProgressBar>

#include <optional>

class UsageBar : public QProgressBar
{
    Q_OBJECT

public:
    explicit UsageBar(QWidget *parent = nullptr);

    // A share from 0 to 100.
    void showShare(int percentage);
    // A broken outline: nothing is known yet.
    void showUnknown();
    // An operation of which nobody knows how long it takes. It moves unless the style does without
    // animations.
    void showActivity();
    // The one or the other.
    void showProgress(std::optional<int> percentage);

    bool isUnknown() const { return m_state == State::Unknown; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    enum class State { Share, Unknown, Activity };

    void setState(State state);
    void moveOrRest();
    QRectF filledPart(const QRectF &track) const;

    State m_state = State::Unknown;
    QBasicTimer m_timer;
    int m_step = 0;
};
