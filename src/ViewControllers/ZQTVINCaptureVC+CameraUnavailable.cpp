// The capture screen without a camera: when there is no video device, or the one there cannot
// be used or stops working, the camera area says so and offers the manual prompt, so the VIN
// can still be typed, also on a screen made without the manual option.
#include "ViewControllers/ZQTVINCaptureVC.h"

#include "Model/ZQTVINScanComponentConstants.h"
#include "ViewControllers/ZQTVINCaptureVC_p.h"
#include "lib/Categories/View+ZQTExtend.h"
#include "platform/ui/Font.h"
#include "platform/foundation/Log.h"
#include "platform/ui/View.h"

#include <QVBoxLayout>

using namespace ZQTPlatform;
using Constants = ZQTVINScanComponentConstants;

namespace {
constexpr qreal noticeFontSize = 17.0;
constexpr int noticeMargin = 16;
constexpr int noticeButtonHeight = 44;
} // namespace

void ZQTVINCaptureVC::watchCaptureDevice()
{
    QObject::disconnect(d->deviceFailure);
    if (!d->device) {
        cameraDidFail(QStringLiteral("no video device"));
        return;
    }
    if (!d->input) {
        cameraDidFail(d->device->availabilityError().localizedDescription());
        return;
    }
    d->deviceFailure = connect(d->device, &CaptureDevice::failed, this,
                               [this](const Error &error) { cameraDidFail(error.localizedDescription()); });
}

void ZQTVINCaptureVC::cameraDidFail(const QString &reason)
{
    // Once per screen: a device that fails again says nothing new.
    if (d->cameraFailure.isNull())
        log(QStringLiteral("The camera cannot be used (%1); the VIN can be typed instead").arg(reason));
    d->cameraFailure = reason.isNull() ? QStringLiteral("") : reason;
    showCameraUnavailable();
}

bool ZQTVINCaptureVC::isCameraUnavailable() const
{
    return !d->cameraFailure.isNull();
}

void ZQTVINCaptureVC::showCameraUnavailable()
{
    // The notice lies over the camera area as its sibling: the area itself takes no touches.
    QWidget *cameraArea = d->scanOverlayView;
    if (!cameraArea || !cameraArea->parentWidget())
        return;
    if (!d->cameraUnavailableView) {
        auto *notice = new QWidget;
        notice->setObjectName(QStringLiteral("cameraUnavailableView"));
        setBackgroundColor(notice, Constants::getGlobalColorForKey(QStringLiteral("ApplicationBackgroundColor")));
        auto *layout = new QVBoxLayout(notice);
        layout->setContentsMargins(noticeMargin, noticeMargin, noticeMargin, noticeMargin);
        layout->setSpacing(noticeMargin);
        layout->addStretch();

        auto *text = new QLabel(Constants::getConfigStringForKey(QStringLiteral("CameraUnavailableText")));
        text->setObjectName(QStringLiteral("cameraUnavailableLbl"));
        text->setTextFormat(Qt::PlainText);
        text->setWordWrap(true);
        text->setAlignment(Qt::AlignCenter);
        setTextColor(text, Qt::white);
        text->setFont(Font::fontWithName(Constants::getConfigStringForKey(QStringLiteral("ScanningLabelTextFontType")),
                                         noticeFontSize)
                          .value_or(text->font()));
        layout->addWidget(text);

        // The strip's own button is there on a screen with the manual option; elsewhere the
        // notice carries one.
        if (!d->hasManualVINOption) {
            auto *button = new QPushButton;
            button->setObjectName(QStringLiteral("cameraUnavailableManualBtn"));
            button->setFixedHeight(noticeButtonHeight);
            styleManualEntryButton(button);
            connect(button, &QPushButton::clicked, this, &ZQTVINCaptureVC::handleManuallyEnterVINBtn);
            layout->addWidget(button);
        }
        layout->addStretch();

        notice->setParent(cameraArea->parentWidget());
        ZQTExtend::addConstraintAttachTopToInside(notice, cameraArea);
        ZQTExtend::addConstraintAttachLeftToInside(notice, cameraArea);
        ZQTExtend::addConstraintAttachRightToInside(notice, cameraArea);
        ZQTExtend::addConstraintAttachBottomToInside(notice, cameraArea);
        d->cameraUnavailableView = notice;
    }
    d->cameraUnavailableView->setGeometry(cameraArea->geometry());
    d->cameraUnavailableView->show();
    d->cameraUnavailableView->raise();
    if (d->manuallyEnterVINBtn && d->hasManualVINOption)
        d->manuallyEnterVINBtn->show();
}
