// SPDX-License-Identifier: MIT
//
// The volumes of a disk side by side, as wide as they are large. A click or Return chooses one, the arrow
// keys go from one to the next; a screen reader meets a list. Main thread only.
#pragma once

#include <QWidget>

#include <optional>
#include <vector>

class DiskMapPart;

class DiskMap : public QWidget
{
    Q_OBJECT

public:
    struct Part
    {
        // What is not listed is a partition without a row. Only a volume can be chosen.
        enum class Kind { Volume, NotListed, Unused };

        Kind kind = Kind::Volume;
        QString id; // of a volume
        QString name;
        QString size;
        QString toolTip;
        qint64 bytes = 0;
        bool isLocked = false;
        std::optional<int> used = {}; // per cent of a volume that tells

        friend bool operator==(const Part &, const Part &) = default;
    };

    explicit DiskMap(QWidget *parent = nullptr);

    // Replaces the parts. The focus, and the part that Tab reaches, stay with the volume.
    void setParts(const std::vector<Part> &parts);
    const std::vector<Part> &parts() const { return m_parts; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void partChosen(const QString &id);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    friend class DiskMapPart;

    void layOutParts();
    void haveTabReach(const DiskMapPart *part); // and no other; null for none
    void moveFocus(int step);

    std::vector<Part> m_parts;
    std::vector<DiskMapPart *> m_widgets;
};

// One of them. It belongs to its map.
class DiskMapPart : public QWidget
{
    Q_OBJECT

public:
    DiskMapPart(const DiskMap::Part &part, DiskMap *map);

    const DiskMap::Part &part() const { return m_part; }
    bool isVolume() const { return m_part.kind == DiskMap::Part::Kind::Volume; }
    void choose();

protected:
    void paintEvent(QPaintEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    void drawUnused(QPainter &painter) const;
    void drawTexts(QPainter &painter) const;
    void drawUsed(QPainter &painter) const;

    DiskMap::Part m_part;
    DiskMap *m_map;
};
