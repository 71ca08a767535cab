// What stands behind a capture device: a camera, a video file or a picture. Each delivers frames
// through frameReady on the GUI thread while started.
#pragma once

#include "platform/capture/CaptureDevice.h"

#include <QImage>
#include <QObject>
#include <QString>
#include <QVariantMap>
#include <QVideoFrame>
#include <functional>
#include <memory>

class QCamera;

namespace ZQTPlatform {

class CaptureDeviceBackend : public QObject
{
    Q_OBJECT

public:
    using StillCompletion = std::function<void(const CaptureDevice::StillPicture &picture)>;

    virtual CaptureDevice::Kind kind() const = 0;
    virtual QString uniqueID() const = 0;
    virtual QString localizedName() const = 0;
    virtual Error availabilityError() const = 0; // null when an input can be made
    virtual void start() = 0;
    virtual void stop() = 0;
    virtual void applySessionPreset(const QString &preset) { Q_UNUSED(preset); }
    // The camera behind a camera backend (its flash, torch and focus), else nullptr.
    virtual QCamera *camera() const { return nullptr; }
    // A picture of its own (a camera's still capture) on the GUI thread; false when the backend
    // has none and the newest frame is the picture.
    virtual bool captureStill(const StillCompletion &completion)
    {
        Q_UNUSED(completion);
        return false;
    }

Q_SIGNALS:
    void frameReady(const QVideoFrame &frame);
    void endOfStream();
    void failed(const ZQTPlatform::Error &error);
};

std::unique_ptr<CaptureDeviceBackend> makeCameraBackend(const QByteArray &cameraId);
std::unique_ptr<CaptureDeviceBackend> makeMediaFileBackend(const QString &path);
std::unique_ptr<CaptureDeviceBackend> makePictureBackend(const QImage &picture, const QString &name);

// The error a device gives when it cannot be used.
Error captureDeviceError(const QString &description);

} // namespace ZQTPlatform
