#include "platform/ui/ImageView.h"

#include "platform/ui/Storyboard.h"

#include <QElapsedTimer>
#include <QPainter>
#include <QPixmap>
#include <QTimer>

namespace ZQTPlatform {

namespace {

// The platform's pace for frames without a duration.
constexpr double defaultSecondsPerFrame = 1.0 / 30.0;

const bool registeredWithScenes = [] {
    Storyboard::registerWidgetClass(QStringLiteral("ImageView"), [](QWidget *parent) { return new ImageView(parent); });
    return true;
}();

} // namespace

struct ImageView::Private
{
    Image image;
    QPixmap imagePixmap;
    QList<Image> frames;
    QList<QPixmap> framePixmaps;
    double duration = 0.0;
    qsizetype frame = 0;
    QTimer timer;
    QElapsedTimer clock;
    qreal borderWidth = 0.0;
    QColor borderColor = Qt::black;
    // The picture shown, scaled once to where it is drawn: a large picture (a camera still) would
    // otherwise be scaled again at every paint.
    QPixmap fitted;
    qint64 fittedFrom = 0;

    double secondsPerFrame() const
    {
        return duration > 0.0 ? duration / double(frames.size()) : defaultSecondsPerFrame;
    }
};

ImageView::ImageView(QWidget *parent) : QWidget(parent), d(std::make_unique<Private>())
{
    Q_UNUSED(registeredWithScenes);
    d->timer.setTimerType(Qt::PreciseTimer);
    // GUI thread: the timer of this view.
    connect(&d->timer, &QTimer::timeout, this, &ImageView::advanceFrame);
}

ImageView::ImageView(const Image &image, QWidget *parent) : ImageView(parent)
{
    setImage(image);
    resize(sizeHint());
}

ImageView::~ImageView() = default;

Image ImageView::image() const
{
    return d->image;
}

void ImageView::setImage(const Image &image)
{
    d->image = image;
    d->imagePixmap = image.uprightPixmap();
    updateGeometry();
    update();
}

QList<Image> ImageView::animationImages() const
{
    return d->frames;
}

void ImageView::setAnimationImages(const QList<Image> &images)
{
    stopAnimating();
    d->frames = images;
    d->framePixmaps.clear();
    for (const Image &frame : images)
        d->framePixmaps.append(frame.uprightPixmap());
    updateGeometry();
}

double ImageView::animationDuration() const
{
    return d->duration;
}

void ImageView::setAnimationDuration(double seconds)
{
    d->duration = qMax(0.0, seconds);
    if (isAnimating())
        d->timer.setInterval(qMax(1, qRound(d->secondsPerFrame() * 1000.0)));
}

void ImageView::startAnimating()
{
    if (d->frames.isEmpty())
        return;
    d->frame = 0;
    d->clock.start();
    d->timer.start(qMax(1, qRound(d->secondsPerFrame() * 1000.0)));
    update();
}

void ImageView::stopAnimating()
{
    if (!isAnimating())
        return;
    d->timer.stop();
    update();
}

bool ImageView::isAnimating() const
{
    return d->timer.isActive();
}

Image ImageView::displayedImage() const
{
    return isAnimating() ? d->frames.at(d->frame) : d->image;
}

void ImageView::advanceFrame()
{
    // The frame follows the clock (to the nearest tick), so late ticks do not stretch the cycle.
    const double ticks = double(d->clock.elapsed()) / 1000.0 / d->secondsPerFrame();
    d->frame = qsizetype(ticks + 0.5) % d->frames.size();
    update();
}

qreal ImageView::borderWidth() const
{
    return d->borderWidth;
}

void ImageView::setBorderWidth(qreal width)
{
    d->borderWidth = qMax(0.0, width);
    update();
}

QColor ImageView::borderColor() const
{
    return d->borderColor;
}

void ImageView::setBorderColor(const QColor &color)
{
    d->borderColor = color;
    update();
}

QSize ImageView::sizeHint() const
{
    const Image shown = d->image.isNull() && !d->frames.isEmpty() ? d->frames.first() : d->image;
    return shown.size().toSize();
}

void ImageView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QPixmap &pixmap = isAnimating() ? d->framePixmaps.at(d->frame) : d->imagePixmap;
    if (!pixmap.isNull()) {
        const QSizeF fitted = QSizeF(pixmap.size()).scaled(QSizeF(size()), Qt::KeepAspectRatio);
        const QRectF target(QPointF((width() - fitted.width()) / 2.0, (height() - fitted.height()) / 2.0), fitted);
        const QSize pixels = (target.size() * devicePixelRatioF()).toSize();
        if (d->fittedFrom != pixmap.cacheKey() || d->fitted.size() != pixels) {
            d->fitted = pixmap.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
            d->fitted.setDevicePixelRatio(devicePixelRatioF());
            d->fittedFrom = pixmap.cacheKey();
        }
        painter.drawPixmap(target.topLeft(), d->fitted);
    }
    if (d->borderWidth > 0.0) {
        const qreal inset = d->borderWidth / 2.0;
        painter.setPen(QPen(d->borderColor, d->borderWidth));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset));
    }
}

} // namespace ZQTPlatform
