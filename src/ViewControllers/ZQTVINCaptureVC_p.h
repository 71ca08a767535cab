// The state of a capture screen: its options, its outlets and what its steps keep between them.
#pragma once

#include "Model/ZQTVINScanAdjuster.h"
#include "ViewControllers/ZQTVINCaptureVC.h"
#include "platform/foundation/Bundle.h"
#include "platform/ui/Image.h"
#include "platform/ui/LayoutConstraint.h"
#include "UI/Views/DigitKeyboardView.h"
#include "platform/ui/AlertController.h"
#include "platform/capture/CaptureSession.h"
#include "platform/foundation/CompletionGate_p.h"
#include "platform/capture/MetadataOutput.h"
#include "platform/ui/NavigationBar.h"
#include "platform/ui/NavigationController.h"
#include "platform/capture/StillImageOutput.h"
#include "platform/capture/VideoPreviewLayer.h"
#include "platform/capture/VINTextOutput.h"

#include <QDateTime>
#include <QGeoPositionInfo>
#include <QLabel>
#include <QMutex>
#include <QPointer>
#include <QPushButton>
#include <QVariant>
#include <atomic>
#include <memory>
#include <optional>

class DigitKeyboardView;
class StillCamera;
class VinScannerVCDelegate;
namespace ZQTPlatform {
class ImageView;
}

struct ZQTVINCaptureVCPrivate
{
    // Options.
    VinScannerVCDelegate *delegate = nullptr;
    QString claimId;
    uint mode = 0;
    QList<std::shared_ptr<ZQTVINPhotoCaptureEntity>> thumbnailItems;
    std::optional<ZQTVINScanAdjuster> adjusterInfo;
    bool enableWizardStyle = false;
    bool enableLandscapeMode = false;
    bool enableVinScanning = false;
    bool hasBackButton = false;
    bool showManualEntry = false;
    bool enableImageExposureAdjusted = false;
    QString vinBarCode;
    bool additionalPhotoMode = false;
    QVariantMap savedImageDictionary;
    bool enableLocationServices = false;
    bool launchPhotoCaptureViewWithDefaultImagesAlways = false;
    bool enableVINTextReading = false;
    bool showNavigateBar = false;
    std::optional<QGeoPositionInfo> location;
    QVariantMap photosToBeSaved;
    QVariantMap photoCaptureItemsDict;
    qint64 currentThumbnailNdx = 0;

    // Internal state.
    bool hasManualVINOption = false;
    // Why the camera cannot be used (null while it can), the notice that says so in the camera
    // area, and the watch on the device's failures.
    QString cameraFailure;
    QPointer<QWidget> cameraUnavailableView;
    QMetaObject::Connection deviceFailure;
    // The status-bar fillers this screen put into the host's view.
    QList<QPointer<QWidget>> statusBarFillers;
    // The host's navigation bar this screen hid while on top; shown again when the screen leaves.
    QPointer<ZQTPlatform::NavigationController> hiddenHostBar;
    ZQTPlatform::Bundle bundle;
    QDateTime startingTime;
    float scaleFactor = 0.0f;
    float angle = 0.0f;
    uint flashSetting = 0;
    double cameraViewDim = 0.0;
    ZQTPlatform::Image vinBarCodeImage;
    std::shared_ptr<ZQTVINPhotoCaptureEntity> vinScanItem;
    // The VIN photo is saved off the GUI thread: claimId, photosToBeSaved and vinScanItem are
    // changed under this lock (on the GUI thread) and read together under it by the saver.
    QMutex photoStateLock;
    // The VIN of the read being handled, from the barcode read to the delegate's report; under
    // photoStateLock, since an uncaught-exception handler on the capture thread may read it.
    QString vinInProcess;
    StillCamera *camera = nullptr;
    QString logStr; // kept as the screen's own; nothing writes or reads it
    ZQTVINCaptureVC::PermissionTexts permissionTexts; // chosen by the last permission check

    // Outlets of the scene (found by object name as the scene wakes).
    QPointer<ZQTPlatform::NavigationBar> interNavigationBar;
    QPointer<QWidget> backgroundView;
    QPointer<QWidget> scanOverlayView;
    QPointer<QPushButton> manuallyEnterVINBtn;
    QPointer<QLabel> carouselLbl;
    QPointer<QWidget> permissionConverView;
    QPointer<ZQTPlatform::LayoutConstraint> constraintNavBarHeight;
    QPointer<ZQTPlatform::LayoutConstraint> manualVINContainerHeight;
    QPointer<ZQTPlatform::LayoutConstraint> thumbnailTitleHeight;
    QPointer<ZQTPlatform::LayoutConstraint> carouselConstraintHeight;
    QPointer<ZQTPlatform::LayoutConstraint> manualConstraintHeight;

    // Views made by the steps.
    QPointer<QLabel> cameraImageView;
    QPointer<QLabel> flashLbl;

    // Help overlay: the view of the last card, and the spare image view.
    QPointer<QWidget> overlayView2;
    QPointer<ZQTPlatform::ImageView> overlayImageView;

    // Manual entry: the open prompt and its OK action (weak), and the digit row while it shows.
    QPointer<ZQTPlatform::AlertController> vinEntryAlertController;
    QPointer<ZQTPlatform::AlertAction> vinEntryAlertOKAction;
    QPointer<DigitKeyboardView> digitKeyboardView;

    // The barcode session. The scanning views are the screen's even while out of the view
    // tree; the screen deletes them when it drops them.
    std::shared_ptr<ZQTPlatform::CaptureSession> session;
    QPointer<ZQTPlatform::CaptureDevice> device;
    std::shared_ptr<ZQTPlatform::CaptureDeviceInput> input;
    std::shared_ptr<ZQTPlatform::MetadataOutput> output;
    std::shared_ptr<ZQTPlatform::StillImageOutput> stillImageOutput;
    std::shared_ptr<ZQTPlatform::VINTextOutput> textOutput; // only with enableVINTextReading
    // Written on the GUI thread as a read begins, read by hosts from the delegate's thread.
    std::atomic<ZQTVINCaptureVC::VINSource> lastVINSource{ZQTVINCaptureVC::VINSource::None};
    QPointer<ZQTPlatform::VideoPreviewLayer> prevLayer;
    QPointer<QWidget> highlightView;
    QPointer<QWidget> centerLine;
    QPointer<QLabel> scanResultLbl;
    QPointer<QLabel> cameraOverlayImage;
    // Set on the GUI thread by the reader's callback; cleared there by start and stop.
    std::atomic<bool> isVINScanInProcess{false};
    // Work on the capture queue reaches the screen through this gate; the destructor closes it.
    std::shared_ptr<ZQTPlatform::CompletionGate> captureGate = std::make_shared<ZQTPlatform::CompletionGate>();
};
