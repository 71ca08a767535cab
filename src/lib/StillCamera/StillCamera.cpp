// The still camera's session, cameras, flash, still pictures and view.
#include "lib/StillCamera/StillCamera.h"

#include "lib/Categories/Image+CropCategory.h"
#include "lib/StillCamera/StillCamera_p.h"
#include "platform/ui/Application.h"
#include "platform/capture/CaptureSession.h"
#include "platform/foundation/Dispatch.h"
#include "platform/foundation/Orientation.h"
#include "platform/capture/StillImageOutput.h"
#include "platform/ui/TapGestureRecognizer.h"
#include "platform/capture/VideoPreviewLayer.h"
#include "platform/ui/View.h"

#include <optional>

using namespace ZQTPlatform;

namespace {

QString presetForQuality(StillCamera::CameraQuality quality)
{
    switch (quality) {
    case StillCamera::CameraQuality::Low:
        return CaptureSession::presetLow;
    case StillCamera::CameraQuality::Medium:
        return CaptureSession::presetMedium;
    case StillCamera::CameraQuality::High:
        return CaptureSession::presetHigh;
    default:
        return CaptureSession::presetPhoto;
    }
}

CaptureDevice::Position devicePosition(StillCamera::CameraPosition position)
{
    switch (position) {
    case StillCamera::CameraPosition::Back:
        return CaptureDevice::Position::Back;
    case StillCamera::CameraPosition::Front:
        return CaptureDevice::Position::Front;
    default:
        return CaptureDevice::Position::Unspecified;
    }
}

CaptureDevice::FlashMode deviceFlashMode(StillCamera::CameraFlash flash)
{
    switch (flash) {
    case StillCamera::CameraFlash::On:
        return CaptureDevice::FlashMode::On;
    case StillCamera::CameraFlash::Auto:
        return CaptureDevice::FlashMode::Auto;
    default:
        return CaptureDevice::FlashMode::Off;
    }
}

// A unit-square rectangle of a picture's bitmap cut out in pixels; scale 1, the picture's
// orientation kept.
Image cropToUnitRect(const Image &image, const QRectF &unitRect)
{
    const QImage bitmap = image.bitmap();
    const QRectF pixels(unitRect.x() * bitmap.width(), unitRect.y() * bitmap.height(),
                        unitRect.width() * bitmap.width(), unitRect.height() * bitmap.height());
    return CropCategory::crop(Image(bitmap, 1.0, image.imageOrientation()), pixels);
}

} // namespace

StillCamera::StillCamera(CameraQuality quality, CameraPosition position)
    : d(std::make_unique<Private>())
{
    d->cameraQuality = quality;
    setCameraPosition(position);
    d->fixOrientationAfterCapture = false;
    d->tapToFocus = true;
}

StillCamera *StillCamera::initWithQuality(CameraQuality quality, CameraPosition andPosition)
{
    return new StillCamera(quality, andPosition);
}

StillCamera::~StillCamera()
{
    d->completionGate->close();
    // The preview layer draws from the session: it goes first.
    delete d->captureVideoPreviewLayer.data();
    if (d->session)
        d->session->stopRunning();
    d->session.reset();
}

StillCamera::CameraQuality StillCamera::cameraQuality() const { return d->cameraQuality; }
void StillCamera::setCameraQuality(CameraQuality quality) { d->cameraQuality = quality; }
StillCamera::CameraPosition StillCamera::cameraPosition() const { return d->cameraPosition; }
StillCamera::CameraFlash StillCamera::cameraFlash() const { return d->cameraFlash; }
bool StillCamera::fixOrientationAfterCapture() const { return d->fixOrientationAfterCapture; }
void StillCamera::setFixOrientationAfterCapture(bool fix) { d->fixOrientationAfterCapture = fix; }
bool StillCamera::tapToFocus() const { return d->tapToFocus; }
void StillCamera::setTapToFocus(bool tapToFocus) { d->tapToFocus = tapToFocus; }
StillCamera::DeviceChangeHandler StillCamera::onDeviceChange() const { return d->onDeviceChange; }
void StillCamera::setOnDeviceChange(const DeviceChangeHandler &handler) { d->onDeviceChange = handler; }
StillCamera::ErrorHandler StillCamera::onError() const { return d->onError; }
void StillCamera::setOnError(const ErrorHandler &handler) { d->onError = handler; }
QWidget *StillCamera::preview() const { return d->preview; }
CaptureSession *StillCamera::session() const { return d->session.get(); }
VideoPreviewLayer *StillCamera::captureVideoPreviewLayer() const { return d->captureVideoPreviewLayer; }
std::shared_ptr<CaptureDeviceInput> StillCamera::deviceInput() const { return d->deviceInput; }
std::shared_ptr<StillImageOutput> StillCamera::stillImageOutput() const { return d->stillImageOutput; }
CaptureDevice *StillCamera::captureDevice() const { return d->captureDevice; }
TapGestureRecognizer *StillCamera::tapGesture() const { return d->tapGesture; }
QWidget *StillCamera::focusBoxLayer() const { return d->focusBoxLayer; }
QPropertyAnimation *StillCamera::focusBoxAnimation() const { return d->focusBoxAnimation; }

void StillCamera::setCaptureDevice(CaptureDevice *device)
{
    d->captureDevice = device;
    setCameraFlash(CameraFlash::Off);
    if (d->onDeviceChange)
        d->onDeviceChange(this, device);
}

void StillCamera::viewDidLoad()
{
    ViewController::viewDidLoad();
    d->cameraFlash = CameraFlash::Off;
    setBackgroundColor(this, Qt::transparent);
    d->preview = new QWidget(this);
    d->preview->setObjectName(QStringLiteral("preview"));
    d->preview->setGeometry(QRect());
    setBackgroundColor(d->preview, Qt::transparent);
    d->preview->show();
    d->tapGesture = new TapGestureRecognizer([this](TapGestureRecognizer *tap) { previewTapped(tap); }, this);
    d->tapGesture->addToView(d->preview);
    addDefaultFocusBox();
}

void StillCamera::viewWillLayoutSubviews()
{
    ViewController::viewWillLayoutSubviews();
    d->preview->setGeometry(0, 0, width(), height());
    if (VideoPreviewLayer *layer = d->captureVideoPreviewLayer) {
        layer->setBoundsCentredIn(d->preview);
        layer->connection()->setVideoOrientation(orientationForConnection());
    }
}

int StillCamera::orientationForConnection() const
{
    return InterfaceOrientation::videoOrientationFor(Application::sharedApplication()->statusBarOrientation());
}

void StillCamera::attachToViewController(ViewController *host, const QRectF &frame)
{
    loadViewIfNeeded();
    setParent(host);
    show();
    host->addChildViewController(this);
    // The frame goes to the host's view, as the embedding screen expects.
    host->setGeometry(frame.toRect());
}

void StillCamera::start()
{
    loadViewIfNeeded();
    // A session whose input could not be made is not started the first time only.
    if (!d->session && !buildSession())
        return;
    if (!d->captureVideoPreviewLayer->connection()->isEnabled())
        d->captureVideoPreviewLayer->connection()->setEnabled(true);
    d->session->startRunning();
}

bool StillCamera::buildSession()
{
    d->session = std::make_unique<CaptureSession>();
    d->session->setSessionPreset(presetForQuality(d->cameraQuality));

    auto *layer = new VideoPreviewLayer(d->session.get());
    layer->setVideoGravity(VideoPreviewLayer::gravityResizeAspectFill);
    layer->setBoundsCentredIn(d->preview);
    layer->addToSuperlayer(d->preview);
    d->captureVideoPreviewLayer = layer;

    const CaptureDevice::Position position = devicePosition(d->cameraPosition);
    setCaptureDevice(position == CaptureDevice::Position::Unspecified
                         ? CaptureDevice::defaultDeviceWithMediaType(CaptureDevice::mediaTypeVideo())
                         : cameraWithPosition(position));

    Error error;
    d->deviceInput = CaptureDeviceInput::deviceInputWithDevice(d->captureDevice, &error);
    if (!d->deviceInput) {
        if (d->onError)
            d->onError(this, error);
        return false;
    }
    d->session->addInput(d->deviceInput);
    d->stillImageOutput = std::make_shared<StillImageOutput>();
    d->stillImageOutput->setOutputSettings({{StillImageOutput::videoCodecKey, StillImageOutput::videoCodecJPEG}});
    d->session->addOutput(d->stillImageOutput);
    return true;
}

void StillCamera::stop()
{
    if (d->session)
        d->session->stopRunning();
}

CaptureDevice *StillCamera::cameraWithPosition(CaptureDevice::Position position)
{
    for (CaptureDevice *device : CaptureDevice::devicesWithMediaType(CaptureDevice::mediaTypeVideo())) {
        if (device->position() == position)
            return device;
    }
    return nullptr;
}

StillCamera::CameraPosition StillCamera::togglePosition()
{
    setCameraPosition(d->cameraPosition == CameraPosition::Back ? CameraPosition::Front : CameraPosition::Back);
    return d->cameraPosition;
}

void StillCamera::setCameraPosition(CameraPosition position)
{
    if (position == d->cameraPosition)
        return;
    CaptureSession *session = d->session.get();
    std::shared_ptr<CaptureDeviceInput> removed;
    if (session) {
        session->beginConfiguration();
        if (!session->inputs().isEmpty()) {
            removed = session->inputs().first();
            session->removeInput(removed);
        }
    }
    const CaptureDevice *current = removed ? removed->device() : nullptr;
    const bool currentIsBack = current && current->position() == CaptureDevice::Position::Back;
    CaptureDevice *next = cameraWithPosition(currentIsBack ? CaptureDevice::Position::Front : CaptureDevice::Position::Back);
    // No camera on the other side: the configuration stays open and the old input out.
    if (!next)
        return;
    Error error;
    std::shared_ptr<CaptureDeviceInput> input = CaptureDeviceInput::deviceInputWithDevice(next, &error);
    if (!input) {
        if (d->onError)
            d->onError(this, error);
        if (session)
            session->commitConfiguration();
        return;
    }
    d->cameraPosition = position;
    if (session) {
        session->addInput(input);
        session->commitConfiguration();
        d->deviceInput = input;
    }
    setCaptureDevice(next);
}

void StillCamera::setCameraFlash(CameraFlash flash)
{
    // A refused mode is recorded as off, whatever was set before.
    d->cameraFlash = setFlashMode(deviceFlashMode(flash)) ? flash : CameraFlash::Off;
}

bool StillCamera::setFlashMode(CaptureDevice::FlashMode mode)
{
    CaptureDevice *device = d->captureDevice;
    if (!device || !device->isFlashModeSupported(mode))
        return false;
    if (device->flashMode() == mode)
        return true;
    if (!device->lockForConfiguration(nullptr))
        return false;
    device->setFlashMode(mode);
    device->unlockForConfiguration();
    return true;
}

bool StillCamera::isFlashAvailable() const
{
    return d->captureDevice && d->captureDevice->hasFlash();
}

CaptureConnection *StillCamera::captureConnection() const
{
    return d->stillImageOutput ? d->stillImageOutput->connectionWithMediaType(CaptureDevice::mediaTypeVideo()) : nullptr;
}

void StillCamera::capture(const CaptureCompletion &completion, bool exactSeenImage)
{
    if (!d->stillImageOutput)
        return;
    CaptureConnection *connection = captureConnection();
    if (connection)
        connection->setVideoOrientation(orientationForConnection());
    // What the preview shows is read here, on the GUI thread, for the cut on the capture queue.
    std::optional<QRectF> seenRect;
    if (exactSeenImage)
        seenRect = d->captureVideoPreviewLayer->metadataOutputRectOfInterestForRect(d->captureVideoPreviewLayer->bounds());
    const QPointer<VideoPreviewLayer> layer = d->captureVideoPreviewLayer;
    const std::shared_ptr<CompletionGate> gate = d->completionGate;
    d->stillImageOutput->captureStillImageAsynchronouslyFromConnection(
        connection, [this, layer, gate, completion, seenRect](std::shared_ptr<const SampleBuffer> buffer, const Error &error) {
            // Capture queue. The preview freezes on the picture: a view change, so on the GUI thread.
            Dispatch::mainAsync([layer] {
                if (layer)
                    layer->connection()->setEnabled(false);
            });
            Image image;
            QVariantMap metadata;
            if (buffer) {
                metadata = buffer->attachments.value(SampleBuffer::exifDictionaryKey).toMap();
                image = Image::fromData(StillImageOutput::jpegStillImageNSDataRepresentation(*buffer));
                if (seenRect)
                    image = cropToUnitRect(image, *seenRect);
            }
            const QMutexLocker lock(&gate->lock);
            if (gate->open && completion)
                completion(this, image, metadata, error);
        });
}

Image StillCamera::cropImageUsingPreviewBounds(const Image &image) const
{
    // Without a preview nothing is seen: the cut is empty and so is the result.
    const VideoPreviewLayer *layer = d->captureVideoPreviewLayer;
    return cropToUnitRect(image, layer ? layer->metadataOutputRectOfInterestForRect(layer->bounds()) : QRectF());
}
