// SPDX-License-Identifier: MIT
//
// A quiet line of text with a glyph before it, in one colour. Main thread only.
#pragma once

#include <QWidget>

class ElidingLabel;
class QLabel;

class GlyphLabel : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(bool wordWrap READ wordWrap WRITE setWordWrap)

public:
    explicit GlyphLabel(QWidget *parent = nullptr);

    QString text() const;
    // An empty text hides the line. The glyph is the name of a drawing; empty for none.
    void setText(const QString &text, const QString &glyph = {});

    bool wordWrap() const;
    void setWordWrap(bool wraps);

    void setAlignment(Qt::Alignment alignment);

protected:
    void changeEvent(QEvent *event) override;

private:
    void layOut();
    void drawGlyph();

    QLabel *m_glyph;
    ElidingLabel *m_label;
    QString m_glyphName;
};
