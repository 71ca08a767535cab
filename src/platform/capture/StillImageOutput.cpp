#include "platform/capture/StillImageOutput.h"

#include "platform/capture/VideoFrames_p.h"
#include "platform/foundation/WorkerPriority_p.h"

#include <QBuffer>
#include <QImageWriter>
#include <QThread>
#include <QThreadPool>

namespace ZQTPlatform {

const QString SampleBuffer::exifDictionaryKey = QStringLiteral("{Exif}");
const QString StillImageOutput::videoCodecKey = QStringLiteral("AVVideoCodecKey");
const QString StillImageOutput::videoCodecJPEG = QStringLiteral("jpeg");

namespace {

constexpr int jpegQuality = 90;

QThreadPool &captureQueue()
{
    static QThreadPool queue;
    static const bool serial = [] {
        queue.setMaxThreadCount(1);
        queue.setExpiryTimeout(-1);
        return true;
    }();
    Q_UNUSED(serial);
    return queue;
}

Error captureError(const QString &description)
{
    return Error(QStringLiteral("AVFoundationErrorDomain"), -11800, description);
}

} // namespace

void StillImageOutput::captureQueueAsync(std::function<void()> work)
{
    captureQueue().start([work = std::move(work)] {
        QThread::currentThread()->setObjectName(QStringLiteral("zqt.vin.capture"));
        lowerCurrentThreadPriority();
        work();
    });
}

StillImageOutput::StillImageOutput() = default;
StillImageOutput::~StillImageOutput() = default;

QVariantMap StillImageOutput::outputSettings() const
{
    return m_outputSettings;
}

void StillImageOutput::setOutputSettings(const QVariantMap &settings)
{
    m_outputSettings = settings;
}

void StillImageOutput::captureStillImageAsynchronouslyFromConnection(CaptureConnection *connection,
                                                                     Completion completion)
{
    auto fail = [completion](const QString &description) {
        captureQueueAsync([completion, description] {
            if (completion)
                completion(nullptr, captureError(description));
        });
    };
    if (!connection || !connections().contains(connection)) {
        fail(QStringLiteral("The connection is not one of this output's."));
        return;
    }
    CaptureDevice *device = session() ? session()->videoDevice() : nullptr;
    if (!device) {
        fail(QStringLiteral("The connection has no video input."));
        return;
    }
    // GUI thread: the device answers there; the conversion runs on the capture queue.
    device->captureStill([completion](const CaptureDevice::StillPicture &picture) {
        captureQueueAsync([completion, picture] {
            if (!completion)
                return;
            if (!picture.error.isNull()) {
                completion(nullptr, picture.error);
                return;
            }
            auto buffer = std::make_shared<SampleBuffer>();
            buffer->image = picture.image.isNull() ? imageFromVideoFrame(picture.frame) : picture.image;
            buffer->attachments.insert(SampleBuffer::exifDictionaryKey, picture.exif);
            if (buffer->image.isNull())
                completion(nullptr, captureError(QStringLiteral("The picture could not be made.")));
            else
                completion(buffer, Error());
        });
    });
}

QByteArray StillImageOutput::jpegStillImageNSDataRepresentation(const SampleBuffer &buffer)
{
    QByteArray data;
    if (buffer.image.isNull())
        return data;
    QBuffer out(&data);
    out.open(QIODevice::WriteOnly);
    QImageWriter writer(&out, "jpeg");
    writer.setQuality(jpegQuality);
    if (!writer.write(buffer.image))
        data.clear();
    return data;
}

} // namespace ZQTPlatform
