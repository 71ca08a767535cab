// A drawing surface that becomes an image: the stand-in for the platform's bitmap contexts.
// Usable on any thread. User coordinates are points, the bitmap has points x scale pixels.
#pragma once

#include "ZQTGlobal.h"
#include "platform/ui/Image.h"

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QRectF>
#include <QSizeF>

namespace ZQTPlatform {

class ZQT_EXPORT ImageContext
{
public:
    // An image context: origin at the top left, y growing downwards, size in points, the bitmap
    // rounded up to whole pixels. An opaque context has no alpha and starts black, any other
    // starts transparent.
    ImageContext(const QSizeF &size, bool opaque, qreal scale);
    // A raw bitmap context of exactly these pixels at scale 1, in the pixel format and colour
    // space of `formatOf` (a 32-bit format instead where that one cannot be painted on). Its
    // origin is at the bottom left, y growing upwards.
    ImageContext(const QSize &pixels, const QImage &formatOf);
    ~ImageContext();

    ImageContext(const ImageContext &) = delete;
    ImageContext &operator=(const ImageContext &) = delete;

    // False when no bitmap could be made (an empty or too large size); nothing is drawn then.
    bool isValid() const { return m_painter.isActive(); }
    // Its transform, clip and hints start from the context's coordinate system; translate(),
    // scale() and setWorldTransform(t, true) apply to what is drawn after, as the platform's
    // current-transform operations do.
    QPainter &painter() { return m_painter; }

    // Draws a bare bitmap the way the platform draws one into a rectangle: its first row at the
    // rectangle's larger y (upright in a raw bitmap context, upside down in an image context).
    void drawBitmap(const QImage &bitmap, const QRectF &rect);
    // Draws an image as it is shown (its orientation applied), stretched over the rectangle with
    // its top at the rectangle's smaller y.
    void drawImage(const Image &image, const QRectF &rect);

    // Ends drawing and gives the picture: the context's scale, orientation up. Null when the
    // context is not valid.
    Image takeImage();

private:
    void begin(qreal scale);

    QImage m_bitmap;
    QPainter m_painter;
    qreal m_scale = 1.0;
};

// The image drawn as a template: only its alpha counts, the colour fills what it covers. Upright,
// at the image's scale; null for a null image.
ZQT_EXPORT Image templateImage(const Image &image, const QColor &color);

} // namespace ZQTPlatform
