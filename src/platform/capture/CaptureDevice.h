// A video capture device as the platform lists them: a camera, or a stand-in the host chose (a
// video file played in a loop, or a picture shown as a steady stream). Stand-ins come first in
// the device order, so the default device is the host's stand-in when there is one, else the
// system's default camera. Flash, torch and focus are set under a configuration lock, as on the
// platform. Devices belong to the process; touch them on the GUI thread only.
#pragma once

#include "ZQTGlobal.h"
#include "platform/foundation/Error.h"

#include <QImage>
#include <QList>
#include <QObject>
#include <QPointF>
#include <QSize>
#include <QString>
#include <QVariant>
#include <QVideoFrame>
#include <functional>
#include <memory>


namespace ZQTPlatform {

class CaptureDeviceBackend;

class ZQT_EXPORT CaptureDevice : public QObject
{
    Q_OBJECT

public:
    // Numbered as the platform numbers them.
    enum class Position { Unspecified = 0, Back = 1, Front = 2 };
    enum class FlashMode { Off = 0, On = 1, Auto = 2 };
    enum class TorchMode { Off = 0, On = 1, Auto = 2 };
    enum class FocusMode { Locked = 0, AutoFocus = 1, ContinuousAutoFocus = 2 };
    // What stands behind the device: a stream without end (a camera, a picture repeated) or a
    // video file, which ends and starts again.
    enum class Kind { Camera, VideoFile, Picture };

    // What a stand-in offers. Cameras answer from Qt Multimedia instead.
    struct Capabilities
    {
        bool flash = true;                 // every flash mode
        bool torch = true;                 // every torch mode
        bool focusPointOfInterest = true;  // with the auto-focus mode
        bool lockable = true;              // lockForConfiguration succeeds
    };

    // The media type of video devices and ports ("vide").
    static QString mediaTypeVideo();

    // The devices of a media type in the platform's order: stand-ins in the order added, then
    // the cameras Qt Multimedia lists. Empty for any other media type.
    static QList<CaptureDevice *> devicesWithMediaType(const QString &mediaType);
    // The first of devicesWithMediaType, or nullptr.
    static CaptureDevice *defaultDeviceWithMediaType(const QString &mediaType);

    // Adds a stand-in over a video file (any format GStreamer plays) or a picture file. Returns
    // nullptr, with a log line, when the file does not exist or is neither.
    static CaptureDevice *addStandIn(const QString &path, Position position = Position::Back);
    // Adds a stand-in that shows the picture as a steady stream (nullptr for a null picture).
    static CaptureDevice *addStandIn(const QImage &picture, Position position = Position::Back);
    // Removes and deletes every stand-in (sessions using one lose their frames).
    static void removeStandIns();

    QString uniqueID() const;
    QString localizedName() const;
    Position position() const;
    Kind kind() const;
    // A stand-in's offer; cameras ignore it.
    void setCapabilities(const Capabilities &capabilities);

    // Whether a device input can be made over the device now; the reason when not.
    bool isAvailable() const;
    Error availabilityError() const;

    bool hasFlash() const;
    bool isFlashModeSupported(FlashMode mode) const;
    FlashMode flashMode() const;
    void setFlashMode(FlashMode mode); // needs the configuration lock
    bool hasTorch() const;
    bool isTorchModeSupported(TorchMode mode) const;
    TorchMode torchMode() const;
    void setTorchMode(TorchMode mode); // needs the configuration lock
    bool isFocusPointOfInterestSupported() const;
    bool isFocusModeSupported(FocusMode mode) const;
    QPointF focusPointOfInterest() const;
    void setFocusPointOfInterest(const QPointF &point); // needs the configuration lock
    FocusMode focusMode() const;
    void setFocusMode(FocusMode mode); // needs the configuration lock

    // True when locked (or already locked); otherwise false with the reason in error.
    bool lockForConfiguration(Error *error);
    void unlockForConfiguration();

    // --- For the capture classes.
    // The size of the frames the device delivers now (empty before the first frame).
    QSize frameSize() const;
    // The newest frame (invalid before the first).
    QVideoFrame latestFrame() const;
    // Starts the device when the first running session uses it and stops it with the last one.
    void retainRunning();
    void releaseRunning();
    bool isRunning() const;
    // Asks a camera for the format nearest the preset's resolution; stand-ins keep theirs.
    void applySessionPreset(const QString &preset);
    // Takes one still picture and calls back on the GUI thread. A camera gives a picture of its
    // own; a stand-in gives its newest frame, to be converted off the GUI thread.
    struct StillPicture
    {
        QImage image;       // the picture, or null when frame holds it
        QVideoFrame frame;  // the frame to convert when image is null
        QVariantMap exif;   // the picture's EXIF dictionary (may be empty)
        Error error;        // set when there is no picture
    };
    void captureStill(std::function<void(const StillPicture &picture)> completion);

    ~CaptureDevice() override;

Q_SIGNALS:
    // Each new frame, on the GUI thread, while the device runs.
    void frameArrived(const QVideoFrame &frame);
    // A video file stand-in reached its end; it plays from the start again.
    void endOfStream();
    // The device stopped working (availabilityError() says why).
    void failed(const ZQTPlatform::Error &error);

private:
    CaptureDevice(std::unique_ptr<CaptureDeviceBackend> backend, Position position, QObject *parent);
    void takeFrame(const QVideoFrame &frame);
    bool checkLocked(const char *what) const;

    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace ZQTPlatform
