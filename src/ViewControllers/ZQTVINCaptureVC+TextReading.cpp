// The capture screen's printed-VIN reading: a text output beside the barcode reader, fed once no
// barcode was read for the configured delay; its read ends the scan as a barcode read does.
#include "ViewControllers/ZQTVINCaptureVC.h"

#include "Model/ZQTVINScanComponentConstants.h"
#include "ViewControllers/ZQTVINCaptureVC_p.h"
#include "platform/foundation/Log.h"

using namespace ZQTPlatform;
using Constants = ZQTVINScanComponentConstants;

bool ZQTVINCaptureVC::enableVINTextReading() const
{
    return d->enableVINTextReading;
}

void ZQTVINCaptureVC::setEnableVINTextReading(bool enable)
{
    d->enableVINTextReading = enable;
}

ZQTVINCaptureVC::VINSource ZQTVINCaptureVC::lastVINSource() const
{
    return d->lastVINSource;
}

void ZQTVINCaptureVC::initVINTextReader()
{
    if (!d->enableVINTextReading || !d->session)
        return;
    logStep("initVINTextReader");
    d->textOutput = std::make_shared<VINTextOutput>();
    d->textOutput->setReadingDelay(Constants::getGlobalFloatForKey(QStringLiteral("VINTextReadingDelay")));
    d->textOutput->setDelegate(
        [this](const VINTextOutput::Reading &reading, CaptureConnection *) {
            // GUI thread. A barcode read may have begun meanwhile; the first read wins.
            if (d->isVINScanInProcess)
                return;
            logStep("textOutput");
            if (d->highlightView && d->prevLayer) {
                MetadataObject object;
                object.bounds = reading.bounds;
                object.frameSize = reading.frameSize;
                d->highlightView->setGeometry(
                    d->prevLayer->transformedMetadataObjectForMetadataObject(object).bounds.toRect());
            }
            captureStillOfRead(reading.vin, VINSource::Text);
        },
        this);
    d->session->addOutput(d->textOutput);
}

void ZQTVINCaptureVC::restartVINTextReader()
{
    if (d->textOutput)
        d->textOutput->restart();
}
