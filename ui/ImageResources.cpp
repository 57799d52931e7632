// SPDX-License-Identifier: MIT
#include "ui/ImageResources.h"

#include <QFile>
#include <QPainter>
#include <QPixmapCache>

#include <algorithm>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int largestScale = 3;

// The rendering for this scale; Qt itself looks for a larger one only by the ratio of the first display.
QString imagePath(const QString &name, int scale)
{
    QString path = u":/images/"_s + name;
    if (scale > 1)
        path.insert(path.lastIndexOf(u'.'), u"@%1x"_s.arg(scale));
    return path;
}

} // namespace

std::optional<QPixmap> imageNamed(const QString &name, qreal devicePixelRatio)
{
    int scale = std::clamp(static_cast<int>(std::ceil(devicePixelRatio)), 1, largestScale);
    const QString key = imagePath(name, scale);
    QPixmap image;
    if (QPixmapCache::find(key, &image))
        return image;
    while (scale > 1 && !QFile::exists(imagePath(name, scale)))
        --scale;
    if (!image.load(imagePath(name, scale)))
        return std::nullopt;
    image.setDevicePixelRatio(scale);
    QPixmapCache::insert(key, image);
    return image;
}

void paintOver(QPixmap &drawing, const QColor &color)
{
    QPainter painter(&drawing);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(QRectF(QPointF(), drawing.deviceIndependentSize()), color);
}

std::optional<QPixmap> glyphNamed(const QString &name, const QColor &color, qreal devicePixelRatio)
{
    std::optional<QPixmap> glyph = imageNamed(name, devicePixelRatio);
    if (glyph)
        paintOver(*glyph, color);
    return glyph;
}
