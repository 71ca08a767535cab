#include "platform/capture/CaptureDevice.h"

#include "platform/foundation/Authorization.h"
#include "platform/capture/CaptureDevice_p.h"
#include "platform/foundation/Log.h"

#include <QCamera>
#include <QCameraDevice>
#include <QCoreApplication>
#include <QFileInfo>
#include <QHash>
#include <QImageReader>
#include <QMediaDevices>
#include <QPointer>

namespace ZQTPlatform {

namespace {

const QString videoMediaType = QStringLiteral("vide");

// The devices of the process: stand-ins in the order added, cameras by their Qt id.
struct Registry
{
    QList<QPointer<CaptureDevice>> standIns;
    QHash<QByteArray, QPointer<CaptureDevice>> cameras;
};

Registry &registry()
{
    static Registry instance;
    return instance;
}

CaptureDevice::Position positionOf(QCameraDevice::Position position)
{
    switch (position) {
    case QCameraDevice::BackFace:
        return CaptureDevice::Position::Back;
    case QCameraDevice::FrontFace:
        return CaptureDevice::Position::Front;
    default:
        return CaptureDevice::Position::Unspecified;
    }
}

QCamera::FlashMode cameraFlashMode(CaptureDevice::FlashMode mode)
{
    switch (mode) {
    case CaptureDevice::FlashMode::On:
        return QCamera::FlashOn;
    case CaptureDevice::FlashMode::Auto:
        return QCamera::FlashAuto;
    default:
        return QCamera::FlashOff;
    }
}

QCamera::TorchMode cameraTorchMode(CaptureDevice::TorchMode mode)
{
    switch (mode) {
    case CaptureDevice::TorchMode::On:
        return QCamera::TorchOn;
    case CaptureDevice::TorchMode::Auto:
        return QCamera::TorchAuto;
    default:
        return QCamera::TorchOff;
    }
}

} // namespace

Error captureDeviceError(const QString &description)
{
    return Error(QStringLiteral("AVFoundationErrorDomain"), -11814, description);
}

struct CaptureDevice::Private
{
    std::unique_ptr<CaptureDeviceBackend> backend;
    Position position = Position::Unspecified;
    Capabilities capabilities;
    FlashMode flashMode = FlashMode::Off;
    TorchMode torchMode = TorchMode::Off;
    FocusMode focusMode = FocusMode::ContinuousAutoFocus;
    QPointF focusPoint{0.5, 0.5};
    bool locked = false;
    int runningCount = 0;
    QVideoFrame latestFrame;
};

CaptureDevice::CaptureDevice(std::unique_ptr<CaptureDeviceBackend> backend, Position position, QObject *parent)
    : QObject(parent), d(std::make_unique<Private>())
{
    d->backend = std::move(backend);
    d->position = position;
    // Runs on the GUI thread: the backends deliver there.
    connect(d->backend.get(), &CaptureDeviceBackend::frameReady, this, &CaptureDevice::takeFrame);
    connect(d->backend.get(), &CaptureDeviceBackend::endOfStream, this, &CaptureDevice::endOfStream);
    connect(d->backend.get(), &CaptureDeviceBackend::failed, this, &CaptureDevice::failed);
}

CaptureDevice::~CaptureDevice()
{
    d->backend->stop();
}

QString CaptureDevice::mediaTypeVideo()
{
    return videoMediaType;
}

QList<CaptureDevice *> CaptureDevice::devicesWithMediaType(const QString &mediaType)
{
    QList<CaptureDevice *> devices;
    if (mediaType != videoMediaType)
        return devices;
    Registry &known = registry();
    for (const QPointer<CaptureDevice> &standIn : std::as_const(known.standIns)) {
        if (standIn)
            devices.append(standIn);
    }
    for (const QCameraDevice &input : QMediaDevices::videoInputs()) {
        QPointer<CaptureDevice> &camera = known.cameras[input.id()];
        if (!camera)
            camera = new CaptureDevice(makeCameraBackend(input.id()), positionOf(input.position()),
                                       QCoreApplication::instance());
        devices.append(camera);
    }
    return devices;
}

CaptureDevice *CaptureDevice::defaultDeviceWithMediaType(const QString &mediaType)
{
    const QList<CaptureDevice *> devices = devicesWithMediaType(mediaType);
    return devices.isEmpty() ? nullptr : devices.first();
}

CaptureDevice *CaptureDevice::addStandIn(const QString &path, Position position)
{
    const QFileInfo file(path);
    if (!file.isFile()) {
        log(QStringLiteral("Video source not found: %1").arg(path));
        return nullptr;
    }
    QImageReader reader(file.absoluteFilePath());
    reader.setAutoTransform(true);
    std::unique_ptr<CaptureDeviceBackend> backend;
    if (reader.canRead()) {
        const QImage picture = reader.read();
        if (picture.isNull()) {
            log(QStringLiteral("Video source could not be read: %1 (%2)").arg(path, reader.errorString()));
            return nullptr;
        }
        backend = makePictureBackend(picture, file.fileName());
    } else {
        backend = makeMediaFileBackend(file.absoluteFilePath());
    }
    auto *device = new CaptureDevice(std::move(backend), position, QCoreApplication::instance());
    registry().standIns.append(device);
    Authorization::setHasConfiguredVideoSource(true);
    return device;
}

CaptureDevice *CaptureDevice::addStandIn(const QImage &picture, Position position)
{
    if (picture.isNull())
        return nullptr;
    const QString name = QStringLiteral("Picture %1").arg(registry().standIns.size() + 1);
    auto *device = new CaptureDevice(makePictureBackend(picture, name), position, QCoreApplication::instance());
    registry().standIns.append(device);
    Authorization::setHasConfiguredVideoSource(true);
    return device;
}

void CaptureDevice::removeStandIns()
{
    const QList<QPointer<CaptureDevice>> standIns = std::exchange(registry().standIns, {});
    for (const QPointer<CaptureDevice> &standIn : standIns)
        delete standIn.data();
    Authorization::setHasConfiguredVideoSource(false);
}

QString CaptureDevice::uniqueID() const
{
    return d->backend->uniqueID();
}

QString CaptureDevice::localizedName() const
{
    return d->backend->localizedName();
}

CaptureDevice::Position CaptureDevice::position() const
{
    return d->position;
}

CaptureDevice::Kind CaptureDevice::kind() const
{
    return d->backend->kind();
}

void CaptureDevice::setCapabilities(const Capabilities &capabilities)
{
    d->capabilities = capabilities;
}

bool CaptureDevice::isAvailable() const
{
    return d->backend->availabilityError().isNull();
}

Error CaptureDevice::availabilityError() const
{
    return d->backend->availabilityError();
}

bool CaptureDevice::hasFlash() const
{
    if (QCamera *camera = d->backend->camera())
        return camera->isFlashModeSupported(QCamera::FlashOn);
    return d->capabilities.flash;
}

bool CaptureDevice::isFlashModeSupported(FlashMode mode) const
{
    if (QCamera *camera = d->backend->camera())
        return camera->isFlashModeSupported(cameraFlashMode(mode));
    return mode == FlashMode::Off || d->capabilities.flash;
}

CaptureDevice::FlashMode CaptureDevice::flashMode() const
{
    return d->flashMode;
}

void CaptureDevice::setFlashMode(FlashMode mode)
{
    if (!checkLocked("flashMode") || !isFlashModeSupported(mode))
        return;
    d->flashMode = mode;
    if (QCamera *camera = d->backend->camera())
        camera->setFlashMode(cameraFlashMode(mode));
}

bool CaptureDevice::hasTorch() const
{
    if (QCamera *camera = d->backend->camera())
        return camera->isTorchModeSupported(QCamera::TorchOn);
    return d->capabilities.torch;
}

bool CaptureDevice::isTorchModeSupported(TorchMode mode) const
{
    if (QCamera *camera = d->backend->camera())
        return camera->isTorchModeSupported(cameraTorchMode(mode));
    return mode == TorchMode::Off || d->capabilities.torch;
}

CaptureDevice::TorchMode CaptureDevice::torchMode() const
{
    return d->torchMode;
}

void CaptureDevice::setTorchMode(TorchMode mode)
{
    if (!checkLocked("torchMode") || !isTorchModeSupported(mode))
        return;
    d->torchMode = mode;
    if (QCamera *camera = d->backend->camera())
        camera->setTorchMode(cameraTorchMode(mode));
}

bool CaptureDevice::isFocusPointOfInterestSupported() const
{
    if (QCamera *camera = d->backend->camera())
        return camera->supportedFeatures().testFlag(QCamera::Feature::CustomFocusPoint);
    return d->capabilities.focusPointOfInterest;
}

bool CaptureDevice::isFocusModeSupported(FocusMode mode) const
{
    if (QCamera *camera = d->backend->camera()) {
        switch (mode) {
        case FocusMode::Locked:
            return camera->isFocusModeSupported(QCamera::FocusModeManual);
        case FocusMode::AutoFocus:
        case FocusMode::ContinuousAutoFocus:
            return camera->isFocusModeSupported(QCamera::FocusModeAuto);
        }
    }
    return mode != FocusMode::AutoFocus || d->capabilities.focusPointOfInterest;
}

QPointF CaptureDevice::focusPointOfInterest() const
{
    return d->focusPoint;
}

void CaptureDevice::setFocusPointOfInterest(const QPointF &point)
{
    if (!checkLocked("focusPointOfInterest") || !isFocusPointOfInterestSupported())
        return;
    d->focusPoint = point;
    if (QCamera *camera = d->backend->camera())
        camera->setCustomFocusPoint(point);
}

CaptureDevice::FocusMode CaptureDevice::focusMode() const
{
    return d->focusMode;
}

void CaptureDevice::setFocusMode(FocusMode mode)
{
    if (!checkLocked("focusMode") || !isFocusModeSupported(mode))
        return;
    d->focusMode = mode;
    if (QCamera *camera = d->backend->camera())
        camera->setFocusMode(mode == FocusMode::Locked ? QCamera::FocusModeManual : QCamera::FocusModeAuto);
}

bool CaptureDevice::lockForConfiguration(Error *error)
{
    const bool lockable = d->backend->camera() ? isAvailable() : d->capabilities.lockable;
    if (!lockable) {
        if (error)
            *error = captureDeviceError(QStringLiteral("The device could not be locked for configuration."));
        return false;
    }
    d->locked = true;
    return true;
}

void CaptureDevice::unlockForConfiguration()
{
    d->locked = false;
}

bool CaptureDevice::checkLocked(const char *what) const
{
    if (d->locked)
        return true;
    log(QStringLiteral("Capture device %1: %2 set without the configuration lock; ignored")
            .arg(localizedName(), QLatin1String(what)));
    return false;
}

QSize CaptureDevice::frameSize() const
{
    return d->latestFrame.size();
}

QVideoFrame CaptureDevice::latestFrame() const
{
    return d->latestFrame;
}

void CaptureDevice::retainRunning()
{
    if (d->runningCount++ == 0)
        d->backend->start();
}

void CaptureDevice::releaseRunning()
{
    if (d->runningCount == 0)
        return;
    if (--d->runningCount == 0)
        d->backend->stop();
}

bool CaptureDevice::isRunning() const
{
    return d->runningCount > 0;
}

void CaptureDevice::applySessionPreset(const QString &preset)
{
    d->backend->applySessionPreset(preset);
}

void CaptureDevice::captureStill(std::function<void(const StillPicture &picture)> completion)
{
    if (d->backend->captureStill(completion))
        return;
    StillPicture picture;
    picture.frame = d->latestFrame;
    if (!picture.frame.isValid())
        picture.error = captureDeviceError(QStringLiteral("The device has not delivered a picture yet."));
    else
        picture.exif = {{QStringLiteral("PixelXDimension"), picture.frame.width()},
                        {QStringLiteral("PixelYDimension"), picture.frame.height()}};
    completion(picture);
}

void CaptureDevice::takeFrame(const QVideoFrame &frame)
{
    // GUI thread.
    if (d->runningCount == 0)
        return;
    d->latestFrame = frame;
    emit frameArrived(frame);
}

} // namespace ZQTPlatform
