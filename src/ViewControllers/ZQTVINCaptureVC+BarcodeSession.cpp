// The capture screen's barcode session: scanner set-up and tear-down, the VIN rule for decoded
// payloads and the report that follows the still picture of a read.
#include "ViewControllers/ZQTVINCaptureVC.h"

#include "ViewControllers/VinScannerVCDelegate.h"
#include "ViewControllers/ZQTVINCaptureVC_p.h"
#include "platform/Log.h"

using namespace ZQTPlatform;

namespace {
constexpr int vinLength = 17;
} // namespace

void ZQTVINCaptureVC::initBarCodeScanner()
{
    logStep("initBarCodeScanner");
    // The capture session, preview and scanning views are built here with the barcode reader.
}

void ZQTVINCaptureVC::startBarCodeScanner()
{
    logStep("startBarCodeScanner");
    // Lays the scanning views out and starts the session once the barcode reader exists.
}

void ZQTVINCaptureVC::stopBarCodeScanner()
{
    logStep("stopBarCodeScanner");
    // Stops the session and takes the scanning views down once the barcode reader exists.
}

void ZQTVINCaptureVC::deinitBarCodeScanner()
{
    logStep("deinitBarCodeScanner");
    // Drops the session's objects once the barcode reader exists.
}

ZQTVINDetails ZQTVINCaptureVC::validateVIN(const QString &payload) const
{
    logStep("validateVIN");
    ZQTVINDetails details;
    QString vin = payload;
    if (vin.startsWith(QLatin1Char('I')))
        vin.remove(0, 1);
    details.setVIN(vin);
    if (VINUtility::checkVINValidity(vin)) {
        details.setIsValid(true);
        return details;
    }
    if (vin.size() > vinLength) {
        const QString first = vin.left(vinLength);
        if (VINUtility::checkVINValidity(first)) {
            details.setVIN(first);
            details.setIsValid(true);
            return details;
        }
        const QString last = vin.right(vinLength);
        if (VINUtility::checkVINValidity(last)) {
            details.setIsValid(true);
            details.setVIN(last);
            return details;
        }
    }
    details.setIsValid(false);
    return details;
}

void ZQTVINCaptureVC::stillImageCaptureCompleted(const QString &payload, const Image &image, const Error &error)
{
    logStep("stillImageCaptureCompleted");
    Error reported = error;
    if (!image.isNull()) {
        d->vinBarCodeImage = image;
        if (d->manuallyEnterVINBtn)
            d->manuallyEnterVINBtn->hide();
        processUsePhotoCompletionHandler(image);
        stopBarCodeScanner();
        dismissOverlayIfShown();
        reported = Error();
    }
    const ZQTVINDetails details = validateVIN(payload);
    sendTimeSpent();
    if (d->delegate)
        d->delegate->didCompleteScanning(details.VIN(), true, details.isValid(), reported);
}
