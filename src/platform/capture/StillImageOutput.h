// The session's still-picture output: takes one picture from the video input of a connection
// and hands it to the caller on the capture queue (a worker thread of its own, one job at a
// time), as the platform does.
#pragma once

#include "ZQTGlobal.h"
#include "platform/capture/CaptureSession.h"
#include "platform/foundation/Error.h"

#include <QByteArray>
#include <QImage>
#include <QVariantMap>
#include <functional>
#include <memory>

namespace ZQTPlatform {

// A still picture with its attachments; the EXIF dictionary is under "{Exif}".
struct ZQT_EXPORT SampleBuffer
{
    QImage image;
    QVariantMap attachments;

    static const QString exifDictionaryKey; // "{Exif}"
};

class ZQT_EXPORT StillImageOutput : public CaptureOutput
{
    Q_OBJECT

public:
    // Called on the capture queue: the buffer (nullptr on failure) and the error (null on success).
    using Completion = std::function<void(std::shared_ptr<const SampleBuffer> buffer, const Error &error)>;

    // The codec key and the JPEG codec of the output settings.
    static const QString videoCodecKey; // "AVVideoCodecKey"
    static const QString videoCodecJPEG; // "jpeg"

    StillImageOutput();
    ~StillImageOutput() override;

    QVariantMap outputSettings() const;
    void setOutputSettings(const QVariantMap &settings);

    // Takes a picture from the connection's device. Fails (completion with an error) when the
    // connection is nullptr, is not this output's, has no video input, or the device has no
    // picture to give.
    void captureStillImageAsynchronouslyFromConnection(CaptureConnection *connection, Completion completion);

    // The buffer as JPEG data at quality 0.9 (empty for a null picture).
    static QByteArray jpegStillImageNSDataRepresentation(const SampleBuffer &buffer);

    // Runs work on the capture queue (for callers that continue there).
    static void captureQueueAsync(std::function<void()> work);

private:
    QVariantMap m_outputSettings;
};

} // namespace ZQTPlatform
