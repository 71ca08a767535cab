// The capture screen's help overlay: the card that explains the VIN step, shown on request or by
// itself after appearing, faded out by a tap, or taken down at once by a read or the manual prompt.
#include "ViewControllers/ZQTVINCaptureVC.h"

#include "Model/ZQTVINScanComponentConstants.h"
#include "ViewControllers/ZQTVINCaptureOverlayVC.h"
#include "ViewControllers/ZQTVINCaptureVC_p.h"
#include "lib/Categories/View+ZQTExtend.h"
#include "lib/StillCamera/StillCamera.h"
#include "platform/ui/ImageView.h"
#include "platform/foundation/Log.h"
#include "platform/ui/Storyboard.h"
#include "platform/ui/TapGestureRecognizer.h"
#include "platform/ui/View.h"
#include "platform/ui/ViewAnimation.h"

using namespace ZQTPlatform;
using Constants = ZQTVINScanComponentConstants;

namespace {

constexpr uint helpOverlayEvent = 0;
constexpr double showSeconds = 0.5;
constexpr double closeSeconds = 0.2;
// One pass over the help picture's frames.
constexpr double animationSeconds = 5.0;
constexpr qreal spareImageBorderWidth = 1.0;

struct OverlayTexts
{
    QString header;
    QString title;
    QString description;
};

void styleLabel(QLabel *label, const QString &text, const char *colorKey, const char *fontKey)
{
    if (!label)
        return;
    // Configuration text, shown as written: markup in it is never rendered.
    label->setTextFormat(Qt::PlainText);
    label->setText(text);
    Constants::configLabel(label, Constants::getGlobalColorForKey(QLatin1String(colorKey)),
                           Constants::getConfigStringForKey(QLatin1String(fontKey)));
}

// On a screen that also reads printed VINs, the card says so: its title and description are the
// configured printed-VIN texts, where they are configured (a configuration without them keeps the
// slot's own).
void withPrintedVIN(OverlayTexts &texts)
{
    const QString title = Constants::getConfigurableValueForKey(QStringLiteral("HelpOverlayTitlePrintedVIN")).toString();
    const QString description =
        Constants::getConfigurableValueForKey(QStringLiteral("HelpOverlayDescrPrintedVIN")).toString();
    if (!title.isEmpty())
        texts.title = title;
    if (!description.isEmpty())
        texts.description = description;
}

// A view that the screen keeps out of its view tree goes when the screen goes.
void deleteWithScreen(QWidget *view, QObject *screen)
{
    QObject::connect(screen, &QObject::destroyed, view, &QObject::deleteLater);
}

} // namespace

void ZQTVINCaptureVC::showOverlay()
{
    logStep("showOverlay");
    showOverlayWithForce(true);
}

// The force flag is accepted for callers and changes nothing.
void ZQTVINCaptureVC::showOverlayWithForce(bool)
{
    logStep("showOverlayWithForce");
    if (d->overlayView2 && d->overlayView2->parentWidget())
        return;

    const std::shared_ptr<ZQTVINPhotoCaptureEntity> item = d->vinScanItem;
    OverlayTexts texts = item ? OverlayTexts{item->overlayHeader(), item->overlayTitle(), item->overlayDesc()}
                              : OverlayTexts{QStringLiteral("<header>"), QStringLiteral("<title>"),
                                             QStringLiteral("<description>")};
    if (d->enableVINTextReading)
        withPrintedVIN(texts);
    if (item)
        item->setHasBeenDisplayed(true);

    // A card taken down at once earlier is replaced.
    delete d->overlayView2.data();
    const Storyboard storyboard =
        Storyboard::storyboardWithName(QStringLiteral("ZQTVINScanComponent"), Bundle::frameworkBundle());
    ViewController *controller = storyboard.instantiateViewControllerWithIdentifier(
        d->enableLandscapeMode ? QStringLiteral("ZQTVINCaptureOverlayVCLandscape")
                               : QStringLiteral("ZQTVINCaptureOverlayVC"));
    auto *overlay = qobject_cast<ZQTVINCaptureOverlayVC *>(controller);
    if (!overlay) {
        delete controller;
        return;
    }
    d->overlayView2 = overlay;
    deleteWithScreen(overlay, this);

    auto *backdrop = new QWidget;
    backdrop->setObjectName(QStringLiteral("overlayBackdrop"));
    setBackgroundColor(backdrop, Constants::getGlobalColorForKey(QStringLiteral("HelpOverlayBackgroundColor")));
    addSubview(overlay, backdrop);
    backdrop->lower();
    ZQTExtend::addConstraintToFillInSupperView(backdrop);

    if (ImageView *imageView = overlay->imageView()) {
        setBackgroundColor(imageView, Constants::getGlobalColorForKey(QStringLiteral("HelpOverlayImageBackgroundColor")));
        const QList<Image> frames = item ? item->animationOverlayImages() : QList<Image>();
        if (!frames.isEmpty()) {
            imageView->setAnimationImages(frames);
            imageView->setAnimationDuration(animationSeconds);
            imageView->startAnimating();
        }
    }
    styleLabel(overlay->headerLbl(), texts.header, "HelpOverlayVehiclePhotoLabelColor",
               "HelpOverlayVehiclePhotoLabelFontType");
    styleLabel(overlay->titleLbl(), texts.title, "HelpOverlayMidTitleLabelColor", "HelpOverlayMidTitleLabelFontType");
    styleLabel(overlay->descrLbl(), texts.description, "HelpOverlayMidSubTitleLabelColor",
               "HelpOverlayMidSubTitleLabelFontType");
    styleLabel(overlay->lblTapAnyWhere(), Constants::getConfigStringForKey(QStringLiteral("HelpOverlayTextCloseLabel")),
               "HelpOverlayTapAnywhereLabelColor", "HelpOverlayTapAnywhereLabelFontType");

    // GUI thread, once per tap on the card.
    auto *tap = new TapGestureRecognizer([this](TapGestureRecognizer *recognizer) { overlayViewTapped(recognizer); },
                                         overlay);
    tap->addToView(overlay);

    setAlpha(overlay, 0.0);
    addSubview(this, overlay);
    ZQTExtend::addConstraintToFillInSupperView(overlay);
    animateAlpha(overlay, 1.0, showSeconds);
    if (d->cameraImageView)
        d->cameraImageView->hide();
    if (d->camera) {
        d->camera->stop();
        d->camera->hide();
    }
    layoutIfNeeded(this);
}

void ZQTVINCaptureVC::handleHelpBtn()
{
    logStep("handleHelpBtn");
    pushAnalyticsInfoForEventType(helpOverlayEvent, QString());
    showOverlayWithForce(true);
}

void ZQTVINCaptureVC::overlayViewTapped(TapGestureRecognizer *)
{
    logStep("overlayViewTapped");
    const QPointer<QWidget> card = d->overlayView2;
    if (!card)
        return;
    if (d->cameraImageView)
        d->cameraImageView->show();
    if (d->camera) {
        d->camera->show();
        d->camera->start();
    }
    const QPointer<ZQTVINCaptureVC> self(this);
    // GUI thread, at the end of the fade (or when a second tap cuts it short).
    animateAlpha(card, 0.0, closeSeconds, [self, card](bool) {
        if (card) {
            removeFromSuperview(card);
            card->deleteLater();
        }
        if (self && self->d->overlayView2 == card)
            self->d->overlayView2 = nullptr;
    });
}

void ZQTVINCaptureVC::dismissOverlayIfShown()
{
    logStep("dismissOverlayIfShown");
    // The card stays overlayView2 until the next one replaces it; showing tests the superview.
    if (d->overlayView2 && d->overlayView2->parentWidget() == this)
        removeFromSuperview(d->overlayView2);
}

bool ZQTVINCaptureVC::isOverlayValueBlank(const QString &value) const
{
    return value.toLower() == QLatin1String("blank");
}

ImageView *ZQTVINCaptureVC::overlayImageViewWithImage(const Image &image)
{
    if (d->overlayImageView) {
        d->overlayImageView->setImage(image);
        return d->overlayImageView;
    }
    auto *imageView = new ImageView(image);
    imageView->setBorderColor(Qt::black);
    imageView->setBorderWidth(spareImageBorderWidth);
    deleteWithScreen(imageView, this);
    d->overlayImageView = imageView;
    return imageView;
}

QWidget *ZQTVINCaptureVC::overlayView2() const
{
    return d->overlayView2;
}
