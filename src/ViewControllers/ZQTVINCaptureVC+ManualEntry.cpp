// The capture screen's manual VIN entry: the manual-entry button, the prompt with its filtered
// field and digit row, its OK and Cancel actions, and the picture of a typed text. GUI thread.
#include "ViewControllers/ZQTVINCaptureVC.h"

#include "Model/ZQTVINScanComponentConstants.h"
#include "UI/Views/DigitKeyboardView.h"
#include "ViewControllers/VinScannerVCDelegate.h"
#include "ViewControllers/ZQTVINCaptureVC_p.h"
#include "platform/ui/AlertController.h"
#include "platform/foundation/DeviceProfile.h"
#include "platform/ui/Font.h"
#include "platform/ui/ImageContext.h"
#include "platform/foundation/Log.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/ui/View.h"

#include <QFontMetricsF>

using namespace ZQTPlatform;
using Constants = ZQTVINScanComponentConstants;

namespace {

// A whole VIN: typed edits must end before this position, and OK needs this many characters.
constexpr int vinLength = 17;
constexpr qreal manualScanTextSize = 17.0;

// Letters (with their marks) and digits of any script, upper-cased.
QString upperAlphanumerics(const QString &text)
{
    QString kept;
    for (const char32_t c : text.toUpper().toUcs4()) {
        if (QChar::isLetterOrNumber(c) || QChar::isMark(c))
            kept += QString::fromUcs4(&c, 1);
    }
    return kept;
}

} // namespace

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
    auto *alert = new AlertController(Constants::getConfigStringForKey(QStringLiteral("ManualEntryAlertTitle")),
                                      QStringLiteral(""), AlertController::StyleAlert);
    alert->addTextFieldWithConfigurationHandler([this](TextField *field) {
        field->setClearButtonEnabled(true);
        field->setBorderStyle(TextField::BorderStyle::RoundedRect);
        // The name-and-phone pad, every character capitalised.
        field->setInputMethodHints(Qt::ImhPreferNumbers | Qt::ImhPreferUppercase | Qt::ImhNoPredictiveText);
        field->setDelegate(this);
        field->setInputFilter(upperAlphanumerics);
        connect(field, &TextField::editingChanged, this, &ZQTVINCaptureVC::vinTextFieldChanged);
    });
    const QPointer<ZQTVINCaptureVC> self(this);
    alert->addAction(new AlertAction(
        Constants::getConfigStringForKey(QStringLiteral("ManualEntryAlertCancelButtonText")), AlertAction::StyleCancel,
        [self](AlertAction *) {
            if (!self)
                return;
            self->overlayViewTapped(nullptr);
            self->startBarCodeScanner();
        }));
    auto *ok = new AlertAction(Constants::getConfigStringForKey(QStringLiteral("ManualEntryAlertOkButtonText")),
                               AlertAction::StyleDefault, [self](AlertAction *action) {
                                   if (self)
                                       self->handleManualEntryOK(action->alertController()->textFields().first()->text());
                               });
    ok->setEnabled(false);
    alert->addAction(ok);

    const QPointer<AlertController> presented(alert);
    const QPointer<AlertAction> okAction(ok);
    presentViewController(alert, true, [self, presented, okAction] {
        if (!self || !presented || self->presentedViewController() != presented)
            return;
        self->d->vinEntryAlertController = presented;
        self->d->vinEntryAlertOKAction = okAction;
        // The alert's own view covers the window: the digit row goes along its bottom.
        QWidget *alertHost = presented.data();
        alertHost->setAttribute(Qt::WA_TransparentForMouseEvents, false);
        alertHost->setEnabled(true);
        DigitKeyboardView *keys = DigitKeyboardView::createWithField(presented->textFields().first());
        if (!keys)
            return;
        self->d->digitKeyboardView = keys;
        addSubview(alertHost, keys);
        keys->attachToControllerBottom(alertHost);
    });
    if (presentedViewController() != alert)
        delete alert; // this screen already presents something: the prompt is not shown
}

void ZQTVINCaptureVC::handleManualEntryOK(const QString &fieldText)
{
    logStep("handleManualEntryOK");
    d->vinBarCode = fieldText;
    d->vinBarCode = VINUtility::replaceCharactersInVIN(d->vinBarCode);
    const ZQTVINDetails details = validateVIN(d->vinBarCode);
    sendTimeSpent();
    d->lastVINSource = VINSource::Typed;
    if (d->delegate)
        d->delegate->didCompleteScanning(details.VIN(), false, details.isValid(), Error());
}

void ZQTVINCaptureVC::vinTextFieldChanged(TextField *textField)
{
    if (d->vinEntryAlertOKAction)
        d->vinEntryAlertOKAction->setEnabled(textField->text().size() >= vinLength);
}

void ZQTVINCaptureVC::keyboardWillHide(const Notification &)
{
    logStep("keyboardWillHide");
    if (DigitKeyboardView *keys = d->digitKeyboardView) {
        removeFromSuperview(keys);
        keys->deleteLater();
        d->digitKeyboardView = nullptr;
    }
}

bool ZQTVINCaptureVC::textFieldShouldChangeCharactersInRange(TextField *, int location, int length,
                                                             const QString &replacement)
{
    return location + length < vinLength || replacement.isEmpty();
}

Image ZQTVINCaptureVC::imageForManualScanWithText(const QString &text) const
{
    const QSizeF size = d->cameraImageView ? QSizeF(d->cameraImageView->size()) : QSizeF();
    ImageContext context(size, false, DeviceProfile::current().screenScale);
    if (!context.isValid())
        return Image();
    QPainter &painter = context.painter();
    painter.fillRect(QRectF(QPointF(), size), Qt::black);
    const QFont font = Font::systemFontOfSize(manualScanTextSize);
    const QSizeF label = QFontMetricsF(font).size(0, text);
    const QRectF rect((size.width() - label.width()) / 2.0, (size.height() - label.height()) / 2.0, label.width(),
                      label.height());
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(rect, Qt::AlignCenter, text);
    return context.takeImage();
}

AlertController *ZQTVINCaptureVC::vinEntryAlertController() const { return d->vinEntryAlertController; }
AlertAction *ZQTVINCaptureVC::vinEntryAlertOKAction() const { return d->vinEntryAlertOKAction; }
DigitKeyboardView *ZQTVINCaptureVC::digitKeyboardView() const { return d->digitKeyboardView.data(); }
