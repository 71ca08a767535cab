// The still-camera controller: a small view controller that a screen embeds as a child to take
// photos. It owns a capture session with one video input and a JPEG still output, shows the live
// preview, focuses where the user taps (with a fading focus box), switches between the back and
// front cameras, sets the flash mode and hands each still picture to the caller.
#pragma once

#include "ZQTGlobal.h"
#include "platform/capture/CaptureDevice.h"
#include "platform/foundation/Error.h"
#include "platform/ui/Image.h"
#include "platform/ui/ViewController.h"

#include <QPointF>
#include <QRectF>
#include <QVariantMap>
#include <functional>
#include <memory>

class QPropertyAnimation;

namespace ZQTPlatform {
class CaptureConnection;
class CaptureDeviceInput;
class CaptureSession;
class StillImageOutput;
class TapGestureRecognizer;
class VideoPreviewLayer;
} // namespace ZQTPlatform

class ZQT_EXPORT StillCamera : public ZQTPlatform::ViewController
{
    Q_OBJECT

public:
    // Unsigned as callers store them; values outside the lists are accepted (see each use).
    enum class CameraQuality : uint { Low = 0, Medium = 1, High = 2, Photo = 3 }; // others: photo
    enum class CameraPosition : uint { Back = 0, Front = 1 };
    enum class CameraFlash : uint { Off = 0, On = 1, Auto = 2 };

    // Called on the GUI thread whenever the capture device is replaced.
    using DeviceChangeHandler = std::function<void(StillCamera *camera, ZQTPlatform::CaptureDevice *device)>;
    // Called on the GUI thread when a device input cannot be made or the device cannot be locked
    // for focusing.
    using ErrorHandler = std::function<void(StillCamera *camera, const ZQTPlatform::Error &error)>;
    // Called on the capture queue, not the GUI thread: the picture (null on failure), its EXIF
    // dictionary (empty when there is none) and the error (null on success). Hop to the GUI
    // thread before touching views, and do not wait there for the GUI thread: deleting the
    // camera waits for a completion that is running. A camera deleted before its picture
    // arrives calls nothing.
    using CaptureCompletion = std::function<void(StillCamera *camera, const ZQTPlatform::Image &image,
                                                 const QVariantMap &metadata, const ZQTPlatform::Error &error)>;

    // Focus box of addDefaultFocusBox.
    static constexpr int focusBoxWidth = 70;
    static constexpr int focusBoxHeight = 60;
    static constexpr qreal focusBoxCornerRadius = 5.0;
    static constexpr qreal focusBoxBorderWidth = 3.0;
    static constexpr Qt::GlobalColor focusBoxBorderColor = Qt::yellow;
    static constexpr qreal focusBoxRestingOpacity = 0.0;
    // Its animation: opacity 1 to 0 over 0.75 s, played once, kept under this key (the
    // animation's object name).
    static constexpr int focusBoxAnimationMsecs = 750;
    static constexpr char focusBoxAnimationKey[] = "animateOpacity";

    // Without an interface file; cameraQuality = quality, then setCameraPosition(position),
    // fixOrientationAfterCapture false, tapToFocus true. Nothing is started.
    StillCamera(CameraQuality quality, CameraPosition position);
    // initWithQuality:andPosition: as a named constructor: a new controller (the caller owns
    // it) with the quality, the position set through setCameraPosition, orientation fixing off
    // and tap-to-focus on.
    static StillCamera *initWithQuality(CameraQuality quality, CameraPosition andPosition);
    ~StillCamera() override;

    // Chooses the session preset at the first start: low, medium, high, photo for anything else.
    CameraQuality cameraQuality() const;
    void setCameraQuality(CameraQuality quality);
    // The camera wanted: 0 until set. Changed through setCameraPosition and togglePosition.
    CameraPosition cameraPosition() const;
    // The flash mode last applied (off until then, and off after a failure).
    CameraFlash cameraFlash() const;
    // Kept as an option; taking a picture does not consult it.
    bool fixOrientationAfterCapture() const;
    void setFixOrientationAfterCapture(bool fix);
    // Whether a tap on the preview focuses there.
    bool tapToFocus() const;
    void setTapToFocus(bool tapToFocus);
    DeviceChangeHandler onDeviceChange() const;
    void setOnDeviceChange(const DeviceChangeHandler &handler);
    ErrorHandler onError() const;
    void setOnError(const ErrorHandler &handler);

    // Made with the view: holds the preview layer and takes the taps. nullptr before.
    QWidget *preview() const;
    // Made at the first start.
    ZQTPlatform::CaptureSession *session() const;
    ZQTPlatform::VideoPreviewLayer *captureVideoPreviewLayer() const;
    std::shared_ptr<ZQTPlatform::CaptureDeviceInput> deviceInput() const;
    std::shared_ptr<ZQTPlatform::StillImageOutput> stillImageOutput() const;
    // The current camera. Setting it turns its flash off, then calls onDeviceChange.
    ZQTPlatform::CaptureDevice *captureDevice() const;
    void setCaptureDevice(ZQTPlatform::CaptureDevice *device);
    ZQTPlatform::TapGestureRecognizer *tapGesture() const;
    // The focus box: a child of the view, shown at each tap through its opacity animation.
    QWidget *focusBoxLayer() const;
    QPropertyAnimation *focusBoxAnimation() const;

    // Adds the view to the host's view and this controller as the host's child, then sets the
    // frame on the HOST's view (not on this one); the embedding screen places this view itself.
    void attachToViewController(ZQTPlatform::ViewController *host, const QRectF &frame);
    // Builds the session at the first call (an input over the camera of cameraPosition and the
    // still output); thaws a preview frozen by a capture; runs the session. When no input can be
    // made, onError is called and the session is left without input and not running; later
    // calls run that session as it is.
    void start();
    // Stops the session running; it is kept for the next start.
    void stop();
    // Takes one still picture; the completion runs on the capture queue. The preview freezes on
    // the picture (on the GUI thread) until the next start. With exactSeenImage the picture is
    // cut to what the preview shows at the call. Nothing happens before the first start.
    void capture(const CaptureCompletion &completion, bool exactSeenImage = false);
    // Front when back, back otherwise; returns the new position.
    CameraPosition togglePosition();
    // Nothing when the position is current. Otherwise the session's first input is replaced by
    // one over the camera on the other side of the CURRENT device (front when it is at the back,
    // back otherwise): position only decides whether to switch. Without such a camera the
    // session is left in an open configuration without its old input; when the new input cannot
    // be made, onError is called and the old input is not put back either.
    void setCameraPosition(CameraPosition position);
    // Applies the flash mode to the device; a mode the device refuses is recorded as off.
    void setCameraFlash(CameraFlash flash);
    bool isFlashAvailable() const;

    // Focuses the current input's device at a point of interest (unit square of the frame), when
    // it supports both; a failed configuration lock goes to onError.
    void focusAtPoint(const QPointF &pointOfInterest);
    // Moves the focus box's centre to the point (view coordinates) and plays its animation.
    void showFocusBox(const QPointF &point);
    // A point of the preview as a point of interest, by the preview layer's gravity and the
    // clean aperture of the session's video input; (0.5, 0.5) when it falls outside the picture
    // or the aperture is unknown.
    QPointF convertToPointOfInterestFromViewCoordinates(const QPointF &viewCoordinates) const;
    // The part of the picture that the preview shows now (GUI thread).
    ZQTPlatform::Image cropImageUsingPreviewBounds(const ZQTPlatform::Image &image) const;
    // The still output's video connection, or nullptr.
    ZQTPlatform::CaptureConnection *captureConnection() const;
    // The interface orientation when it is upside down or a landscape, portrait otherwise.
    int orientationForConnection() const;
    // The default focus box and its animation, through alterFocusBox.
    void addDefaultFocusBox();
    // Keeps the box and animation used by showFocusBox (the box should be a child of the view).
    void alterFocusBox(QWidget *layer, QPropertyAnimation *animation);
    // The tap recogniser's action (GUI thread).
    void previewTapped(ZQTPlatform::TapGestureRecognizer *recognizer);

    // View life; appearing, disappearing and memory warnings are the base class's.
    void viewDidLoad() override;
    void viewWillLayoutSubviews() override;

private:
    static ZQTPlatform::CaptureDevice *cameraWithPosition(ZQTPlatform::CaptureDevice::Position position);
    bool setFlashMode(ZQTPlatform::CaptureDevice::FlashMode mode);
    // The first start's set-up; false when no device input could be made.
    bool buildSession();

    struct Private;
    std::unique_ptr<Private> d;
};
