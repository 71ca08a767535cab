// The capture pipeline of the platform: a session joins device inputs to outputs (barcode
// metadata, still pictures) and, while it runs, feeds every frame of its video input to them
// and to its preview layers. Everything here lives on the GUI thread.
#pragma once

#include "ZQTGlobal.h"
#include "platform/capture/CaptureDevice.h"
#include "platform/foundation/Error.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QRectF>
#include <QString>
#include <memory>

class QVideoFrame;

namespace ZQTPlatform {

class CaptureSession;

// A port of an input: its media type and the clean aperture of its format (the frame
// rectangle, origin 0, 0; empty until the device has delivered a frame).
class ZQT_EXPORT CaptureInputPort
{
public:
    CaptureInputPort(const QString &mediaType, CaptureDevice *device);
    QString mediaType() const;
    QRectF cleanAperture() const;

private:
    QString m_mediaType;
    QPointer<CaptureDevice> m_device;
};

// An input over one device.
class ZQT_EXPORT CaptureDeviceInput
{
public:
    // The input, or nullptr with the device's reason in error (error may be nullptr).
    static std::shared_ptr<CaptureDeviceInput> deviceInputWithDevice(CaptureDevice *device, Error *error);
    CaptureDevice *device() const;
    QList<CaptureInputPort> ports() const;

private:
    explicit CaptureDeviceInput(CaptureDevice *device);
    QPointer<CaptureDevice> m_device;
};

// Joins an output (or a preview layer) to the session's video input. The video orientation is
// numbered as interface orientations (1 portrait, 2 upside down, 3 landscape right, 4 left).
class ZQT_EXPORT CaptureConnection : public QObject
{
    Q_OBJECT

public:
    explicit CaptureConnection(QObject *owner);
    // The video ports of the session's inputs (empty when not in a session or without input).
    QList<CaptureInputPort> inputPorts() const;
    bool isEnabled() const;
    void setEnabled(bool enabled);
    int videoOrientation() const;
    void setVideoOrientation(int orientation);
    CaptureSession *session() const;
    void setSession(CaptureSession *session);

private:
    bool m_enabled = true;
    int m_videoOrientation = 1;
    QPointer<CaptureSession> m_session;
};

// The base of the session's outputs.
class ZQT_EXPORT CaptureOutput : public QObject
{
    Q_OBJECT

public:
    CaptureOutput();
    ~CaptureOutput() override;
    // One connection once the output is in a session that has an input; empty otherwise.
    QList<CaptureConnection *> connections() const;
    // The first connection with an input port of the media type, or nullptr.
    CaptureConnection *connectionWithMediaType(const QString &mediaType) const;
    CaptureSession *session() const;

protected:
    friend class CaptureSession;
    // Each frame of the session's video input while the session runs, on the GUI thread.
    // Overrides must return quickly: hand heavy work to a worker.
    virtual void videoFrameArrived(const QVideoFrame &frame);

private:
    CaptureConnection *m_connection;
};

class ZQT_EXPORT CaptureSession : public QObject
{
    Q_OBJECT

public:
    // Session presets by name, as the platform names them.
    static const QString presetLow;    // "AVCaptureSessionPresetLow"
    static const QString presetMedium; // "AVCaptureSessionPresetMedium"
    static const QString presetHigh;   // "AVCaptureSessionPresetHigh"
    static const QString presetPhoto;  // "AVCaptureSessionPresetPhoto"

    CaptureSession();
    ~CaptureSession() override;

    QString sessionPreset() const; // presetHigh by default
    void setSessionPreset(const QString &preset);

    bool canAddInput(const std::shared_ptr<CaptureDeviceInput> &input) const;
    // Adds the input (nullptr and inputs already added are ignored).
    void addInput(const std::shared_ptr<CaptureDeviceInput> &input);
    void removeInput(const std::shared_ptr<CaptureDeviceInput> &input);
    QList<std::shared_ptr<CaptureDeviceInput>> inputs() const;
    bool canAddOutput(const std::shared_ptr<CaptureOutput> &output) const;
    void addOutput(const std::shared_ptr<CaptureOutput> &output);
    QList<std::shared_ptr<CaptureOutput>> outputs() const;

    // Changes between the two calls take effect together at the commit.
    void beginConfiguration();
    void commitConfiguration();

    // Starts the video input's device and the flow of frames (synchronous, GUI thread).
    void startRunning();
    void stopRunning();
    bool isRunning() const;
    // The device of the first video input, or nullptr.
    CaptureDevice *videoDevice() const;

Q_SIGNALS:
    // Each frame while running, after the outputs had it; preview layers draw it.
    void frameArrived(const QVideoFrame &frame);

private:
    void deliver(const QVideoFrame &frame);
    void rewire();

    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace ZQTPlatform
