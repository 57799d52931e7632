// SPDX-License-Identifier: MIT
//
// The one line of a page that is never empty: what can be done, then what runs and how far it is, then how it
// ended. Always of the same height, so that nothing below it moves. Main thread only.
#pragma once

#include <QWidget>

#include <chrono>
#include <optional>

class ElidingLabel;
class QLabel;
class QPushButton;
class UsageBar;

class StatusRow : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(bool wraps READ wraps WRITE setWraps)

public:
    explicit StatusRow(QWidget *parent = nullptr);

    // Each replaces what was shown. A glyph is the name of a drawing; empty for none.
    void showHint(const QString &text, const QString &glyph);
    // With a percentage from 0 to 100, or as an activity without one. One that can be stopped has a button
    // for it.
    void showOperation(
        const QString &text, std::optional<int> percentage, std::chrono::seconds elapsed, bool canBeStopped);
    void showVerdict(const QString &text, const QString &glyph, const QString &when);

    // Whether a hint or a verdict may take a second line. One that holds a whole name may not: names have any
    // length.
    bool wraps() const { return m_wraps; }
    void setWraps(bool wraps) { m_wraps = wraps; }

    // Presses the button that stops the operation, where it is shown.
    void stop();

    // Has Tab reach that button behind the widget.
    void placeStopBehind(QWidget *widget);

    QString text() const;
    bool showsOperation() const { return m_kind == Kind::Operation; }

    // Minutes and seconds, such as 1:05, after the hours where there are any.
    static QString durationText(std::chrono::seconds duration);

Q_SIGNALS:
    void stopClicked();

protected:
    void changeEvent(QEvent *event) override;

private:
    enum class Kind { Hint, Operation, Verdict };

    void show(Kind kind, const QString &text, const QString &glyph);
    void layOut();
    void draw();

    Kind m_kind = Kind::Hint;
    bool m_wraps = false;
    bool m_canBeStopped = false;
    QString m_glyphName;
    QLabel *m_glyph;
    ElidingLabel *m_text;
    UsageBar *m_bar;
    QLabel *m_share;
    QLabel *m_time;
    QPushButton *m_stop;
};
