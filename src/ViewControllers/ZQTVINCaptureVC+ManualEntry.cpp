// The capture screen's manual VIN entry: the manual-entry button, the prompt and its OK action.
#include "ViewControllers/ZQTVINCaptureVC.h"

#include "UI/Views/DigitKeyboardView.h"
#include "ViewControllers/VinScannerVCDelegate.h"
#include "ViewControllers/ZQTVINCaptureVC_p.h"
#include "platform/Log.h"
#include "platform/NotificationCenter.h"

using namespace ZQTPlatform;

void ZQTVINCaptureVC::handleManuallyEnterVINBtn()
{
    logStep("handleManuallyEnterVINBtn");
    stopBarCodeScanner();
    promptForVin();
}

void ZQTVINCaptureVC::promptForVin()
{
    logStep("promptForVin");
    dismissOverlayIfShown();
    // The alert with its filtered text field and digit row follows; its OK action is handleManualEntryOK.
}

void ZQTVINCaptureVC::handleManualEntryOK(const QString &fieldText)
{
    logStep("handleManualEntryOK");
    d->vinBarCode = fieldText;
    d->vinBarCode = VINUtility::replaceCharactersInVIN(d->vinBarCode);
    const ZQTVINDetails details = validateVIN(d->vinBarCode);
    sendTimeSpent();
    if (d->delegate)
        d->delegate->didCompleteScanning(details.VIN(), false, details.isValid(), Error());
}

void ZQTVINCaptureVC::keyboardWillHide(const Notification &)
{
    logStep("keyboardWillHide");
    // Takes the digit row away once the manual-entry prompt shows one.
}

bool ZQTVINCaptureVC::textFieldShouldChangeCharactersInRange(TextField *, int location, int length,
                                                             const QString &replacement)
{
    return location + length < 17 || replacement.isEmpty();
}

AlertController *ZQTVINCaptureVC::vinEntryAlertController() const { return d->vinEntryAlertController; }
AlertAction *ZQTVINCaptureVC::vinEntryAlertOKAction() const { return d->vinEntryAlertOKAction; }
DigitKeyboardView *ZQTVINCaptureVC::digitKeyboardView() const { return d->digitKeyboardView.data(); }
