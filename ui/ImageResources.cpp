// SPDX-License-Identifier: MIT
#include "ui/ImageResources.h"

#include <QFile>
#include <QPixmapCache>

using namespace Qt::Literals::StringLiterals;

std::optional<QPixmap> imageNamed(const QString &name, qreal devicePixelRatio)
{
    const bool isSharp = devicePixelRatio > 1;
    const QString key = name + (isSharp ? u"@2x" : u"@1x");
    QPixmap image;
    if (QPixmapCache::find(key, &image))
        return image;
    QString path = u":/images/"_s + name;
    const qsizetype suffix = path.lastIndexOf(u'.');
    // Qt itself looks for the larger picture only by the ratio of the first display.
    const QString largePath = path.left(suffix) + "@2x"_L1 + path.mid(suffix);
    if (isSharp && QFile::exists(largePath))
        path = largePath;
    if (!image.load(path))
        return std::nullopt;
    if (path == largePath)
        image.setDevicePixelRatio(2);
    else
        image.setDevicePixelRatio(1);
    QPixmapCache::insert(key, image);
    return image;
}
