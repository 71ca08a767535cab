// The state of a StillCamera, shared by its source files.
#pragma once

#include "lib/StillCamera/StillCamera.h"

#include <QMutex>
#include <QPointer>
#include <QPropertyAnimation>

// Lets a completion on the capture queue reach its camera only while the camera lives: the
// destructor clears `camera` under the lock, so it waits for a completion that is running.
struct StillCameraCompletionGuard
{
    QMutex lock;
    StillCamera *camera = nullptr;
};

struct StillCamera::Private
{
    CameraQuality cameraQuality = CameraQuality::Photo;
    CameraPosition cameraPosition = CameraPosition::Back;
    CameraFlash cameraFlash = CameraFlash::Off;
    bool fixOrientationAfterCapture = false;
    bool tapToFocus = true;
    DeviceChangeHandler onDeviceChange;
    ErrorHandler onError;

    QPointer<QWidget> preview;
    std::unique_ptr<ZQTPlatform::CaptureSession> session;
    QPointer<ZQTPlatform::VideoPreviewLayer> captureVideoPreviewLayer;
    QPointer<ZQTPlatform::CaptureDevice> captureDevice;
    std::shared_ptr<ZQTPlatform::CaptureDeviceInput> deviceInput;
    std::shared_ptr<ZQTPlatform::StillImageOutput> stillImageOutput;
    ZQTPlatform::TapGestureRecognizer *tapGesture = nullptr;
    QPointer<QWidget> focusBoxLayer;
    QPointer<QPropertyAnimation> focusBoxAnimation;

    std::shared_ptr<StillCameraCompletionGuard> completionGuard = std::make_shared<StillCameraCompletionGuard>();
};
