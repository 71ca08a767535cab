// A video file played from the start again each time it ends, frames into a video sink.
// GStreamer plays it; nothing is heard.
#include "platform/capture/CaptureDevice_p.h"
#include "platform/foundation/Log.h"

#include <QFileInfo>
#include <QMediaPlayer>
#include <QUrl>
#include <QVideoSink>

namespace ZQTPlatform {

namespace {

class MediaFileBackend : public CaptureDeviceBackend
{
public:
    explicit MediaFileBackend(const QString &path) : m_path(path)
    {
        m_player.setVideoSink(&m_sink);
        // All on the GUI thread: the GStreamer backend delivers its frames there.
        connect(&m_sink, &QVideoSink::videoFrameChanged, this, [this](const QVideoFrame &frame) {
            if (frame.isValid() && m_started)
                emit frameReady(frame);
        });
        connect(&m_player, &QMediaPlayer::mediaStatusChanged, this, [this](QMediaPlayer::MediaStatus status) {
            if (status == QMediaPlayer::EndOfMedia && m_started) {
                emit endOfStream();
                m_player.setPosition(0);
                m_player.play();
            }
        });
        connect(&m_player, &QMediaPlayer::errorOccurred, this, [this](QMediaPlayer::Error, const QString &text) {
            m_error = captureDeviceError(text.isEmpty() ? QStringLiteral("The video could not be played.") : text);
            log(QStringLiteral("Video source %1: %2").arg(m_path, m_error.localizedDescription()));
            emit failed(m_error);
        });
    }

    CaptureDevice::Kind kind() const override { return CaptureDevice::Kind::VideoFile; }
    QString uniqueID() const override { return QStringLiteral("file:") + m_path; }
    QString localizedName() const override { return QFileInfo(m_path).fileName(); }
    Error availabilityError() const override { return m_error; }

    void start() override
    {
        m_started = true;
        if (m_player.source().isEmpty())
            m_player.setSource(QUrl::fromLocalFile(m_path));
        m_player.play();
    }

    void stop() override
    {
        m_started = false;
        m_player.pause();
    }

private:
    QString m_path;
    QMediaPlayer m_player;
    QVideoSink m_sink;
    Error m_error;
    bool m_started = false;
};

} // namespace

std::unique_ptr<CaptureDeviceBackend> makeMediaFileBackend(const QString &path)
{
    return std::make_unique<MediaFileBackend>(path);
}

} // namespace ZQTPlatform
