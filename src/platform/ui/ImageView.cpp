#include "platform/ui/ImageView.h"

#include "platform/foundation/Dispatch.h"
#include "platform/ui/Storyboard.h"

#include <QElapsedTimer>
#include <QFutureWatcher>
#include <QPainter>
#include <QPixmap>
#include <QPromise>
#include <QTimer>

#include <vector>

namespace ZQTPlatform {

namespace {

// The platform's pace for frames without a duration.
constexpr double defaultSecondsPerFrame = 1.0 / 30.0;

const bool registeredWithScenes = [] {
    Storyboard::registerWidgetClass(QStringLiteral("ImageView"), [](QWidget *parent) { return new ImageView(parent); });
    return true;
}();

// The source upright at `pixels` device pixels, smoothly scaled (any thread). It is scaled before it
// is turned, so that the turn moves the fewest pixels.
QImage fittedPicture(const Image &source, const QSize &pixels)
{
    const QSize unturned = Image::swapsWidthAndHeight(source.imageOrientation()) ? pixels.transposed() : pixels;
    const Image scaled(source.bitmap().scaled(unturned, Qt::IgnoreAspectRatio, Qt::SmoothTransformation),
                       source.scale(), source.imageOrientation());
    return scaled.bitmap().transformed(scaled.uprightTransform());
}

// Draws the source upright into the target without smoothing: cheap at any size of the source.
void drawUnsmoothed(QPainter &painter, const Image &source, const QRectF &target)
{
    const QImage bitmap = source.bitmap();
    const QSizeF upright = Image::swapsWidthAndHeight(source.imageOrientation()) ? QSizeF(bitmap.size()).transposed()
                                                                                  : QSizeF(bitmap.size());
    painter.save();
    painter.setTransform(source.uprightTransform()
                             * QTransform::fromScale(target.width() / upright.width(), target.height() / upright.height())
                             * QTransform::fromTranslate(target.left(), target.top()),
                         true);
    painter.drawImage(QPointF(), bitmap);
    painter.restore();
}

// A scaling on its way; dropping it cancels it (a cancelled scaling that has not started is
// skipped) and ignores its result.
struct CancelScaling
{
    void operator()(QFutureWatcher<QImage> *scaling) const
    {
        scaling->future().cancel();
        delete scaling;
    }
};
using Scaling = std::unique_ptr<QFutureWatcher<QImage>, CancelScaling>;

// A picture the view may show (its image, or one animation frame) and its copy scaled to where it
// is drawn, made on the global queue.
struct Picture
{
    explicit Picture(const Image &source = Image()) : source(source) {}

    Image source;
    QPixmap fitted; // the scaled copy (its size in device pixels), null until the worker has made one
    Scaling scaling;
    QSize scalingTo; // the device pixel size of the scaling on its way
};

} // namespace

struct ImageView::Private
{
    Picture image;
    std::vector<Picture> frames;
    double duration = 0.0;
    qsizetype frame = 0;
    QTimer timer;
    QElapsedTimer clock;
    qreal borderWidth = 0.0;
    QColor borderColor = Qt::black;

    double secondsPerFrame() const
    {
        return duration > 0.0 ? duration / double(frames.size()) : defaultSecondsPerFrame;
    }
    Picture &shown(bool animating) { return animating ? frames.at(size_t(frame)) : image; }
    // GUI thread: has the picture scaled to `pixels` on the global queue unless that scaling is on
    // its way already; the view is updated when the copy is there. (Qt scales a picture on a thread
    // of the global queue by itself, instead of spreading the work over more threads that would
    // compete with the GUI thread for the cores.)
    void fit(ImageView *view, Picture &picture, const QSize &pixels);
    // The picture whose scaling this is, or nullptr.
    Picture *scaledBy(const QFutureWatcher<QImage> *scaling);
};

void ImageView::Private::fit(ImageView *view, Picture &picture, const QSize &pixels)
{
    if (picture.scaling && picture.scalingTo == pixels)
        return;
    auto promise = std::make_shared<QPromise<QImage>>();
    picture.scaling.reset(new QFutureWatcher<QImage>);
    picture.scalingTo = pixels;
    QFutureWatcher<QImage> *scaling = picture.scaling.get();
    const qreal ratio = view->devicePixelRatioF();
    // GUI thread, when this scaling is done.
    QObject::connect(scaling, &QFutureWatcherBase::finished, view, [this, view, scaling, ratio] {
        Picture *scaled = scaledBy(scaling);
        if (!scaled || scaling->future().resultCount() == 0)
            return;
        scaled->fitted = QPixmap::fromImage(scaling->future().result());
        scaled->fitted.setDevicePixelRatio(ratio);
        scaled->scaling.release()->deleteLater();
        view->update();
    });
    scaling->setFuture(promise->future());
    promise->start();
    // The scaling starts once the paint that asks for it is over, so as not to compete with it for
    // a core; a scaling dropped before then never starts.
    QMetaObject::invokeMethod(
        scaling,
        [promise, source = picture.source, pixels] {
            Dispatch::globalAsync([promise, source, pixels] {
                if (!promise->isCanceled())
                    promise->addResult(fittedPicture(source, pixels));
                promise->finish();
            });
        },
        Qt::QueuedConnection);
}

Picture *ImageView::Private::scaledBy(const QFutureWatcher<QImage> *scaling)
{
    if (image.scaling.get() == scaling)
        return &image;
    for (Picture &frame : frames) {
        if (frame.scaling.get() == scaling)
            return &frame;
    }
    return nullptr;
}

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
    return d->image.source;
}

void ImageView::setImage(const Image &image)
{
    d->image = Picture(image);
    updateGeometry();
    update();
}

QList<Image> ImageView::animationImages() const
{
    QList<Image> images;
    for (const Picture &frame : d->frames)
        images.append(frame.source);
    return images;
}

void ImageView::setAnimationImages(const QList<Image> &images)
{
    stopAnimating();
    d->frames.clear();
    for (const Image &frame : images)
        d->frames.emplace_back(frame);
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
    if (d->frames.empty())
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
    return d->shown(isAnimating()).source;
}

void ImageView::advanceFrame()
{
    // The frame follows the clock (to the nearest tick), so late ticks do not stretch the cycle.
    const double ticks = double(d->clock.elapsed()) / 1000.0 / d->secondsPerFrame();
    d->frame = qsizetype(ticks + 0.5) % qsizetype(d->frames.size());
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
    const Image shown = d->image.source.isNull() && !d->frames.empty() ? d->frames.front().source : d->image.source;
    return shown.size().toSize();
}

void ImageView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    Picture &shown = d->shown(isAnimating());
    const QSizeF fitted = shown.source.size().scaled(QSizeF(size()), Qt::KeepAspectRatio);
    const QRectF target(QPointF((width() - fitted.width()) / 2.0, (height() - fitted.height()) / 2.0), fitted);
    const QSize pixels = (target.size() * devicePixelRatioF()).toSize();
    if (!shown.source.isNull() && !pixels.isEmpty()) {
        if (shown.fitted.size() == pixels) {
            painter.drawPixmap(target, shown.fitted, QRectF(shown.fitted.rect()));
        } else {
            drawUnsmoothed(painter, shown.source, target);
            d->fit(this, shown, pixels);
        }
    }
    if (d->borderWidth > 0.0) {
        const qreal inset = d->borderWidth / 2.0;
        painter.setPen(QPen(d->borderColor, d->borderWidth));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset));
    }
}

} // namespace ZQTPlatform
