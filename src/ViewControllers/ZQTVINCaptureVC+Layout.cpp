// The capture screen's layout, inner navigation bar, flash control, and its orientation and
// status bar answers.
#include "ViewControllers/ZQTVINCaptureVC.h"

#include "Model/ZQTVINScanComponentConstants.h"
#include "ViewControllers/ZQTVINCaptureVC_p.h"
#include "platform/VideoPreviewLayer.h"
#include "platform/Application.h"
#include "platform/DeviceProfile.h"
#include "platform/Font.h"
#include "platform/Log.h"
#include "platform/NavigationController.h"
#include "platform/TransitionCoordinator.h"
#include "platform/View.h"

using namespace ZQTPlatform;
using Constants = ZQTVINScanComponentConstants;

namespace {

constexpr qreal notchedScreenSide = 812.0;
constexpr qreal statusBarFillerWidth = 500.0;
constexpr qreal navigationTitleFontSize = 18.0;
constexpr qreal smallScreenSide = 480.0;
constexpr double smallScreenCameraDim = 230.0;
constexpr double cameraShareOfView = 56.33;

bool hasNotchedScreen(const DeviceProfile &profile)
{
    return profile.mainScreenBounds.height() == notchedScreenSide || profile.mainScreenBounds.width() == notchedScreenSide;
}

} // namespace

void ZQTVINCaptureVC::setupViewComponents()
{
    logStep("setupViewComponents");
    const QColor applicationColor = Constants::getGlobalColorForKey(QStringLiteral("ApplicationBackgroundColor"));
    if (d->backgroundView)
        setBackgroundColor(d->backgroundView, applicationColor);
    setBackgroundColor(this, applicationColor);
    const QColor barColor = Constants::getGlobalColorForKey(QStringLiteral("VINScanNavigationBarColor"));
    setNavigationBackgroundColor(barColor);
    setNavigationItemTintColor(barColor);
    configNavButtons();
    updateViewTitleWithTitle(Constants::getConfigStringForKey(QStringLiteral("TextTitle")));
}

void ZQTVINCaptureVC::setNavigationBackgroundColor(const QColor &color)
{
    logStep("setNavigationBackgroundColor");
    if (d->interNavigationBar) {
        d->interNavigationBar->setBarTintColor(color);
        d->interNavigationBar->setTranslucent(false);
        d->interNavigationBar->setBarStyle(NavigationBar::BarStyleBlack);
    }
    setBackgroundColor(this, color);

    const DeviceProfile profile = DeviceProfile::current();
    const bool phone = profile.interfaceIdiom == DeviceProfile::Idiom::Phone
        || profile.interfaceIdiom == DeviceProfile::Idiom::Unspecified;
    if (!phone || !hasNotchedScreen(profile))
        return;
    QWidget *host = navigationController() ? static_cast<QWidget *>(navigationController()) : this;
    auto *filler = new QWidget(host);
    filler->setGeometry(0, 0, qRound(statusBarFillerWidth),
                        qRound(Application::sharedApplication()->statusBarFrame().height()));
    setBackgroundColor(filler, color);
    filler->show();
}

void ZQTVINCaptureVC::setNavigationItemTintColor(const QColor &)
{
    logStep("setNavigationItemTintColor");
    if (d->interNavigationBar) {
        d->interNavigationBar->setTitleColor(Constants::getGlobalColorForKey(QStringLiteral("VINScanIconTitleColor")));
        const std::optional<QFont> font = Font::fontWithName(
            Constants::getConfigStringForKey(QStringLiteral("NavigationBarTitleFontType")), navigationTitleFontSize);
        if (font)
            d->interNavigationBar->setTitleFont(*font);
    }
    // Recolouring the bar's existing items comes with the tinted bar icons.
}

void ZQTVINCaptureVC::configNavButtons()
{
    logStep("configNavButtons");
    // The flash, back, help and menu items come with the tinted bar icons.
}

void ZQTVINCaptureVC::updateViewTitleWithTitle(const QString &title)
{
    logStep("updateViewTitleWithTitle");
    if (d->interNavigationBar)
        d->interNavigationBar->setTitle(title);
}

void ZQTVINCaptureVC::resizeViewForNormalScan()
{
    logStep("resizeViewForNormalScan");
    for (LayoutConstraint *constraint : {d->manualVINContainerHeight.data(), d->thumbnailTitleHeight.data(),
                                         d->carouselConstraintHeight.data(), d->manualConstraintHeight.data()}) {
        if (constraint)
            constraint->setConstant(0.0);
    }
    layoutIfNeeded(this);
}

void ZQTVINCaptureVC::configLayout()
{
    logStep("configLayout");
    const bool portrait = height() > width();
    const QSizeF screen = DeviceProfile::current().mainScreenBounds;
    const qreal screenSide = portrait ? screen.height() : screen.width();
    if (screen.isEmpty() || screenSide <= smallScreenSide)
        d->cameraViewDim = smallScreenCameraDim;
    else
        d->cameraViewDim = (portrait ? height() : width()) * cameraShareOfView / 100.0;
}

void ZQTVINCaptureVC::initFlashButtons()
{
    logStep("initFlashButtons");
    d->flashSetting = 0;
    updateFlashControls(false);
}

void ZQTVINCaptureVC::handleFlashBtn()
{
    logStep("handleFlashBtn");
    d->flashSetting += 1;
    if (d->flashSetting >= 2)
        d->flashSetting = 0;
    updateFlashControls(true);
}

void ZQTVINCaptureVC::updateFlashControls(bool userChange)
{
    logStep("updateFlashControls");
    if (d->flashLbl) {
        const QVariantList texts = Constants::getConfigArrayForKey(QStringLiteral("TextFlashButtonArray"));
        d->flashLbl->setText(texts.value(int(d->flashSetting)).toString());
    }
    const bool on = d->flashSetting == 1;
    turnTorchOn(on);
    if (userChange)
        pushAnalyticsInfoForEventType(1, on ? QStringLiteral("On") : QStringLiteral("Off"));
    // The still camera's flash follows the setting once initCamera can make a camera.
}

void ZQTVINCaptureVC::turnTorchOn(bool)
{
    logStep("turnTorchOn");
    // The torch and flash unit are switched once the capture device exists.
}

void ZQTVINCaptureVC::viewWillTransitionToSize(const QSizeF &, TransitionCoordinator *coordinator)
{
    logStep("viewWillTransitionToSize");
    if (!d->enableLandscapeMode || !coordinator)
        return;
    const QPointer<ZQTVINCaptureVC> self(this);
    coordinator->animateAlongsideTransition({}, [self] {
        const int orientation = DeviceProfile::current().deviceOrientation;
        if (self && (orientation == InterfaceOrientation::LandscapeRight || orientation == InterfaceOrientation::LandscapeLeft))
            self->initializeView();
    });
}

void ZQTVINCaptureVC::viewWillLayoutSubviews()
{
    ViewController::viewWillLayoutSubviews();
    if (d->prevLayer && d->cameraImageView)
        d->prevLayer->setBoundsCentredIn(d->cameraImageView);
}

unsigned ZQTVINCaptureVC::supportedInterfaceOrientations() const
{
    return d->enableLandscapeMode ? InterfaceOrientation::MaskLandscape : InterfaceOrientation::MaskPortrait;
}

bool ZQTVINCaptureVC::shouldAutorotate() const
{
    return true;
}

bool ZQTVINCaptureVC::shouldAutorotateToInterfaceOrientation(int orientation) const
{
    if (d->enableLandscapeMode)
        return orientation == InterfaceOrientation::LandscapeRight || orientation == InterfaceOrientation::LandscapeLeft;
    return orientation == InterfaceOrientation::Portrait || orientation == InterfaceOrientation::PortraitUpsideDown;
}

int ZQTVINCaptureVC::preferredInterfaceOrientationForPresentation() const
{
    return forcedDeviceOrientation();
}

int ZQTVINCaptureVC::preferredStatusBarStyle() const
{
    const QString type = Constants::getConfigStringForKey(QStringLiteral("VinScanControllerStatusbarType"));
    return type == QLatin1String("LIGHT") ? StatusBarStyle::LightContent : StatusBarStyle::Default;
}

bool ZQTVINCaptureVC::prefersStatusBarHidden() const
{
    const DeviceProfile profile = DeviceProfile::current();
    if (profile.interfaceIdiom != DeviceProfile::Idiom::Phone)
        return true;
    return !hasNotchedScreen(profile);
}
