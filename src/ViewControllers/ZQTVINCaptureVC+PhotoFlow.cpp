// The capture screen's camera rig, the VIN photo it saves for the claim, and the read-outs
// through which the host collects the claim's photos.
#include "ViewControllers/ZQTVINCaptureVC.h"

#include "Utils/ZQTUserDefaults/ZQTUserDefaults.h"
#include "Utils/ZQTVINScanUtils.h"
#include "ViewControllers/ZQTVINCaptureVC_p.h"
#include "lib/StillCamera/StillCamera.h"
#include "platform/capture/CaptureDevice.h"
#include "platform/foundation/Log.h"
#include "platform/ui/View.h"

#include <QFileInfo>
#include <QGeoPositionInfo>

using namespace ZQTPlatform;

namespace {

const QString photosToBeSavedKey = QStringLiteral("PHOTOS_NAMES_TO_BE_SAVED");
const QString saveImageCompletedKey = QStringLiteral("SAVE_IMAGE_COMPLETED");

// An error as the platform's "%@" writes one.
QString errorDescription(const Error &error)
{
    return QStringLiteral("Error Domain=%1 Code=%2 \"%3\" UserInfo={NSLocalizedDescription=%3}")
        .arg(error.domain())
        .arg(error.code())
        .arg(error.localizedDescription());
}

} // namespace

void ZQTVINCaptureVC::initCameraRig()
{
    logStep("initCameraRig");
    initCameraImageView();
    if (d->enableVinScanning)
        initBarCodeScanner();
    initFlashButtons();
}

void ZQTVINCaptureVC::deinitCameraRig()
{
    logStep("deinitCameraRig");
    deinitCamera();
    if (d->enableVinScanning)
        deinitBarCodeScanner();
}

void ZQTVINCaptureVC::initCameraImageView()
{
    logStep("initCameraImageView");
    layoutIfNeeded(this);
    if (!d->scanOverlayView)
        return;
    // Each appearance makes the view again; the one of an earlier appearance goes.
    delete d->cameraImageView.data();
    auto *imageView = new QLabel(d->scanOverlayView);
    imageView->setObjectName(QStringLiteral("cameraImageView"));
    imageView->setGeometry(d->scanOverlayView->rect());
    imageView->setAlignment(Qt::AlignCenter);
    imageView->setAttribute(Qt::WA_TransparentForMouseEvents);
    imageView->show();
    d->cameraImageView = imageView;
    d->scanOverlayView->setAttribute(Qt::WA_TransparentForMouseEvents);
}

QLabel *ZQTVINCaptureVC::cameraImageView() const
{
    return d->cameraImageView;
}

void ZQTVINCaptureVC::initCamera()
{
    logStep("initCamera");
    // A camera of an earlier call is replaced.
    delete d->camera;
    const QRectF frame = d->cameraImageView ? QRectF(d->cameraImageView->geometry()) : QRectF();
    d->camera = StillCamera::initWithQuality(StillCamera::CameraQuality::Photo, StillCamera::CameraPosition::Back);
    d->camera->attachToViewController(this, frame);
    d->camera->setFixOrientationAfterCapture(true);
    d->camera->setOnError([](StillCamera *, const Error &error) {
        log(QStringLiteral("Camera error: %1").arg(errorDescription(error)));
    });
    d->camera->setGeometry(frame.toRect());
    // Behind the overlays, which stay on top.
    d->camera->lower();
}

void ZQTVINCaptureVC::deinitCamera()
{
    logStep("deinitCamera");
    if (!d->camera)
        return;
    if (d->camera->parentWidget())
        d->camera->removeFromParentViewController();
    delete std::exchange(d->camera, nullptr);
}

void ZQTVINCaptureVC::onTapCamera(const QPointF &tapLocation)
{
    // The focus point is the centre of the preview, not the tap.
    Q_UNUSED(tapLocation);
    logStep("onTapCamera");
    StillCamera *camera = d->camera;
    if (!camera)
        return;
    const QPointF centre(camera->width() * 0.5, camera->height() * 0.5);
    const QPointF pointOfInterest = camera->convertToPointOfInterestFromViewCoordinates(centre);
    camera->focusAtPoint(pointOfInterest);
    CaptureDevice *device = camera->captureDevice();
    if (!device || !device->isFocusPointOfInterestSupported()
        || !device->isFocusModeSupported(CaptureDevice::FocusMode::AutoFocus))
        return;
    // A device that cannot be locked is left as it is, without a word.
    if (!device->lockForConfiguration(nullptr))
        return;
    device->setFocusPointOfInterest(pointOfInterest);
    device->setFocusMode(CaptureDevice::FocusMode::AutoFocus);
    device->unlockForConfiguration();
}

void ZQTVINCaptureVC::processUsePhotoCompletionHandler(const Image &image)
{
    logStep("processUsePhotoCompletionHandler");
    if (image.isNull())
        return;
    QString claimId;
    QString saveTitle;
    QVariantMap photosToBeSaved;
    {
        const QMutexLocker lock(&d->photoStateLock);
        claimId = d->claimId;
        photosToBeSaved = d->photosToBeSaved;
        if (d->vinScanItem)
            saveTitle = d->vinScanItem->saveTitle();
    }
    ZQTUserDefaults::setObject(photosToBeSaved, photosToBeSavedKey, claimId);
    // Without a VIN slot or a save title there is no file name: nothing is stored.
    if (saveTitle.isEmpty())
        return;
    const QString path = ZQTVINScanUtils::createPhotoPathWithClaimId(claimId, saveTitle);
    // A full device raises "NotEnoughFreeSpaceException" from here, after the file is written.
    ZQTVINScanUtils::savePhotoWithClaimId(claimId, image, saveTitle, path);
}

void ZQTVINCaptureVC::imageSavedWithCompletion(const std::function<void(bool)> &completion)
{
    logStep("imageSavedWithCompletion");
    const QVariantMap expected = ZQTUserDefaults::getObjectForKey(photosToBeSavedKey, d->claimId).toMap();
    for (auto it = expected.keyBegin(); it != expected.keyEnd(); ++it) {
        const QString &title = *it;
        if (QFileInfo::exists(ZQTVINScanUtils::createPhotoPathWithClaimId(d->claimId, title)))
            log(QStringLiteral("%1 file found").arg(title));
    }
    ZQTUserDefaults::setBool(true, saveImageCompletedKey, d->claimId);
    if (completion)
        completion(true);
}

QList<ZQTVINPhotoCaptureItem> ZQTVINCaptureVC::allPhotoCaptureItems() const
{
    const QGeoPositionInfo *position = d->enableLocationServices ? location() : nullptr;
    return ZQTVINScanUtils::allPhotoCaptureItemsWithClaimId(d->claimId, position, d->photosToBeSaved.keys());
}

QVariantMap ZQTVINCaptureVC::allPhotoCapturePaths() const
{
    QVariantMap paths;
    for (const ZQTVINPhotoCaptureItem &item : allPhotoCaptureItems())
        paths.insert(item.photoTitle(), item.imagePath());
    return paths;
}

QVariantMap ZQTVINCaptureVC::allPhotoCaptureWithDetails() const
{
    QVariantMap details;
    for (const ZQTVINPhotoCaptureItem &item : allPhotoCaptureItems()) {
        const QDateTime created = item.imageCreatedDate().isValid() ? item.imageCreatedDate()
                                                                    : QDateTime::currentDateTime();
        details.insert(item.photoTitle(), QVariantMap{
                                              {QStringLiteral("photoTitle"), item.photoTitle()},
                                              {QStringLiteral("imageCreatedDate"), created},
                                              {QStringLiteral("imagePath"), item.imagePath()},
                                              {QStringLiteral("latitude"), item.latitude()},
                                              {QStringLiteral("longitude"), item.longitude()},
                                          });
    }
    return details;
}
