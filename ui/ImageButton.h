// SPDX-License-Identifier: MIT
//
// A push button with an image on either side of a text that is aligned within the button. The image is a
// drawing in one colour, and is painted in that of the text. Main thread only.
#pragma once

#include <QPushButton>

class ImageButton : public QPushButton
{
    Q_OBJECT

public:
    enum class ImagePosition { Left, Right };

    explicit ImageButton(QWidget *parent = nullptr);

    void setImagePosition(ImagePosition position);
    ImagePosition imagePosition() const { return m_imagePosition; }

    void setTextAlignment(Qt::Alignment alignment);
    Qt::Alignment textAlignment() const { return m_textAlignment; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    ImagePosition m_imagePosition = ImagePosition::Left;
    Qt::Alignment m_textAlignment = Qt::AlignCenter;
};
