// A picture shown as a steady stream: the same frame 30 times a second through a video sink, as
// the other sources deliver theirs, and the picture itself as the still.
#include "platform/capture/CaptureDevice_p.h"
#include "platform/capture/VideoFrames_p.h"

#include <QDateTime>
#include <QTimer>
#include <QVideoSink>

namespace ZQTPlatform {

namespace {

constexpr int frameIntervalMs = 33;

class PictureBackend : public CaptureDeviceBackend
{
public:
    PictureBackend(const QImage &picture, const QString &name)
        : m_picture(picture), m_name(name), m_frames{videoFrameFromImage(picture)}
    {
        m_frames[1] = copyOfVideoFrame(m_frames[0]);
        m_timer.setInterval(frameIntervalMs);
        // Both on the GUI thread.
        connect(&m_timer, &QTimer::timeout, this, [this] { showNextFrame(); });
        connect(&m_sink, &QVideoSink::videoFrameChanged, this, &CaptureDeviceBackend::frameReady);
    }

    CaptureDevice::Kind kind() const override { return CaptureDevice::Kind::Picture; }
    QString uniqueID() const override { return QStringLiteral("picture:") + m_name; }
    QString localizedName() const override { return m_name; }

    Error availabilityError() const override
    {
        return m_frames[0].isValid() ? Error() : captureDeviceError(QStringLiteral("The picture is too small to stream."));
    }

    void start() override
    {
        if (!m_frames[0].isValid())
            return;
        m_timer.start();
        showNextFrame();
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
    // A sink passes a frame on only when it differs from the one it has: two copies take turns.
    void showNextFrame()
    {
        m_next = 1 - m_next;
        m_sink.setVideoFrame(m_frames[m_next]);
    }

    QImage m_picture;
    QString m_name;
    QVideoFrame m_frames[2];
    int m_next = 0;
    QVideoSink m_sink;
    QTimer m_timer;
};

} // namespace

std::unique_ptr<CaptureDeviceBackend> makePictureBackend(const QImage &picture, const QString &name)
{
    return std::make_unique<PictureBackend>(picture, name);
}

} // namespace ZQTPlatform
