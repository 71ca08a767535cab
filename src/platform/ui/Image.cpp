#include "platform/ui/Image.h"

#include "platform/foundation/Bundle.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImageReader>

namespace ZQTPlatform {

namespace {

// The EXIF orientation as Qt reports it, in the platform's numbering.
Image::Orientation orientationOf(QImageIOHandler::Transformations transformation)
{
    switch (int(transformation)) {
    case QImageIOHandler::TransformationMirror:           return Image::Orientation::UpMirrored;   // EXIF 2
    case QImageIOHandler::TransformationRotate180:        return Image::Orientation::Down;         // EXIF 3
    case QImageIOHandler::TransformationFlip:             return Image::Orientation::DownMirrored; // EXIF 4
    case QImageIOHandler::TransformationFlipAndRotate90:  return Image::Orientation::LeftMirrored; // EXIF 5
    case QImageIOHandler::TransformationRotate90:         return Image::Orientation::Right;        // EXIF 6
    case QImageIOHandler::TransformationMirrorAndRotate90:return Image::Orientation::RightMirrored;// EXIF 7
    case QImageIOHandler::TransformationRotate270:        return Image::Orientation::Left;         // EXIF 8
    default:                                              return Image::Orientation::Up;           // EXIF 1
    }
}

// Decodes without applying the EXIF rotation; vector images are rendered at their natural
// size times the scale so they are as sharp as a bitmap of that scale.
Image decode(QImageReader &reader, qreal scale)
{
    reader.setAutoTransform(false);
    const QByteArray format = reader.format();
    if (format == "svg" || format == "svgz") {
        const QSize natural = reader.size();
        if (natural.isValid())
            reader.setScaledSize((QSizeF(natural) * scale).toSize());
    }
    const Image::Orientation orientation = orientationOf(reader.transformation());
    const QImage bitmap = reader.read();
    if (bitmap.isNull())
        return Image();
    return Image(bitmap, scale, orientation);
}

// "icon@2x.png" is drawn at scale 2, "icon@3x.png" at scale 3, anything else at scale 1.
qreal scaleOfFileName(const QString &path)
{
    const QString base = QFileInfo(path).completeBaseName();
    if (base.endsWith(QLatin1String("@2x")))
        return 2.0;
    if (base.endsWith(QLatin1String("@3x")))
        return 3.0;
    return 1.0;
}

} // namespace

Image::Image(const QImage &bitmap, qreal scale, Orientation orientation)
    : m_bitmap(bitmap), m_scale(scale > 0 ? scale : 1.0), m_orientation(orientation)
{
}

Image Image::fromData(const QByteArray &data, qreal scale)
{
    QBuffer buffer;
    buffer.setData(data);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    return decode(reader, scale);
}

Image Image::imageWithContentsOfFile(const QString &path)
{
    if (path.isEmpty() || !QFileInfo(path).isFile())
        return Image();
    QImageReader reader(path);
    return decode(reader, scaleOfFileName(path));
}

Image Image::imageNamed(const QString &name)
{
    return imageNamed(name, Bundle::mainBundle());
}

Image Image::imageNamed(const QString &name, const Bundle &bundle)
{
    if (name.isEmpty() || bundle.isNull())
        return Image();
    if (!QFileInfo(name).suffix().isEmpty())
        return imageWithContentsOfFile(bundle.pathForResource(name, QString()));
    static const char *const candidates[] = {".png", "@2x.png", "@3x.png", ".jpg", ".svg"};
    for (const char *ending : candidates) {
        const Image image = imageWithContentsOfFile(bundle.pathForResource(name + QLatin1String(ending), QString()));
        if (!image.isNull())
            return image;
    }
    return Image();
}

QSizeF Image::size() const
{
    if (isNull())
        return QSizeF(0, 0);
    const QSizeF pixels = QSizeF(m_bitmap.size()) / m_scale;
    return swapsWidthAndHeight(m_orientation) ? pixels.transposed() : pixels;
}

bool Image::swapsWidthAndHeight(Orientation orientation)
{
    switch (orientation) {
    case Orientation::Left:
    case Orientation::Right:
    case Orientation::LeftMirrored:
    case Orientation::RightMirrored:
        return true;
    default:
        return false;
    }
}

QPixmap Image::uprightPixmap() const
{
    if (isNull())
        return QPixmap();
    QPixmap pixmap = QPixmap::fromImage(m_bitmap.transformed(uprightTransform()));
    pixmap.setDevicePixelRatio(m_scale);
    return pixmap;
}

QTransform Image::uprightTransform() const
{
    const qreal w = m_bitmap.width();
    const qreal h = m_bitmap.height();
    // QTransform(m11, m12, m21, m22, dx, dy): x' = m11 x + m21 y + dx, y' = m12 x + m22 y + dy.
    switch (m_orientation) {
    case Orientation::Up:            return QTransform();
    case Orientation::Down:          return QTransform(-1, 0, 0, -1, w, h); // half turn
    case Orientation::Left:          return QTransform(0, -1, 1, 0, 0, w);  // quarter turn anticlockwise
    case Orientation::Right:         return QTransform(0, 1, -1, 0, h, 0);  // quarter turn clockwise
    case Orientation::UpMirrored:    return QTransform(-1, 0, 0, 1, w, 0);  // left-right mirror
    case Orientation::DownMirrored:  return QTransform(1, 0, 0, -1, 0, h);  // top-bottom mirror
    case Orientation::LeftMirrored:  return QTransform(0, 1, 1, 0, 0, 0);   // mirror on the main diagonal
    case Orientation::RightMirrored: return QTransform(0, -1, -1, 0, h, w); // mirror on the other diagonal
    }
    return QTransform();
}

} // namespace ZQTPlatform
