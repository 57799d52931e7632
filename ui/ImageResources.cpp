// SPDX-License-Identifier: MIT
#include "ui/ImageResources.h"

#include "ui/Units.h"

#include <QFile>
#include <QPainter>
#include <QPixmapCache>

#include <algorithm>
#include <array>
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

// Pictures come in a few sizes, which are sharp. The one that is nearest to the text's is taken.
qreal pictureScale()
{
    constexpr std::array scales { 1.0, 1.25, 1.5, 2.0 };
    const qreal text = textScale();
    return *std::min_element(scales.begin(), scales.end(),
        [text](qreal one, qreal other) { return std::abs(one - text) < std::abs(other - text); });
}

} // namespace

std::optional<QPixmap> imageNamed(const QString &name, qreal devicePixelRatio)
{
    const qreal enlargement = pictureScale() * devicePixelRatio;
    const QString key = u"%1@%2@%3"_s.arg(name).arg(enlargement).arg(devicePixelRatio);
    QPixmap image;
    if (QPixmapCache::find(key, &image))
        return image;
    int scale = std::clamp(static_cast<int>(std::ceil(enlargement)), 1, largestScale);
    while (scale > 1 && !QFile::exists(imagePath(name, scale)))
        --scale;
    if (!image.load(imagePath(name, scale)))
        return std::nullopt;
    const QSize size = (QSizeF(image.size()) * enlargement / scale).toSize();
    if (size != image.size())
        image = image.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    image.setDevicePixelRatio(devicePixelRatio);
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
