// A picture shown as a steady stream: the same frame 30 times a second, and the picture itself
// as the still.
#include "platform/CaptureDevice_p.h"
#include "platform/VideoFrames_p.h"

#include <QDateTime>
#include <QTimer>

namespace ZQTPlatform {

namespace {

constexpr int frameIntervalMs = 33;

class PictureBackend : public CaptureDeviceBackend
{
public:
    PictureBackend(const QImage &picture, const QString &name)
        : m_picture(picture), m_name(name), m_frame(videoFrameFromImage(picture))
    {
        m_timer.setInterval(frameIntervalMs);
        // GUI thread.
        connect(&m_timer, &QTimer::timeout, this, [this] { emit frameReady(m_frame); });
    }

    QString uniqueID() const override { return QStringLiteral("picture:") + m_name; }
    QString localizedName() const override { return m_name; }

    Error availabilityError() const override
    {
        return m_frame.isValid() ? Error() : captureDeviceError(QStringLiteral("The picture is too small to stream."));
    }

    void start() override
    {
        if (!m_frame.isValid())
            return;
        m_timer.start();
        emit frameReady(m_frame);
    }

    void stop() override { m_timer.stop(); }

    bool captureStill(const StillCompletion &completion) override
    {
        CaptureDevice::StillPicture still;
        still.image = m_picture;
        still.exif = {{QStringLiteral("PixelXDimension"), m_picture.width()},
                      {QStringLiteral("PixelYDimension"), m_picture.height()},
                      {QStringLiteral("DateTimeOriginal"),
                       QDateTime::currentDateTime().toString(QStringLiteral("yyyy:MM:dd HH:mm:ss"))}};
        completion(still);
        return true;
    }

private:
    QImage m_picture;
    QString m_name;
    QVideoFrame m_frame;
    QTimer m_timer;
};

} // namespace

std::unique_ptr<CaptureDeviceBackend> makePictureBackend(const QImage &picture, const QString &name)
{
    return std::make_unique<PictureBackend>(picture, name);
}

} // namespace ZQTPlatform
