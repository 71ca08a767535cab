// The still camera's tap to focus: the focus box, focusing the device and the mapping from the
// preview to the frame's points of interest. Everything here runs on the GUI thread.
#include "lib/StillCamera/StillCamera.h"

#include "lib/StillCamera/StillCamera_p.h"
#include "platform/capture/CaptureSession.h"
#include "platform/ui/TapGestureRecognizer.h"
#include "platform/capture/VideoPreviewLayer.h"

#include <QGraphicsOpacityEffect>

#include <algorithm>

using namespace ZQTPlatform;

void StillCamera::addDefaultFocusBox()
{
    auto *box = new QWidget(this);
    box->setObjectName(QStringLiteral("focusBox"));
    box->setAttribute(Qt::WA_StyledBackground);
    box->setAttribute(Qt::WA_TransparentForMouseEvents);
    box->setStyleSheet(QStringLiteral("QWidget#focusBox { background: transparent; border: %1px solid %2; border-radius: %3px; }")
                           .arg(focusBoxBorderWidth)
                           .arg(QColor(focusBoxBorderColor).name())
                           .arg(focusBoxCornerRadius));
    box->setGeometry(-focusBoxWidth / 2, -focusBoxHeight / 2, focusBoxWidth, focusBoxHeight);
    auto *opacity = new QGraphicsOpacityEffect(box);
    opacity->setOpacity(focusBoxRestingOpacity);
    box->setGraphicsEffect(opacity);
    box->show();

    auto *animation = new QPropertyAnimation(opacity, "opacity", this);
    animation->setStartValue(1.0);
    animation->setEndValue(0.0);
    animation->setDuration(focusBoxAnimationMsecs);
    animation->setLoopCount(1);
    alterFocusBox(box, animation);
}

void StillCamera::alterFocusBox(QWidget *layer, QPropertyAnimation *animation)
{
    d->focusBoxLayer = layer;
    d->focusBoxAnimation = animation;
}

void StillCamera::showFocusBox(const QPointF &point)
{
    QWidget *box = d->focusBoxLayer;
    QPropertyAnimation *animation = d->focusBoxAnimation;
    if (box) {
        if (animation)
            animation->stop();
        box->move((point - QPointF(box->width() / 2.0, box->height() / 2.0)).toPoint());
    }
    if (animation) {
        animation->setObjectName(QLatin1String(focusBoxAnimationKey));
        animation->start();
    }
}

void StillCamera::previewTapped(TapGestureRecognizer *recognizer)
{
    if (!d->tapToFocus)
        return;
    const QPointF location = recognizer->locationInView(d->preview);
    focusAtPoint(convertToPointOfInterestFromViewCoordinates(location));
    showFocusBox(location);
}

void StillCamera::focusAtPoint(const QPointF &pointOfInterest)
{
    CaptureDevice *device = d->deviceInput ? d->deviceInput->device() : nullptr;
    if (!device || !device->isFocusPointOfInterestSupported()
        || !device->isFocusModeSupported(CaptureDevice::FocusMode::AutoFocus))
        return;
    Error error;
    if (device->lockForConfiguration(&error)) {
        device->setFocusPointOfInterest(pointOfInterest);
        device->setFocusMode(CaptureDevice::FocusMode::AutoFocus);
        device->unlockForConfiguration();
    }
    if (!error.isNull() && d->onError)
        d->onError(this, error);
}

QPointF StillCamera::convertToPointOfInterestFromViewCoordinates(const QPointF &viewCoordinates) const
{
    const QPointF unknown(0.5, 0.5);
    const VideoPreviewLayer *layer = d->captureVideoPreviewLayer;
    if (!layer)
        return unknown;
    const qreal x = viewCoordinates.x();
    const qreal y = viewCoordinates.y();
    const qreal W = layer->frame().width();
    const qreal H = layer->frame().height();
    const QString gravity = layer->videoGravity();
    // The frame is turned a quarter against the view: the view's y runs along the frame's x.
    if (gravity == VideoPreviewLayer::gravityResize)
        return QPointF(y / H, 1.0 - x / W);

    const QList<std::shared_ptr<CaptureDeviceInput>> inputs = d->session->inputs();
    if (inputs.isEmpty())
        return unknown;
    const QList<CaptureInputPort> ports = inputs.last()->ports();
    const auto videoPort = std::find_if(ports.begin(), ports.end(), [](const CaptureInputPort &port) {
        return port.mediaType() == CaptureDevice::mediaTypeVideo();
    });
    if (videoPort == ports.end())
        return unknown;
    const QRectF aperture = videoPort->cleanAperture();
    const qreal apertureRatio = aperture.height() / aperture.width();
    const qreal viewRatio = W / H;

    if (gravity == VideoPreviewLayer::gravityResizeAspect) {
        // Black bars on two sides; a point on a bar has no point of interest.
        if (viewRatio > apertureRatio) {
            const qreal shownWidth = H * apertureRatio;
            const qreal bar = (W - shownWidth) / 2.0;
            if (x >= bar && x <= bar + shownWidth)
                return QPointF(y / H, 1.0 - (x - bar) / shownWidth);
            return unknown;
        }
        const qreal shownHeight = W / apertureRatio;
        const qreal bar = (H - shownHeight) / 2.0;
        if (y >= bar && y <= bar + shownHeight)
            return QPointF((y - bar) / shownHeight, 1.0 - x / W);
        return unknown;
    }
    if (gravity == VideoPreviewLayer::gravityResizeAspectFill) {
        // The picture overflows on two sides; the view shows its middle.
        if (viewRatio > apertureRatio) {
            const qreal filledHeight = aperture.width() * (W / aperture.height());
            return QPointF((y + (filledHeight - H) / 2.0) / filledHeight, (W - x) / W);
        }
        const qreal filledWidth = aperture.height() * (H / aperture.width());
        return QPointF(y / H, 1.0 - (x + (filledWidth - W) / 2.0) / filledWidth);
    }
    return unknown;
}
