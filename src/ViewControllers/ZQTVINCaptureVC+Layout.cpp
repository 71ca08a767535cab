// The capture screen's layout, inner navigation bar, flash control, and its orientation and
// status bar answers.
#include "ViewControllers/ZQTVINCaptureVC.h"

#include "Model/ZQTVINScanComponentConstants.h"
#include "ViewControllers/ZQTVINCaptureVC_p.h"
#include "lib/StillCamera/StillCamera.h"
#include "platform/ui/Application.h"
#include "platform/ui/BarButtonItem.h"
#include "platform/capture/CaptureDevice.h"
#include "platform/foundation/DeviceProfile.h"
#include "platform/ui/Font.h"
#include "platform/ui/ImageView.h"
#include "platform/foundation/Log.h"
#include "platform/ui/NavigationController.h"
#include "platform/ui/TransitionCoordinator.h"
#include "platform/capture/VideoPreviewLayer.h"
#include "platform/ui/View.h"

#include <QBoxLayout>
#include <QEvent>
#include <QIcon>
#include <QLabel>
#include <QPushButton>

using namespace ZQTPlatform;
using Constants = ZQTVINScanComponentConstants;

namespace {

constexpr qreal notchedScreenSide = 812.0;
constexpr qreal statusBarFillerWidth = 500.0;
constexpr qreal navigationTitleFontSize = 18.0;
constexpr qreal smallScreenSide = 480.0;
constexpr double smallScreenCameraDim = 230.0;
constexpr double cameraShareOfView = 56.33;
// The flash item: the button is this much taller than its icon, the label sits beside it.
constexpr int flashButtonExtraHeight = 20;
constexpr int flashLabelWidth = 40;
constexpr int flashLabelHeight = 14;
constexpr qreal flashLabelSystemFontSize = 10.0;
constexpr int flashContainerWidth = 44;

bool hasNotchedScreen(const DeviceProfile &profile)
{
    return profile.mainScreenBounds.height() == notchedScreenSide || profile.mainScreenBounds.width() == notchedScreenSide;
}

// The pixmap drawn as a template in the colour, at its own scale.
QPixmap tintedPixmap(const QPixmap &pixmap, const QColor &color)
{
    const Image tinted = Constants::getGlobalImageFrom(Image(pixmap.toImage(), pixmap.devicePixelRatio()), color);
    QPixmap result = QPixmap::fromImage(tinted.bitmap());
    result.setDevicePixelRatio(tinted.scale());
    return result;
}

// Recolours a view of a left bar item: image views (and labels showing a picture) take the image
// as a template in the colour, labels take the colour as their text colour; other views keep
// theirs.
void tintBarView(QWidget *view, const QColor &color)
{
    if (auto *imageView = qobject_cast<ImageView *>(view)) {
        if (!imageView->image().isNull())
            imageView->setImage(Constants::getGlobalImageFrom(imageView->image(), color));
        return;
    }
    auto *label = qobject_cast<QLabel *>(view);
    if (!label)
        return;
    if (label->pixmap().isNull())
        setTextColor(label, color);
    else
        label->setPixmap(tintedPixmap(label->pixmap(), color));
}

// Recolours a button of the right bar item: a plain item draws its image in its tint colour; a
// plain button gets its current icon as a template in the colour.
void tintBarButton(QWidget *view, const QColor &color)
{
    if (auto *item = qobject_cast<BarButtonItem *>(view)) {
        item->setTintColor(color);
        return;
    }
    auto *button = qobject_cast<QPushButton *>(view);
    if (!button || button->icon().isNull())
        return;
    const QPixmap icon = button->icon().pixmap(button->iconSize());
    if (!icon.isNull())
        button->setIcon(QIcon(tintedPixmap(icon, color)));
}

// The direct child widgets of a custom view, in stacking order.
QList<QWidget *> subviews(QWidget *view)
{
    return view->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
}

// The carousel and the manual-entry strip (the scene's "controlPanel") sit below the camera
// area in portrait and beside it, landscapeWidth wide, in landscape.
void arrangeControlPanel(QWidget *backgroundView, bool portrait, int landscapeWidth)
{
    auto *box = backgroundView ? qobject_cast<QBoxLayout *>(backgroundView->layout()) : nullptr;
    auto *panel = backgroundView ? backgroundView->findChild<QWidget *>(QStringLiteral("controlPanel")) : nullptr;
    if (!box || !panel)
        return;
    box->setDirection(portrait ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    if (portrait) {
        panel->setMinimumWidth(0);
        panel->setMaximumWidth(QWIDGETSIZE_MAX);
    } else {
        panel->setFixedWidth(landscapeWidth);
    }
}

// A plain bar item with a named image tinted in the colour.
BarButtonItem *plainItem(const QString &objectName, const QString &imageName, const QColor &color)
{
    auto *item = new BarButtonItem(Constants::getGlobalImageWithName(imageName, color), BarButtonItem::StylePlain);
    item->setObjectName(objectName);
    item->setTintColor(color);
    return item;
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

NavigationBar *ZQTVINCaptureVC::navItem() const
{
    return d->interNavigationBar;
}

QPushButton *ZQTVINCaptureVC::manuallyEnterVINBtn() const
{
    return d->manuallyEnterVINBtn;
}

QPushButton *ZQTVINCaptureVC::manualEnterButton() const
{
    return d->manuallyEnterVINBtn;
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
    // It lives in the host's view but belongs to this screen: it goes when the screen goes.
    d->statusBarFillers.append(filler);
}

void ZQTVINCaptureVC::setNavigationItemTintColor(const QColor &color)
{
    logStep("setNavigationItemTintColor");
    if (!d->interNavigationBar)
        return;
    d->interNavigationBar->setTitleColor(Constants::getGlobalColorForKey(QStringLiteral("VINScanIconTitleColor")));
    const std::optional<QFont> font = Font::fontWithName(
        Constants::getConfigStringForKey(QStringLiteral("NavigationBarTitleFontType")), navigationTitleFontSize);
    if (font)
        d->interNavigationBar->setTitleFont(*font);
    // Only the items the bar holds now: the ones configNavButtons makes later keep their colour.
    // A plain item (a BarButtonItem) has no custom view and keeps its colour; an image view or a
    // label is recoloured itself, any other custom view through its subviews.
    for (QWidget *item : d->interNavigationBar->leftItems()) {
        if (qobject_cast<BarButtonItem *>(item))
            continue;
        if (qobject_cast<QLabel *>(item) || qobject_cast<ImageView *>(item)) {
            tintBarView(item, color);
        } else {
            for (QWidget *view : subviews(item))
                tintBarView(view, color);
        }
    }
    // The right item (the first of the right side): the buttons of its custom view draw their
    // images as templates in the colour. A plain item has no custom view.
    const QList<QWidget *> right = d->interNavigationBar->rightItems();
    if (right.isEmpty() || qobject_cast<BarButtonItem *>(right.first()))
        return;
    for (QWidget *view : subviews(right.first()))
        tintBarButton(view, color);
}

void ZQTVINCaptureVC::configNavButtons()
{
    logStep("configNavButtons");
    if (!d->interNavigationBar)
        return;
    const QColor iconColor = Constants::getGlobalColorForKey(QStringLiteral("VINScanHeaderIconColor"));

    // The flash item: a container with the flash button and, beside it, the flash label.
    const Image flashImage = Constants::getGlobalImageWithName(QStringLiteral("nav_btn_flash"), iconColor);
    const QSize imageSize = flashImage.size().toSize();
    auto *flashItem = new QWidget;
    flashItem->setObjectName(QStringLiteral("flashItem"));
    flashItem->resize(flashContainerWidth, imageSize.height() + flashButtonExtraHeight);
    auto *flashButton = new BarButtonItem(flashImage, BarButtonItem::StylePlain, flashItem);
    flashButton->setObjectName(QStringLiteral("flashButton"));
    flashButton->setGeometry(0, 0, imageSize.width(), imageSize.height() + flashButtonExtraHeight);
    connect(flashButton, &QPushButton::clicked, this, &ZQTVINCaptureVC::handleFlashBtn);

    auto *flashLbl = new QLabel(flashItem);
    flashLbl->setObjectName(QStringLiteral("flashLbl"));
    flashLbl->resize(flashLabelWidth, flashLabelHeight);
    flashLbl->setFont(Font::systemFontOfSize(flashLabelSystemFontSize));
    Constants::configLabel(flashLbl, Constants::getGlobalColorForKey(QStringLiteral("NavigationBarFlashIconTintColor")),
                           Constants::getConfigStringForKey(QStringLiteral("NavigationBarFlashLabelFontType")));
    flashLbl->move(flashButton->width(), (flashButton->height() - flashLbl->height()) / 2);
    d->flashLbl = flashLbl;

    // The items' actions run on the GUI thread, where the bar's buttons emit clicked().
    QList<QWidget *> left;
    if (d->hasBackButton) {
        auto *back = plainItem(QStringLiteral("backButton"), QStringLiteral("nav_btn_back"), iconColor);
        connect(back, &QPushButton::clicked, this, &ZQTVINCaptureVC::handleBackBtn);
        left << back;
    }
    left << flashItem;
    d->interNavigationBar->setLeftItems(left);

    QList<QWidget *> right;
    if (d->adjusterInfo) {
        auto *menu = plainItem(QStringLiteral("menuButton"), QStringLiteral("hamburgerIcon"), iconColor);
        connect(menu, &QPushButton::clicked, this, &ZQTVINCaptureVC::showAdjusterInfo);
        right << menu;
    }
    auto *help = plainItem(QStringLiteral("helpButton"), QStringLiteral("nav_btn_help"), iconColor);
    connect(help, &QPushButton::clicked, this, &ZQTVINCaptureVC::handleHelpBtn);
    right << help;
    d->interNavigationBar->setRightItems(right);
}

void ZQTVINCaptureVC::updateViewTitleWithTitle(const QString &title)
{
    logStep("updateViewTitleWithTitle");
    if (NavigationBar *item = navItem())
        item->setTitle(title);
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
    sizeCameraArea();
}

void ZQTVINCaptureVC::sizeCameraArea()
{
    const bool portrait = height() > width();
    // The main screen's bounds as the device holds it when the view has this shape.
    QSizeF screen = DeviceProfile::current().mainScreenBounds;
    if ((screen.height() > screen.width()) != portrait)
        screen.transpose();
    const qreal screenSide = portrait ? screen.height() : screen.width();
    if (screen.isEmpty() || screenSide <= smallScreenSide)
        d->cameraViewDim = smallScreenCameraDim;
    else
        d->cameraViewDim = (portrait ? height() : width()) * cameraShareOfView / 100.0;
    const int panelWidth = d->hasManualVINOption ? qMax(0, qRound(width() - d->cameraViewDim)) : 0;
    arrangeControlPanel(d->backgroundView, portrait, panelWidth);
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
    if (d->camera)
        d->camera->setCameraFlash(on ? StillCamera::CameraFlash::On : StillCamera::CameraFlash::Off);
}

void ZQTVINCaptureVC::turnTorchOn(bool on)
{
    logStep("turnTorchOn");
    CaptureDevice *device = CaptureDevice::defaultDeviceWithMediaType(CaptureDevice::mediaTypeVideo());
    if (!device || !device->hasTorch() || !device->hasFlash())
        return;
    // A device that cannot be locked keeps its modes.
    if (!device->lockForConfiguration(nullptr))
        return;
    device->setTorchMode(on ? CaptureDevice::TorchMode::On : CaptureDevice::TorchMode::Off);
    device->setFlashMode(on ? CaptureDevice::FlashMode::On : CaptureDevice::FlashMode::Off);
    device->unlockForConfiguration();
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
    // The window's size decides the panel's place again; the camera area follows through the
    // scene's layout (eventFilter).
    sizeCameraArea();
    if (d->prevLayer && d->cameraImageView) {
        d->prevLayer->setBoundsCentredIn(d->cameraImageView);
        d->prevLayer->connection()->setVideoOrientation(orientationForConnection());
    }
}

bool ZQTVINCaptureVC::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == d->scanOverlayView && event->type() == QEvent::Resize)
        layoutCameraArea();
    return ViewController::eventFilter(watched, event);
}

int ZQTVINCaptureVC::orientationForConnection() const
{
    return InterfaceOrientation::videoOrientationFor(Application::sharedApplication()->statusBarOrientation());
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
