// The capture screen's public face: factories, options, the modal test and the back button.
#include "ViewControllers/ZQTVINCaptureVC.h"

#include "ViewControllers/VinScannerVCDelegate.h"
#include "ViewControllers/ZQTVINCaptureVC_p.h"
#include "platform/foundation/Log.h"
#include "platform/ui/NavigationController.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/ui/Storyboard.h"
#include "platform/ui/TabBarController.h"

using namespace ZQTPlatform;

namespace {
const bool registeredWithStoryboards =
    Storyboard::registerViewControllerClass<ZQTVINCaptureVC>(QStringLiteral("ZQTVINCaptureVC"));
} // namespace

ZQTVINCaptureVC::ZQTVINCaptureVC() : d(std::make_unique<ZQTVINCaptureVCPrivate>())
{
    Q_UNUSED(registeredWithStoryboards);
}

ZQTVINCaptureVC::~ZQTVINCaptureVC()
{
    logStep("dealloc");
    d->captureGate->close();
    restoreHostNavigationBar();
    for (const QPointer<QWidget> &filler : std::as_const(d->statusBarFillers))
        delete filler.data();
    deinitCameraRig();
    if (!d->enableVinScanning)
        deinitBarCodeScanner();
    NotificationCenter::defaultCenter().removeObserver(this);
}

ZQTVINCaptureVC *ZQTVINCaptureVC::instantiateFromStoryboard()
{
    const Storyboard storyboard =
        Storyboard::storyboardWithName(QStringLiteral("ZQTVINScanComponent"), Bundle::frameworkBundle());
    ViewController *controller = storyboard.instantiateViewControllerWithIdentifier(QStringLiteral("ZQTVINCaptureVC"));
    auto *screen = qobject_cast<ZQTVINCaptureVC *>(controller);
    if (!screen)
        delete controller;
    return screen;
}

ZQTVINCaptureVC *ZQTVINCaptureVC::createVinScannerViewWithDelegate(VinScannerVCDelegate *delegate,
                                                                   const QString &claimId)
{
    return createVinScannerViewWithDelegate(delegate, std::nullopt, claimId);
}

ZQTVINCaptureVC *ZQTVINCaptureVC::createVinScannerViewWithDelegate(VinScannerVCDelegate *delegate,
                                                                   const std::optional<ZQTVINScanAdjuster> &adjuster,
                                                                   const QString &claimId)
{
    ZQTVINCaptureVC *screen = instantiateFromStoryboard();
    if (!screen)
        return nullptr;
    screen->setDelegate(delegate);
    screen->setEnableVinScanning(true);
    screen->setEnableImageExposureAdjusted(true);
    screen->d->hasManualVINOption = false;
    screen->setClaimId(claimId);
    screen->setAdjusterInfo(adjuster);
    return screen;
}

ZQTVINCaptureVC *ZQTVINCaptureVC::createVinScannerManualOptionViewWithDelegate(VinScannerVCDelegate *delegate,
                                                                               const QString &claimId)
{
    return createVinScannerManualOptionViewWithDelegate(delegate, std::nullopt, claimId);
}

ZQTVINCaptureVC *ZQTVINCaptureVC::createVinScannerManualOptionViewWithDelegate(
    VinScannerVCDelegate *delegate, const std::optional<ZQTVINScanAdjuster> &adjuster, const QString &claimId)
{
    ZQTVINCaptureVC *screen = instantiateFromStoryboard();
    if (!screen)
        return nullptr;
    screen->setEnableImageExposureAdjusted(true);
    screen->setDelegate(delegate);
    screen->setClaimId(claimId);
    screen->setAdjusterInfo(adjuster);
    screen->setEnableVinScanning(true);
    screen->d->hasManualVINOption = true;
    return screen;
}

bool ZQTVINCaptureVC::isModal() const
{
    if (presentingViewController())
        return true;
    const NavigationController *navigation = navigationController();
    const ViewController *navigationPresenter = navigation ? navigation->presentingViewController() : nullptr;
    if (navigationPresenter && navigationPresenter->presentedViewController() == navigation)
        return true;
    const TabBarController *tabBar = tabBarController();
    return tabBar && qobject_cast<const TabBarController *>(tabBar->presentingViewController());
}

void ZQTVINCaptureVC::handleBackBtn()
{
    logStep("handleBackBtn");
    stopBarCodeScanner();
    if (isModal()) {
        dismissViewControllerAnimated(true);
    } else if (NavigationController *navigation = navigationController()) {
        navigation->popViewControllerAnimated(true);
    }
}

// --- Options and state

VinScannerVCDelegate *ZQTVINCaptureVC::delegate() const { return d->delegate; }
void ZQTVINCaptureVC::setDelegate(VinScannerVCDelegate *delegate) { d->delegate = delegate; }
QString ZQTVINCaptureVC::claimId() const { return d->claimId; }
void ZQTVINCaptureVC::setClaimId(const QString &claimId)
{
    const QMutexLocker lock(&d->photoStateLock);
    d->claimId = claimId;
}
std::optional<ZQTVINScanAdjuster> ZQTVINCaptureVC::adjusterInfo() const { return d->adjusterInfo; }
void ZQTVINCaptureVC::setAdjusterInfo(const std::optional<ZQTVINScanAdjuster> &adjusterInfo) { d->adjusterInfo = adjusterInfo; }
bool ZQTVINCaptureVC::enableLandscapeMode() const { return d->enableLandscapeMode; }
void ZQTVINCaptureVC::setEnableLandscapeMode(bool enable) { d->enableLandscapeMode = enable; }
bool ZQTVINCaptureVC::enableVinScanning() const { return d->enableVinScanning; }
void ZQTVINCaptureVC::setEnableVinScanning(bool enable) { d->enableVinScanning = enable; }
bool ZQTVINCaptureVC::hasBackButton() const { return d->hasBackButton; }
void ZQTVINCaptureVC::setHasBackButton(bool hasBackButton) { d->hasBackButton = hasBackButton; }
bool ZQTVINCaptureVC::showManualEntry() const { return d->showManualEntry; }
void ZQTVINCaptureVC::setShowManualEntry(bool show) { d->showManualEntry = show; }
QString ZQTVINCaptureVC::vinBarCode() const { return d->vinBarCode; }
void ZQTVINCaptureVC::setVinBarCode(const QString &vinBarCode) { d->vinBarCode = vinBarCode; }
bool ZQTVINCaptureVC::enableLocationServices() const { return d->enableLocationServices; }
void ZQTVINCaptureVC::setEnableLocationServices(bool enable) { d->enableLocationServices = enable; }
bool ZQTVINCaptureVC::showNavigateBar() const { return d->showNavigateBar; }
void ZQTVINCaptureVC::setShowNavigateBar(bool show) { d->showNavigateBar = show; }
uint ZQTVINCaptureVC::mode() const { return d->mode; }
void ZQTVINCaptureVC::setMode(uint mode) { d->mode = mode; }
QList<std::shared_ptr<ZQTVINPhotoCaptureEntity>> ZQTVINCaptureVC::thumbnailItems() const { return d->thumbnailItems; }
void ZQTVINCaptureVC::setThumbnailItems(const QList<std::shared_ptr<ZQTVINPhotoCaptureEntity>> &items) { d->thumbnailItems = items; }
const QGeoPositionInfo *ZQTVINCaptureVC::location() const { return d->location ? &*d->location : nullptr; }
void ZQTVINCaptureVC::setLocation(const QGeoPositionInfo *location)
{
    d->location = location ? std::optional<QGeoPositionInfo>(*location) : std::nullopt;
}
QVariantMap ZQTVINCaptureVC::photosToBeSaved() const { return d->photosToBeSaved; }
void ZQTVINCaptureVC::setPhotosToBeSaved(const QVariantMap &photosToBeSaved)
{
    const QMutexLocker lock(&d->photoStateLock);
    d->photosToBeSaved = photosToBeSaved;
}
QVariantMap ZQTVINCaptureVC::photoCaptureItemsDict() const { return d->photoCaptureItemsDict; }
void ZQTVINCaptureVC::setPhotoCaptureItemsDict(const QVariantMap &dictionary) { d->photoCaptureItemsDict = dictionary; }
qint64 ZQTVINCaptureVC::currentThumbnailNdx() const { return d->currentThumbnailNdx; }
void ZQTVINCaptureVC::setCurrentThumbnailNdx(qint64 index) { d->currentThumbnailNdx = index; }
bool ZQTVINCaptureVC::enableWizardStyle() const { return d->enableWizardStyle; }
void ZQTVINCaptureVC::setEnableWizardStyle(bool enable) { d->enableWizardStyle = enable; }
bool ZQTVINCaptureVC::enableImageExposureAdjusted() const { return d->enableImageExposureAdjusted; }
void ZQTVINCaptureVC::setEnableImageExposureAdjusted(bool enable) { d->enableImageExposureAdjusted = enable; }
bool ZQTVINCaptureVC::additionalPhotoMode() const { return d->additionalPhotoMode; }
void ZQTVINCaptureVC::setAdditionalPhotoMode(bool mode) { d->additionalPhotoMode = mode; }
QVariantMap ZQTVINCaptureVC::savedImageDictionary() const { return d->savedImageDictionary; }
void ZQTVINCaptureVC::setSavedImageDictionary(const QVariantMap &dictionary) { d->savedImageDictionary = dictionary; }
bool ZQTVINCaptureVC::launchPhotoCaptureViewWithDefaultImagesAlways() const { return d->launchPhotoCaptureViewWithDefaultImagesAlways; }
void ZQTVINCaptureVC::setLaunchPhotoCaptureViewWithDefaultImagesAlways(bool always) { d->launchPhotoCaptureViewWithDefaultImagesAlways = always; }

bool ZQTVINCaptureVC::hasManualVINOption() const { return d->hasManualVINOption; }
Bundle ZQTVINCaptureVC::bundle() const { return d->bundle; }
QDateTime ZQTVINCaptureVC::startingTime() const { return d->startingTime; }
float ZQTVINCaptureVC::scaleFactor() const { return d->scaleFactor; }
float ZQTVINCaptureVC::angle() const { return d->angle; }
uint ZQTVINCaptureVC::flashSetting() const { return d->flashSetting; }
double ZQTVINCaptureVC::cameraViewDim() const { return d->cameraViewDim; }
Image ZQTVINCaptureVC::vinBarCodeImage() const { return d->vinBarCodeImage; }

QString ZQTVINCaptureVC::vinInProcess() const
{
    const QMutexLocker lock(&d->photoStateLock);
    return d->vinInProcess;
}
std::shared_ptr<ZQTVINPhotoCaptureEntity> ZQTVINCaptureVC::vinScanItem() const { return d->vinScanItem; }
StillCamera *ZQTVINCaptureVC::camera() const { return d->camera; }
