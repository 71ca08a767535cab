// A camera through Qt Multimedia: frames from its video sink, stills from its image capture,
// formats chosen by session preset.
#include "platform/capture/CaptureDevice_p.h"
#include "platform/capture/CaptureSession.h"

#include <QCamera>
#include <QCameraDevice>
#include <QDateTime>
#include <QImageCapture>
#include <QMediaCaptureSession>
#include <QMediaDevices>
#include <QMediaMetaData>
#include <QVideoSink>
#include <cmath>

namespace ZQTPlatform {

namespace {

// The resolution a preset asks for; 0 pixels stands for the smallest format, -1 for the largest.
qint64 presetPixels(const QString &preset)
{
    if (preset == CaptureSession::presetLow)
        return 0;
    if (preset == CaptureSession::presetMedium)
        return 640 * 480;
    if (preset == CaptureSession::presetHigh)
        return 1920 * 1080;
    return -1;
}

QVariantMap exifOf(const QMediaMetaData &metaData, const QImage &image)
{
    QVariantMap exif{{QStringLiteral("PixelXDimension"), image.width()},
                     {QStringLiteral("PixelYDimension"), image.height()}};
    const QVariant date = metaData.value(QMediaMetaData::Date);
    if (date.isValid())
        exif.insert(QStringLiteral("DateTimeOriginal"),
                    date.toDateTime().toString(QStringLiteral("yyyy:MM:dd HH:mm:ss")));
    return exif;
}

class CameraBackend : public CaptureDeviceBackend
{
public:
    explicit CameraBackend(const QCameraDevice &device) : m_device(device), m_camera(device)
    {
        m_session.setCamera(&m_camera);
        m_session.setVideoSink(&m_sink);
        m_session.setImageCapture(&m_imageCapture);
        // All on the GUI thread.
        connect(&m_sink, &QVideoSink::videoFrameChanged, this, [this](const QVideoFrame &frame) {
            if (frame.isValid())
                emit frameReady(frame);
        });
        connect(&m_camera, &QCamera::errorOccurred, this, [this](QCamera::Error, const QString &text) {
            emit failed(captureDeviceError(text));
        });
        connect(&m_imageCapture, &QImageCapture::imageCaptured, this, [this](int id, const QImage &image) {
            finishStill(id, image, Error());
        });
        connect(&m_imageCapture, &QImageCapture::errorOccurred, this,
                [this](int id, QImageCapture::Error, const QString &text) {
                    finishStill(id, {}, captureDeviceError(text));
                });
    }

    CaptureDevice::Kind kind() const override { return CaptureDevice::Kind::Camera; }
    QString uniqueID() const override { return QString::fromLatin1(m_device.id()); }
    QString localizedName() const override { return m_device.description(); }

    Error availabilityError() const override
    {
        if (m_camera.error() != QCamera::NoError)
            return captureDeviceError(m_camera.errorString());
        if (!m_camera.isAvailable())
            return captureDeviceError(QStringLiteral("The camera is not available."));
        return {};
    }

    void start() override { m_camera.start(); }
    void stop() override { m_camera.stop(); }
    QCamera *camera() const override { return const_cast<QCamera *>(&m_camera); }

    void applySessionPreset(const QString &preset) override
    {
        const QList<QCameraFormat> formats = m_device.videoFormats();
        if (formats.isEmpty())
            return;
        const qint64 wanted = presetPixels(preset);
        auto pixels = [](const QCameraFormat &format) {
            return qint64(format.resolution().width()) * format.resolution().height();
        };
        QCameraFormat best = formats.first();
        for (const QCameraFormat &format : formats) {
            const bool better = wanted < 0  ? pixels(format) > pixels(best)
                              : wanted == 0 ? pixels(format) < pixels(best)
                                            : std::llabs(pixels(format) - wanted) < std::llabs(pixels(best) - wanted);
            if (better)
                best = format;
        }
        m_camera.setCameraFormat(best);
    }

    bool captureStill(const StillCompletion &completion) override
    {
        if (!m_imageCapture.isReadyForCapture())
            return false;
        const int id = m_imageCapture.capture();
        if (id < 0)
            return false;
        m_pending.insert(id, completion);
        return true;
    }

private:
    void finishStill(int id, const QImage &image, const Error &error)
    {
        const StillCompletion completion = m_pending.take(id);
        if (!completion)
            return;
        CaptureDevice::StillPicture still;
        still.image = image;
        still.error = error;
        if (!image.isNull())
            still.exif = exifOf(m_imageCapture.metaData(), image);
        completion(still);
    }

    QCameraDevice m_device;
    QCamera m_camera;
    QMediaCaptureSession m_session;
    QVideoSink m_sink;
    QImageCapture m_imageCapture;
    QHash<int, StillCompletion> m_pending;
};

} // namespace

std::unique_ptr<CaptureDeviceBackend> makeCameraBackend(const QByteArray &cameraId)
{
    for (const QCameraDevice &device : QMediaDevices::videoInputs()) {
        if (device.id() == cameraId)
            return std::make_unique<CameraBackend>(device);
    }
    return std::make_unique<CameraBackend>(QCameraDevice());
}

} // namespace ZQTPlatform
