#include "platform/capture/VideoPreviewLayer.h"

#include "platform/capture/VideoFrames_p.h"
#include "platform/ui/View.h"
#include "platform/foundation/WorkerPriority_p.h"

#include <QMutex>
#include <QPainter>
#include <QThreadPool>
#include <QVideoFrame>
#include <algorithm>

namespace ZQTPlatform {

const QString VideoPreviewLayer::gravityResize = QStringLiteral("AVLayerVideoGravityResize");
const QString VideoPreviewLayer::gravityResizeAspect = QStringLiteral("AVLayerVideoGravityResizeAspect");
const QString VideoPreviewLayer::gravityResizeAspectFill = QStringLiteral("AVLayerVideoGravityResizeAspectFill");

namespace {

// How frame pixels land in the layer: layer = offset + frame * scale (per axis).
struct Placement
{
    QPointF offset;
    QSizeF scale;
    bool valid = false;

    QPointF toLayer(const QPointF &pixel) const
    {
        return {offset.x() + pixel.x() * scale.width(), offset.y() + pixel.y() * scale.height()};
    }
    QPointF toFrame(const QPointF &point) const
    {
        return {(point.x() - offset.x()) / scale.width(), (point.y() - offset.y()) / scale.height()};
    }
};

Placement placementFor(const QString &gravity, const QSizeF &frame, const QSizeF &layer)
{
    Placement placement;
    if (frame.isEmpty() || layer.isEmpty())
        return placement;
    const double sx = layer.width() / frame.width();
    const double sy = layer.height() / frame.height();
    if (gravity == VideoPreviewLayer::gravityResize) {
        placement.scale = QSizeF(sx, sy);
    } else {
        const double s = gravity == VideoPreviewLayer::gravityResizeAspectFill ? std::max(sx, sy) : std::min(sx, sy);
        placement.scale = QSizeF(s, s);
        placement.offset = QPointF((layer.width() - frame.width() * s) / 2, (layer.height() - frame.height() * s) / 2);
    }
    placement.valid = true;
    return placement;
}

} // namespace

struct VideoPreviewLayer::Private
{
    QPointer<CaptureSession> session;
    QString gravity = VideoPreviewLayer::gravityResizeAspect;
    CaptureConnection *connection = nullptr;
    QSizeF frameSize;
    QVideoFrame lastFrame;
    QImage picture;       // drawn at pictureOrigin
    QPointF pictureOrigin;
    QPointF position;

    // The drawing worker: one frame in flight, the newest waiting.
    QThreadPool worker;
    QMutex lock;
    bool busy = false;
    QVideoFrame pending;
    QString pendingGravity;
    QSize pendingLayerSize;
};

VideoPreviewLayer::VideoPreviewLayer(CaptureSession *session) : d(std::make_unique<Private>())
{
    d->session = session;
    d->connection = new CaptureConnection(this);
    d->connection->setSession(session);
    d->worker.setMaxThreadCount(1);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_OpaquePaintEvent);
    if (session) {
        // GUI thread.
        connect(session, &CaptureSession::frameArrived, this, [this](const QVideoFrame &frame) {
            if (!d->connection->isEnabled())
                return;
            d->lastFrame = frame;
            d->frameSize = frame.size();
            scheduleDrawing();
        });
    }
}

VideoPreviewLayer::~VideoPreviewLayer()
{
    d->worker.waitForDone();
}

CaptureSession *VideoPreviewLayer::session() const
{
    return d->session;
}

QString VideoPreviewLayer::videoGravity() const
{
    return d->gravity;
}

void VideoPreviewLayer::setVideoGravity(const QString &gravity)
{
    d->gravity = gravity;
    scheduleDrawing();
}

CaptureConnection *VideoPreviewLayer::connection() const
{
    return d->connection;
}

void VideoPreviewLayer::setBounds(const QRectF &bounds)
{
    const QSizeF size = bounds.size();
    setGeometry(QRectF(d->position - QPointF(size.width() / 2, size.height() / 2), size).toRect());
}

QRectF VideoPreviewLayer::bounds() const
{
    return QRectF(QPointF(0, 0), QSizeF(size()));
}

void VideoPreviewLayer::setPosition(const QPointF &position)
{
    d->position = position;
    const QSizeF size = QSizeF(this->size());
    move(QPointF(position - QPointF(size.width() / 2, size.height() / 2)).toPoint());
}

void VideoPreviewLayer::setBoundsCentredIn(const QWidget *view)
{
    const QRectF viewBounds(QPointF(0, 0), QSizeF(view->size()));
    setBounds(viewBounds);
    setPosition(viewBounds.center());
}

QRectF VideoPreviewLayer::frame() const
{
    return QRectF(geometry());
}

void VideoPreviewLayer::addToSuperlayer(QWidget *view)
{
    if (!view)
        return;
    setParent(view);
    // Above the layers added before, below the view's own children.
    QWidget *lowestChild = nullptr;
    for (QObject *child : view->children()) {
        auto *widget = qobject_cast<QWidget *>(child);
        if (widget && widget != this && !qobject_cast<VideoPreviewLayer *>(widget)) {
            lowestChild = widget;
            break;
        }
    }
    if (lowestChild)
        stackUnder(lowestChild);
    show();
}

void VideoPreviewLayer::removeFromSuperlayer()
{
    removeFromSuperview(this);
}

MetadataObject VideoPreviewLayer::transformedMetadataObjectForMetadataObject(const MetadataObject &object) const
{
    MetadataObject transformed = object;
    const QSizeF frameSize = object.frameSize.isEmpty() ? d->frameSize : object.frameSize;
    const Placement placement = placementFor(d->gravity, frameSize, QSizeF(size()));
    if (!placement.valid)
        return transformed;
    auto map = [&](const QPointF &unit) {
        return placement.toLayer(QPointF(unit.x() * frameSize.width(), unit.y() * frameSize.height()));
    };
    transformed.bounds = QRectF(map(object.bounds.topLeft()), map(object.bounds.bottomRight())).normalized();
    transformed.corners.clear();
    for (const QPointF &corner : object.corners)
        transformed.corners.append(map(corner));
    return transformed;
}

QRectF VideoPreviewLayer::metadataOutputRectOfInterestForRect(const QRectF &layerRect) const
{
    return QRectF(captureDevicePointOfInterestForPoint(layerRect.topLeft()),
                  captureDevicePointOfInterestForPoint(layerRect.bottomRight())).normalized();
}

QPointF VideoPreviewLayer::captureDevicePointOfInterestForPoint(const QPointF &layerPoint) const
{
    const Placement placement = placementFor(d->gravity, d->frameSize, QSizeF(size()));
    if (!placement.valid)
        return {};
    const QPointF pixel = placement.toFrame(layerPoint);
    return {pixel.x() / d->frameSize.width(), pixel.y() / d->frameSize.height()};
}

QImage VideoPreviewLayer::currentPicture() const
{
    if (d->picture.isNull())
        return {};
    QImage shown(size(), QImage::Format_RGB32);
    shown.fill(Qt::black);
    QPainter painter(&shown);
    painter.drawImage(d->pictureOrigin, d->picture);
    return shown;
}

void VideoPreviewLayer::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), Qt::black);
    if (!d->picture.isNull())
        painter.drawImage(d->pictureOrigin, d->picture);
}

void VideoPreviewLayer::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    scheduleDrawing();
}

void VideoPreviewLayer::scheduleDrawing()
{
    // GUI thread. The worker draws the newest frame for the size and gravity of the moment.
    if (!d->lastFrame.isValid() || size().isEmpty())
        return;
    QMutexLocker locker(&d->lock);
    d->pending = d->lastFrame;
    d->pendingGravity = d->gravity;
    d->pendingLayerSize = size();
    if (d->busy)
        return;
    d->busy = true;
    d->worker.start([this] { drawPending(); });
}

void VideoPreviewLayer::drawPending()
{
    // The drawing worker's thread.
    lowerCurrentThreadPriority();
    for (;;) {
        QVideoFrame frame;
        QString gravity;
        QSize layerSize;
        {
            QMutexLocker locker(&d->lock);
            if (!d->pending.isValid()) {
                d->busy = false;
                return;
            }
            frame = std::exchange(d->pending, QVideoFrame());
            gravity = d->pendingGravity;
            layerSize = d->pendingLayerSize;
        }
        const QSizeF frameSize(frame.size());
        const Placement placement = placementFor(gravity, frameSize, QSizeF(layerSize));
        if (!placement.valid)
            continue;
        const QRectF visibleLayer = QRectF(placement.toLayer(QPointF(0, 0)), placement.toLayer(QPointF(frameSize.width(), frameSize.height())))
                                        .intersected(QRectF(QPointF(0, 0), QSizeF(layerSize)));
        const QRectF source(placement.toFrame(visibleLayer.topLeft()), placement.toFrame(visibleLayer.bottomRight()));
        const QRect target = visibleLayer.toAlignedRect();
        const QImage picture = renderVideoFrame(frame, source, target.size());
        QMetaObject::invokeMethod(this, [this, picture, layerSize, origin = QPointF(target.topLeft())] {
            // GUI thread. A picture drawn for a size the layer has left is dropped: the drawing
            // for the present size is on its way (resizeEvent asked for it).
            if (layerSize != size())
                return;
            d->picture = picture;
            d->pictureOrigin = origin;
            update();
        }, Qt::QueuedConnection);
    }
}

} // namespace ZQTPlatform
