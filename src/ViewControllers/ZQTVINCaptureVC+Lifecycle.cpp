// The capture screen's start-up and tear-down: waking from the scene, loading, appearing and
// disappearing, and the initial configuration that every appearance (and every landscape
// transition) runs again.
#include "ViewControllers/ZQTVINCaptureVC.h"

#include "Model/ZQTVINScanComponentConstants.h"
#include "ViewControllers/ZQTVINCaptureVC_p.h"
#include "lib/StillCamera/StillCamera.h"
#include "platform/ui/Application.h"
#include "platform/ui/ButtonStyle.h"
#include "platform/foundation/DeviceProfile.h"
#include "platform/foundation/Dispatch.h"
#include "platform/ui/Font.h"
#include "platform/foundation/Log.h"
#include "platform/ui/NavigationController.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/ui/Window.h"

using namespace ZQTPlatform;
using Constants = ZQTVINScanComponentConstants;

namespace {

constexpr float scaleFactorValue = 2.0f;
constexpr float angleValue = 180.0f;
constexpr qreal manualButtonFontSize = 19.0;
// The VIN slot's help shows by itself this long after the screen appeared.
constexpr double helpOverlayDelaySeconds = 0.5;

void layOutKeyWindow()
{
    if (Window *window = Window::keyWindow())
        window->layoutIfNeeded();
}

} // namespace

int ZQTVINCaptureVC::forcedDeviceOrientation() const
{
    return d->enableLandscapeMode ? InterfaceOrientation::LandscapeRight : InterfaceOrientation::Portrait;
}

void ZQTVINCaptureVC::connectOutlets()
{
    d->interNavigationBar = findChild<NavigationBar *>(QStringLiteral("interNavigationBar"));
    d->backgroundView = findChild<QWidget *>(QStringLiteral("backgroundView"));
    d->scanOverlayView = findChild<QWidget *>(QStringLiteral("scanOverlayView"));
    if (d->scanOverlayView)
        d->scanOverlayView->installEventFilter(this);
    d->manuallyEnterVINBtn = findChild<QPushButton *>(QStringLiteral("manuallyEnterVINBtn"));
    d->carouselLbl = findChild<QLabel *>(QStringLiteral("carouselLbl"));
    d->permissionConverView = findChild<QWidget *>(QStringLiteral("permissionConverView"));
    d->constraintNavBarHeight = findChild<LayoutConstraint *>(QStringLiteral("constraintNavBarHeight"));
    d->manualVINContainerHeight = findChild<LayoutConstraint *>(QStringLiteral("manualVINContainerHeight"));
    d->thumbnailTitleHeight = findChild<LayoutConstraint *>(QStringLiteral("thumbnailTitleHeight"));
    d->carouselConstraintHeight = findChild<LayoutConstraint *>(QStringLiteral("carouselConstraintHeight"));
    d->manualConstraintHeight = findChild<LayoutConstraint *>(QStringLiteral("manualConstraintHeight"));
    if (d->manuallyEnterVINBtn)
        connect(d->manuallyEnterVINBtn, &QPushButton::clicked, this, &ZQTVINCaptureVC::handleManuallyEnterVINBtn);
}

void ZQTVINCaptureVC::styleManualEntryButton(QPushButton *button)
{
    const QFont font = Font::fontWithName(Constants::getConfigStringForKey(QStringLiteral("ManualVINButtonFont")),
                                          manualButtonFontSize)
                           .value_or(button->font());
    Constants::configButton(button, Constants::getGlobalColorForKey(QStringLiteral("ManualVINButtonColor")),
                            Constants::getConfigStringForKey(QStringLiteral("ManualVINButtonText")),
                            Constants::getGlobalColorForKey(QStringLiteral("ManualVINButtonHighlightedColor")),
                            Constants::getGlobalFloatForKey(QStringLiteral("ManualVINButtonCornerRadius")),
                            Constants::getGlobalColorForKey(QStringLiteral("ManualVINButtonBorderColor")),
                            Constants::getGlobalFloatForKey(QStringLiteral("ManualVINButtonBorderWidth")), font,
                            Constants::getGlobalColorForKey(QStringLiteral("ManualVINButtonFontColor")));
    ButtonStyle::setTitleColor(button,
                               Constants::getGlobalColorForKey(QStringLiteral("ManualVINButtonHighlightedFontColor")),
                               ButtonStyle::State::Highlighted);
}

void ZQTVINCaptureVC::awakeFromNib()
{
    logStep("awakeFromNib");
    connectOutlets();
    DeviceProfile::setDeviceOrientation(InterfaceOrientation::Portrait);
    ViewController::awakeFromNib();
}

void ZQTVINCaptureVC::viewDidLoad()
{
    logStep("viewDidLoad");
    setTitle(QStringLiteral("Vin Scan"));
    ViewController::viewDidLoad();
    DeviceProfile::setDeviceOrientation(forcedDeviceOrientation());
    if (d->permissionConverView)
        d->permissionConverView->hide();
    setupViewComponents();

    d->startingTime = QDateTime::currentDateTime();
    d->scaleFactor = scaleFactorValue;
    d->angle = angleValue;

    const NavigationController *navigation = navigationController();
    qreal barHeight = navigation ? navigation->navigationBar()->height() : 0.0;
    if (barHeight <= 0.0 && d->interNavigationBar)
        barHeight = d->interNavigationBar->height();
    if (d->constraintNavBarHeight)
        d->constraintNavBarHeight->setConstant(barHeight);

    if (!d->hasManualVINOption)
        resizeViewForNormalScan();

    NotificationCenter &center = NotificationCenter::defaultCenter();
    center.addObserver(this, QString::fromLatin1(UIApplicationWillEnterForegroundNotification),
                       [this](const Notification &) { appBecomeActive(); });
    center.addObserver(this, QString::fromLatin1(UIApplicationDidEnterBackgroundNotification),
                       [this](const Notification &) { appDidEnterBackGround(); });

    if (d->manuallyEnterVINBtn)
        styleManualEntryButton(d->manuallyEnterVINBtn);
    if (d->carouselLbl) {
        Constants::configLabel(d->carouselLbl, Constants::getGlobalColorForKey(QStringLiteral("CarouselLabelColor")),
                               Constants::getConfigStringForKey(QStringLiteral("CarouselLabelFrontType")));
    }
    layOutKeyWindow();
}

void ZQTVINCaptureVC::viewWillAppear(bool animated)
{
    logStep("viewWillAppear");
    ViewController::viewWillAppear(animated);
    d->enableLocationServices = true;
    DeviceProfile::setDeviceOrientation(forcedDeviceOrientation());
    NavigationController *navigation = navigationController();
    if (!d->showNavigateBar && navigation && !navigation->isNavigationBarHidden()) {
        navigation->setNavigationBarHidden(true);
        d->hiddenHostBar = navigation;
    }
    NotificationCenter::defaultCenter().addObserver(this, QString::fromLatin1(UIKeyboardWillHideNotification),
                                                    [this](const Notification &n) { keyboardWillHide(n); });
}

void ZQTVINCaptureVC::viewDidAppear(bool)
{
    logStep("viewDidAppear");
    ViewController::viewDidAppear(true);
    const QPointer<ZQTVINCaptureVC> self(this);
    Dispatch::onMain([self] {
        if (!self)
            return;
        Application::sharedApplication()->attemptRotationToDeviceOrientation();
        DeviceProfile::setDeviceOrientation(self->forcedDeviceOrientation());
        self->initializeView();
        if (self->d->vinScanItem && self->d->vinScanItem->autoDisplayFirstTime()) {
            Dispatch::mainAfter(helpOverlayDelaySeconds, [self] {
                if (self)
                    self->showOverlay();
            });
        }
        layOutKeyWindow();
    });
}

void ZQTVINCaptureVC::viewWillDisappear(bool animated)
{
    logStep("viewWillDisappear");
    ViewController::viewWillDisappear(animated);
    Application::sharedApplication()->setStatusBarHidden(false);
    restoreHostNavigationBar();
    if (d->camera)
        d->camera->stop();
    turnTorchOn(false);
    NotificationCenter::defaultCenter().removeObserver(this, QString::fromLatin1(UIKeyboardWillHideNotification));
}

void ZQTVINCaptureVC::restoreHostNavigationBar()
{
    if (d->hiddenHostBar)
        d->hiddenHostBar->setNavigationBarHidden(false);
    d->hiddenHostBar.clear();
}

void ZQTVINCaptureVC::didReceiveMemoryWarning()
{
    logStep("didReceiveMemoryWarning");
    ViewController::didReceiveMemoryWarning();
}

void ZQTVINCaptureVC::initializeView()
{
    logStep("initializeView");
    intialConfiguration();
    if (d->showManualEntry)
        promptForVin();
    else
        startBarCodeScanner();
}

void ZQTVINCaptureVC::intialConfiguration()
{
    logStep("intialConfiguration");
    setHidesBottomBarWhenPushed(true);
    configMode();
    configLayout();
    initCameraRig();
    if (d->camera)
        d->camera->start();
    setVINPhotoCaptureEntity();
}

void ZQTVINCaptureVC::configMode()
{
    logStep("configMode");
    d->bundle = Bundle::frameworkBundle();
}
