// The VIN capture screen that a host embeds, one per claim: made by one of the four factories,
// pushed or presented by the host, and reporting the VIN (scanned or typed, valid or not) to its
// VinScannerVCDelegate. The screen never closes itself after a report.
#pragma once

#include "ZQTGlobal.h"
#include "Model/ZQTVINPhotoCaptureEntity.h"
#include "Model/ZQTVINPhotoCaptureItem.h"
#include "Model/ZQTVINScanAdjuster.h"
#include "Utils/VINUtility.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/Error.h"
#include "platform/ui/Image.h"
#include "platform/ui/TextField.h"
#include "platform/ui/ViewController.h"

#include <QDateTime>
#include <QList>
#include <QPointF>
#include <QString>
#include <QVariant>
#include <functional>
#include <memory>
#include <optional>

class QGeoPositionInfo;
class QLabel;
class QPushButton;
class DigitKeyboardView;
class StillCamera;
class VinScannerVCDelegate;
struct ZQTVINCaptureVCPrivate;

namespace ZQTPlatform {
struct Notification;
class AlertAction;
class AlertController;
class ImageView;
class NavigationBar;
class TapGestureRecognizer;
struct MetadataObject;
struct SampleBuffer;
class CaptureConnection;
class CaptureDevice;
class CaptureSession;
class MetadataOutput;
class StillImageOutput;
class VideoPreviewLayer;
}

class ZQT_EXPORT ZQTVINCaptureVC : public ZQTPlatform::ViewController, public ZQTPlatform::TextFieldDelegate
{
    Q_OBJECT
    Q_PROPERTY(VINSource lastVINSource READ lastVINSource)

public:
    // How the VIN of a report was read: from a barcode, from the printed characters, or typed.
    enum class VINSource { None, Barcode, Text, Typed };
    Q_ENUM(VINSource)

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
    // The last known position, set by the host (the component never fills it); nullptr when
    // there is none. Photo read-outs carry its coordinates while location services are on.
    const QGeoPositionInfo *location() const;
    void setLocation(const QGeoPositionInfo *location); // copied; nullptr forgets it
    // Titles of the photos the host expects (the keys; values are the host's).
    QVariantMap photosToBeSaved() const;
    void setPhotosToBeSaved(const QVariantMap &photosToBeSaved);
    // Kept for the host only; nothing in the screen depends on these.
    QVariantMap photoCaptureItemsDict() const;
    void setPhotoCaptureItemsDict(const QVariantMap &dictionary);
    // The selected carousel slot; photos always go to the VIN slot whatever it says.
    qint64 currentThumbnailNdx() const;
    void setCurrentThumbnailNdx(qint64 index);
    uint mode() const;
    void setMode(uint mode);
    // The host's further photo slots, after the VIN slot, in carousel order.
    QList<std::shared_ptr<ZQTVINPhotoCaptureEntity>> thumbnailItems() const;
    void setThumbnailItems(const QList<std::shared_ptr<ZQTVINPhotoCaptureEntity>> &items);
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
    // Also read the printed VIN when no barcode was read for the configured
    // "VINTextReadingDelay"; off by default. Takes effect at the next appearance.
    bool enableVINTextReading() const;
    void setEnableVINTextReading(bool enable);
    // How the VIN of the last report was read (None before the first). Set before the delegate
    // is called, so the delegate may ask, from any thread.
    VINSource lastVINSource() const;

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
    // The VIN of the barcode read being handled: set when the code is read, empty again once the
    // delegate has the report. Safe from any thread, so that a host's uncaught-exception handler
    // on the capture thread (a full device while the VIN photo is saved) can name the VIN.
    QString vinInProcess() const;
    // The VIN photo slot; absent until the photo catalogue builds it.
    std::shared_ptr<ZQTVINPhotoCaptureEntity> vinScanItem() const;
    // The still camera (a child of this screen); nullptr until initCamera makes one and after
    // deinitCamera.
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
    // The video orientation for the preview's connection: the interface orientation when it is
    // 2, 3 or 4, else 1 (portrait).
    int orientationForConnection() const;

    // --- Layout, navigation bar and flash.
    // The inner bar's navigation item: its title and bar items. The platform layer's bar carries
    // its one item itself, so this is the inner bar under the item's name.
    ZQTPlatform::NavigationBar *navItem() const;
    // The manual-entry button under its two names (nullptr before the scene loads): the scene's
    // manuallyEnterVINBtn, and manualEnterButton, the handle the barcode session brings to the
    // front of its superview. Both name the one button.
    QPushButton *manuallyEnterVINBtn() const;
    QPushButton *manualEnterButton() const;
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
    // Builds the pipeline (session over the default video device, barcode reader, still
    // output, preview) and the scanning views, once.
    void initBarCodeScanner();
    // Lays the scanning views out over the camera area, starts the session and accepts codes.
    void startBarCodeScanner();
    // Stops accepting codes and the session, and takes the scanning views down.
    void stopBarCodeScanner();
    // Drops every object of the pipeline.
    void deinitBarCodeScanner();
    // The barcode reader's callback (GUI thread): the first code of an accepted type with a
    // payload shows its text and asks for the still picture of the moment; further codes are
    // ignored until the scanner is started or stopped again.
    void captureOutput(ZQTPlatform::MetadataOutput *output, const QList<ZQTPlatform::MetadataObject> &metadataObjects,
                       ZQTPlatform::CaptureConnection *connection);
    // A decoded payload as a VIN and its validity: one leading "I" dropped, then the check, then
    // for 18 characters or more the first and the last 17 characters.
    ZQTVINDetails validateVIN(const QString &payload) const;
    // The still picture of a barcode read arrived, on the capture queue (buffer nullptr when the
    // capture failed, error as delivered). With a picture: keeps it, hides the manual button,
    // saves it as the VIN photo, stops the scanner and dismisses the help overlay; then reports
    // the payload as scanned to the delegate from this thread. Encoding and saving run here;
    // view changes run on the GUI thread while this thread waits, so the order holds. The
    // screen must be alive at the call; if it is destroyed meanwhile, the rest is skipped. The
    // delegate is called holding nothing the screen's destructor waits for: it may wait for the
    // GUI thread and delete the screen there.
    void stillImageCaptureCompleted(const QString &payload, std::shared_ptr<const ZQTPlatform::SampleBuffer> buffer,
                                    const ZQTPlatform::Error &error);
    // true: a VIN picture exists (manual button hidden, prompt back in the label, camera area
    // shown, scanner not started); false: scanning again (still camera stopped, manual button
    // shown, scanner started).
    void processToggleBarCodeWithImageExists(bool imageExists);
    // The pipeline and the scanning views, for reading (nullptr before initBarCodeScanner).
    ZQTPlatform::CaptureSession *session() const;
    ZQTPlatform::CaptureDevice *device() const;
    ZQTPlatform::MetadataOutput *output() const;
    ZQTPlatform::StillImageOutput *stillImageOutput() const;
    ZQTPlatform::VideoPreviewLayer *prevLayer() const;
    QWidget *highlightView() const;
    QWidget *centerLine() const;
    QLabel *scanResultLbl() const;
    QLabel *cameraOverlayImage() const;
    bool isVINScanInProcess() const;
    // Whether the camera could not be used (no device, an unusable one, or one that failed):
    // the camera area then shows the no-camera notice instead of the scanner.
    bool isCameraUnavailable() const;

    // --- Manual entry.
    void handleManuallyEnterVINBtn();
    void promptForVin();
    // The prompt's OK action with the text of its field: normalises, validates and reports it
    // as typed (not scanned).
    void handleManualEntryOK(const QString &fieldText);
    // The prompt field's editing-changed action: enables OK at 17 characters or more. (The field
    // itself keeps letters and digits only, upper-cased, as they are entered.)
    void vinTextFieldChanged(ZQTPlatform::TextField *textField);
    // The prompt field's edit filter: an edit ending below position 17, or a deletion.
    bool textFieldShouldChangeCharactersInRange(ZQTPlatform::TextField *textField, int location, int length,
                                                const QString &replacement) override;
    void keyboardWillHide(const ZQTPlatform::Notification &notification);
    // The text in white, centred on a black picture the size of the camera area.
    ZQTPlatform::Image imageForManualScanWithText(const QString &text) const;
    // The open prompt, its OK action and its digit row (nullptr while there is none).
    ZQTPlatform::AlertController *vinEntryAlertController() const;
    ZQTPlatform::AlertAction *vinEntryAlertOKAction() const;
    DigitKeyboardView *digitKeyboardView() const;

    // --- Help overlay.
    void showOverlay();
    void showOverlayWithForce(bool force);
    void handleHelpBtn();
    // A tap on the card: fades it out in 0.2 s and starts the still camera again.
    void overlayViewTapped(ZQTPlatform::TapGestureRecognizer *recognizer);
    // Takes the card down at once; the camera is left as it is.
    void dismissOverlayIfShown();
    // Whether an overlay text is the word "blank", in any case.
    bool isOverlayValueBlank(const QString &value) const;
    // The spare image view showing the image (made, with a 1-point black border, on first use).
    ZQTPlatform::ImageView *overlayImageViewWithImage(const ZQTPlatform::Image &image);
    // The view of the last card shown (nullptr before the first and after a tap closed one).
    QWidget *overlayView2() const;

    // --- Adjuster contact panel.
    // The menu button's action: posts the adjuster-menu analytics event and shows the panel.
    void showAdjusterInfo();

    // --- Photo catalogue.
    // Builds the VIN slot from configuration and the pictures "carousel_VIN", "help_info_vin" or
    // the help frames, and "cam_info_vin"; it becomes vinScanItem only when it is valid.
    void setVINPhotoCaptureEntity();
    // Fills the slot's animation frames from the help page's "imageName" list: the pictures
    // forward then back (a, b, c gives a, b, c, c, b, a). Returns the last frame (the first
    // picture), or the null image for an empty list. Throws ZQTPlatform::Exception
    // ("NSInvalidArgumentException", after one log line) when a named picture does not exist.
    ZQTPlatform::Image getAnimationImages(qint32 index, ZQTVINPhotoCaptureEntity &forPhotoCaptureEntity);
    // The host's further slots (thumbnailItems).
    QList<std::shared_ptr<ZQTVINPhotoCaptureEntity>> builtinZQTPhotoCaptureEntitis() const;
    using PhotoCaptureEntitiesCompletion =
        std::function<void(const QList<std::shared_ptr<ZQTVINPhotoCaptureEntity>> &entities,
                           const ZQTPlatform::Error &error)>;
    // Hands builtinZQTPhotoCaptureEntitis (taken at the call) and the null error to the
    // completion, which runs on a thread of the global pool.
    void builtinThumbnailPreviewItemsWithCompletion(const PhotoCaptureEntitiesCompletion &completion);

    // --- Photo flow.
    // The camera area: cameraImageView, then the barcode scanner when enableVinScanning, then
    // the flash buttons.
    void initCameraRig();
    // The still camera, then the barcode scanner when enableVinScanning.
    void deinitCameraRig();
    // The placeholder view that fixes the camera preview's frame, filling the scan overlay.
    void initCameraImageView();
    // The view that holds the camera preview (nullptr before the first appearance); each
    // appearance makes it again.
    QLabel *cameraImageView() const;
    // Makes the still camera (photo quality, rear camera, orientation fixing on), attaches it to
    // this screen with cameraImageView's frame (which the attachment also sets on this screen's
    // own view), gives it cameraImageView's frame and puts it behind every overlay. Its errors
    // are logged as "Camera error: %@". A camera of an earlier call is deleted. The VIN flow
    // never calls it (its picture comes from the barcode session).
    void initCamera();
    // Detaches and deletes the still camera, when there is one; camera() is nullptr afterwards.
    void deinitCamera();
    // A tap on the camera preview: focuses at the centre of the preview, wherever the tap was,
    // through the camera and then on its device directly (a device that cannot be locked is
    // left alone). Nothing happens while there is no still camera.
    void onTapCamera(const QPointF &tapLocation);
    // Saves the picture as the claim's VIN photo under the VIN slot's saveTitle (nothing for a
    // null picture, no VIN slot or an empty saveTitle), after recording photosToBeSaved in the
    // claim's settings under "PHOTOS_NAMES_TO_BE_SAVED". Encoding and writing run synchronously on
    // the calling thread and a full device raises "NotEnoughFreeSpaceException" to the caller,
    // so call it off the GUI thread (the barcode session calls it from its capture worker). It
    // reads claimId, vinScanItem and photosToBeSaved as one snapshot, safely against the GUI
    // thread changing them.
    void processUsePhotoCompletionHandler(const ZQTPlatform::Image &image);
    // Marks the claim's saving completed ("SAVE_IMAGE_COMPLETED" = true) after logging
    // "<title> file found" for each expected photo on disk; calls the completion with true on
    // the calling thread.
    void imageSavedWithCompletion(const std::function<void(bool success)> &completion);
    // The claim's photos: those on disk, then a placeholder (no photo, no date) for each title of
    // photosToBeSaved that has none. Positions come from location when location services are on.
    QList<ZQTVINPhotoCaptureItem> allPhotoCaptureItems() const;
    // Photo title -> file path of allPhotoCaptureItems.
    QVariantMap allPhotoCapturePaths() const;
    // Photo title -> {"photoTitle", "imageCreatedDate" (now for placeholders), "imagePath",
    // "latitude", "longitude"} of allPhotoCaptureItems.
    QVariantMap allPhotoCaptureWithDetails() const;

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
    // What deinitBarCodeScanner drops, without its log step.
    void dropBarcodePipeline();
    // The read of a VIN (barcode or text) ends the scan: shows the VIN, keeps how it was read and
    // asks for the still picture of the moment, whose completion saves it and reports the VIN.
    void captureStillOfRead(const QString &payload, VINSource source);
    // The printed-VIN reader beside the barcode reader, when enableVINTextReading: made with the
    // pipeline, started with the scanner, restarted whenever a barcode is seen.
    void initVINTextReader();
    void restartVINTextReader();
    // stillImageCaptureCompleted with the capture gate held by the caller.
    void completeStillCapture(const QString &payload, const std::shared_ptr<const ZQTPlatform::SampleBuffer> &buffer,
                              const ZQTPlatform::Error &error);
    int forcedDeviceOrientation() const;
    void connectOutlets();
    // Shows the host's navigation bar again if this screen hid it.
    void restoreHostNavigationBar();
    // The manual-entry button's configured look, for the strip's button and the no-camera notice's.
    void styleManualEntryButton(QPushButton *button);
    // After the pipeline is built: a missing or unusable device counts as a camera failure at
    // once, a later failure of the device when it comes (GUI thread).
    void watchCaptureDevice();
    // Logs the reason once per screen and shows the no-camera notice in the camera area: the
    // configured "CameraUnavailableText" and, on a screen without the manual option, a button
    // that opens the manual prompt (the strip's button is shown on one with it).
    void cameraDidFail(const QString &reason);
    void showCameraUnavailable();
    // configLayout's work without its log step: the camera area's side and the control panel
    // below (portrait) or beside (landscape) the camera area, for the view's present size.
    void sizeCameraArea();
    // Places the views of the camera area over its present bounds: the camera image view, the
    // preview layer and the still camera's view fill it, the guide picture is drawn at its size,
    // the prompt runs below the guide's top and the centre line crosses its middle. Runs when
    // scanning starts and whenever the camera area changes size.
    void layoutCameraArea();

protected:
    // GUI thread: follows the camera area's size changes (the scene's layout makes them).
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    std::unique_ptr<ZQTVINCaptureVCPrivate> d;
};
