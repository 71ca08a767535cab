// The image value used across the component: a bitmap with its scale and one of the eight
// orientations (the bitmap is stored unrotated; the orientation says how to show it).
// The size is in points: bitmap pixels over scale, width and height swapped for the
// left/right orientations.
#pragma once

#include "ZQTGlobal.h"

#include <QImage>
#include <QPixmap>
#include <QSizeF>
#include <QString>
#include <QTransform>

namespace ZQTPlatform {

class Bundle;

class ZQT_EXPORT Image
{
public:
    // Numbered as the platform numbers its image orientations.
    enum class Orientation {
        Up = 0, Down = 1, Left = 2, Right = 3,
        UpMirrored = 4, DownMirrored = 5, LeftMirrored = 6, RightMirrored = 7
    };

    Image() = default; // the null image (no image)
    explicit Image(const QImage &bitmap, qreal scale = 1.0, Orientation orientation = Orientation::Up);

    // Decodes encoded image data (JPEG, PNG, SVG ...). The EXIF orientation becomes the image's
    // orientation; the pixels are not rotated. Null when the data is not an image.
    static Image fromData(const QByteArray &data, qreal scale = 1.0);
    // Reads an image file; a name ending in "@2x" or "@3x" before the extension sets the scale.
    static Image imageWithContentsOfFile(const QString &path);
    // The application's image lookup: an image of that name in the main bundle.
    static Image imageNamed(const QString &name);
    // An image of that name in the given bundle. The name may carry an extension or sub-folders;
    // without an extension "<name>.png", "<name>@2x.png", "<name>@3x.png", "<name>.jpg" and
    // "<name>.svg" are tried in that order.
    static Image imageNamed(const QString &name, const Bundle &bundle);

    bool isNull() const { return m_bitmap.isNull(); }
    QImage bitmap() const { return m_bitmap; }
    qreal scale() const { return m_scale; }
    Orientation imageOrientation() const { return m_orientation; }
    QSizeF size() const;

    // True for the orientations shown turned by a quarter (left, right and their mirrors): the
    // width shown is the bitmap's height.
    static bool swapsWidthAndHeight(Orientation orientation);
    // Maps bitmap pixel coordinates to those of the picture as shown (upright, same pixels).
    QTransform uprightTransform() const;
    // The picture as shown (upright) for painting, its scale as the device pixel ratio; null for
    // the null image. GUI thread only, as every pixmap.
    QPixmap uprightPixmap() const;

private:
    QImage m_bitmap;
    qreal m_scale = 1.0;
    Orientation m_orientation = Orientation::Up;
};

} // namespace ZQTPlatform
