// The state of a StillCamera, shared by its source files.
#pragma once

#include "lib/StillCamera/StillCamera.h"
#include "platform/foundation/CompletionGate_p.h"

#include <QPointer>
#include <QPropertyAnimation>

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

    // Capture completions reach the camera through this gate; the destructor closes it.
    std::shared_ptr<ZQTPlatform::CompletionGate> completionGate = std::make_shared<ZQTPlatform::CompletionGate>();
};
