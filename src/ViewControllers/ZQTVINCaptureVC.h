// The VIN capture screen that a host embeds, one per claim: made by one of the four factories,
// pushed or presented by the host, and reporting the VIN (scanned or typed, valid or not) to its
// VinScannerVCDelegate. The screen never closes itself after a report.
#pragma once

#include "ZQTGlobal.h"
#include "Model/ZQTVINScanAdjuster.h"
#include "Utils/VINUtility.h"
#include "platform/Bundle.h"
#include "platform/Error.h"
#include "platform/Image.h"
#include "platform/ViewController.h"

#include <QDateTime>
#include <QString>
#include <QVariant>
#include <memory>
#include <optional>

class StillCamera;
class VinScannerVCDelegate;
class ZQTVINPhotoCaptureEntity;
struct ZQTVINCaptureVCPrivate;

namespace ZQTPlatform {
struct Notification;
}

class ZQT_EXPORT ZQTVINCaptureVC : public ZQTPlatform::ViewController
{
    Q_OBJECT

public:
    // Made by the storyboard; hosts use the factories below.
    ZQTVINCaptureVC();
    ~ZQTVINCaptureVC() override;

    // --- Factories. Each loads the scene "ZQTVINCaptureVC" of the storyboard "ZQTVINScanComponent"
    // in the component's own bundle and returns the screen unpresented; the caller owns it.
    // No adjuster; enableVinScanning and enableImageExposureAdjusted on; no manual VIN option.
    static ZQTVINCaptureVC *createVinScannerViewWithDelegate(VinScannerVCDelegate *delegate, const QString &claimId);
    static ZQTVINCaptureVC *createVinScannerViewWithDelegate(VinScannerVCDelegate *delegate,
                                                             const std::optional<ZQTVINScanAdjuster> &adjuster,
                                                             const QString &claimId);
    // As above, with the manual VIN option (the manual-entry strip and the carousel stay).
    static ZQTVINCaptureVC *createVinScannerManualOptionViewWithDelegate(VinScannerVCDelegate *delegate,
                                                                         const QString &claimId);
    static ZQTVINCaptureVC *createVinScannerManualOptionViewWithDelegate(VinScannerVCDelegate *delegate,
                                                                         const std::optional<ZQTVINScanAdjuster> &adjuster,
                                                                         const QString &claimId);

    // --- Options. Booleans not set by a factory are false, objects absent.
    VinScannerVCDelegate *delegate() const;
    void setDelegate(VinScannerVCDelegate *delegate); // not owned
    QString claimId() const;
    void setClaimId(const QString &claimId);
    std::optional<ZQTVINScanAdjuster> adjusterInfo() const;
    void setAdjusterInfo(const std::optional<ZQTVINScanAdjuster> &adjusterInfo);
    // Landscape orientation policy and the landscape variants of layout and help overlay.
    bool enableLandscapeMode() const;
    void setEnableLandscapeMode(bool enable);
    // Whether setting up the camera rig also sets up the barcode scanner.
    bool enableVinScanning() const;
    void setEnableVinScanning(bool enable);
    bool hasBackButton() const;
    void setHasBackButton(bool hasBackButton);
    // Open with the manual VIN prompt instead of the barcode scanner.
    bool showManualEntry() const;
    void setShowManualEntry(bool show);
    // The VIN typed by hand, after normalisation.
    QString vinBarCode() const;
    void setVinBarCode(const QString &vinBarCode);
    // Forced on at every appearance.
    bool enableLocationServices() const;
    void setEnableLocationServices(bool enable);
    // When off, the host navigation controller's bar is hidden at every appearance.
    bool showNavigateBar() const;
    void setShowNavigateBar(bool show);
    // Kept for the host only; nothing in the screen depends on these.
    uint mode() const;
    void setMode(uint mode);
    QVariantList thumbnailItems() const;
    void setThumbnailItems(const QVariantList &items);
    bool enableWizardStyle() const;
    void setEnableWizardStyle(bool enable);
    bool enableImageExposureAdjusted() const;
    void setEnableImageExposureAdjusted(bool enable);
    bool additionalPhotoMode() const;
    void setAdditionalPhotoMode(bool mode);
    QVariantMap savedImageDictionary() const;
    void setSavedImageDictionary(const QVariantMap &dictionary);
    bool launchPhotoCaptureViewWithDefaultImagesAlways() const;
    void setLaunchPhotoCaptureViewWithDefaultImagesAlways(bool always);

    // --- State of the screen, for reading.
    // Set by the manual-option factories.
    bool hasManualVINOption() const;
    // The component's own bundle, once configMode has run.
    ZQTPlatform::Bundle bundle() const;
    // When viewDidLoad ran: the base of the time-on-screen event.
    QDateTime startingTime() const;
    float scaleFactor() const; // 2.0 once loaded
    float angle() const;       // 180.0 once loaded
    // 0 off, 1 on.
    uint flashSetting() const;
    // The side of the camera area worked out by configLayout.
    double cameraViewDim() const;
    // The still picture taken at a successful barcode read.
    ZQTPlatform::Image vinBarCodeImage() const;
    // The VIN photo slot; absent until the photo catalogue builds it.
    std::shared_ptr<ZQTVINPhotoCaptureEntity> vinScanItem() const;
    // The still camera; nullptr until initCamera makes one.
    StillCamera *camera() const;

    // --- Public face.
    // Presented (directly, inside a presented navigation controller, or in a tab bar controller
    // presented by a tab bar controller) rather than pushed.
    bool isModal() const;
    // The back button: stops the scanner, then dismisses a modal screen or pops a pushed one.
    void handleBackBtn();

    // --- Lifecycle (in start-up order).
    void awakeFromNib() override;
    void viewDidLoad() override;
    void viewWillAppear(bool animated) override;
    void viewDidAppear(bool animated) override;
    void viewWillDisappear(bool animated) override;
    void didReceiveMemoryWarning() override;
    void initializeView();
    void intialConfiguration();
    void configMode();
    // The application's foreground and background notifications.
    void appBecomeActive();
    void appDidEnterBackGround();

    // --- Orientation and status bar.
    unsigned supportedInterfaceOrientations() const override;
    bool shouldAutorotate() const override;
    bool shouldAutorotateToInterfaceOrientation(int orientation) const override;
    int preferredInterfaceOrientationForPresentation() const override;
    int preferredStatusBarStyle() const override;
    bool prefersStatusBarHidden() const override;
    void viewWillTransitionToSize(const QSizeF &size, ZQTPlatform::TransitionCoordinator *coordinator) override;
    void viewWillLayoutSubviews() override;

    // --- Layout, navigation bar and flash.
    void setupViewComponents();
    void setNavigationBackgroundColor(const QColor &color);
    void setNavigationItemTintColor(const QColor &color);
    void configNavButtons();
    void updateViewTitleWithTitle(const QString &title);
    void resizeViewForNormalScan();
    void configLayout();
    void initFlashButtons();
    void handleFlashBtn();
    void updateFlashControls(bool userChange);
    void turnTorchOn(bool on);

    // --- Barcode session.
    void initBarCodeScanner();
    void startBarCodeScanner();
    void stopBarCodeScanner();
    void deinitBarCodeScanner();
    // A decoded payload as a VIN and its validity: one leading "I" dropped, then the check, then
    // for 18 characters or more the first and the last 17 characters.
    ZQTVINDetails validateVIN(const QString &payload) const;
    // The still picture of a barcode read arrived (image null when none could be made, error
    // as delivered): saves it and stops scanning when there is a picture, then reports the
    // payload as scanned. Call it on the GUI thread.
    void stillImageCaptureCompleted(const QString &payload, const ZQTPlatform::Image &image,
                                    const ZQTPlatform::Error &error);

    // --- Manual entry.
    void handleManuallyEnterVINBtn();
    void promptForVin();
    // The prompt's OK action with the text of its field: normalises, validates and reports it
    // as typed (not scanned).
    void handleManualEntryOK(const QString &fieldText);
    void keyboardWillHide(const ZQTPlatform::Notification &notification);

    // --- Help overlay.
    void showOverlay();
    void showOverlayWithForce(bool force);
    void handleHelpBtn();
    void dismissOverlayIfShown();

    // --- Photo flow.
    void initCameraRig();
    void deinitCameraRig();
    void initCameraImageView();
    void deinitCamera();
    void setVINPhotoCaptureEntity();
    void processUsePhotoCompletionHandler(const ZQTPlatform::Image &image);

    // --- Permissions and analytics.
    // The title and message that fit a missing camera or location permission.
    struct PermissionTexts
    {
        QString title;
        QString message;
    };
    // The foreground check: asks for camera access when the camera is not determined (or when
    // location is not determined while location services are enabled), and chooses the texts
    // when a permission is refused. The screen shows no texts itself.
    void permissionConverCheck();
    // The texts the last permissionConverCheck chose; empty when it chose none. For hosts that
    // show their own cover.
    PermissionTexts permissionTexts() const;
    // Whether the camera may still be used: its status is not determined or authorised.
    // The argument is ignored.
    bool permissionCheckWithThrow(bool shouldThrow);
    // Posts "ANALYTICS_INFO" with the event of the type (0 help, 1 flash, 2 time on screen,
    // 3 adjuster menu); a null content stands for none. Types above 3 post nothing.
    void pushAnalyticsInfoForEventType(uint type, const QString &content);
    void sendTimeSpent();

private:
    static ZQTVINCaptureVC *instantiateFromStoryboard();
    int forcedDeviceOrientation() const;
    void connectOutlets();

    std::unique_ptr<ZQTVINCaptureVCPrivate> d;
};
