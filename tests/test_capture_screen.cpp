// The capture screen: factories, start-up order, layout from configuration, modal test,
// orientation and status bar answers, back button, notifications, the VIN rule and both reports.
#include "Model/ZQTVINScanComponentConstants.h"
#include "ViewControllers/VinScannerVCDelegate.h"
#include "ViewControllers/ZQTVINCaptureVC.h"
#include "platform/Application.h"
#include "platform/ButtonStyle.h"
#include "platform/DeviceProfile.h"
#include "platform/LayoutConstraint.h"
#include "platform/NavigationBar.h"
#include "platform/NavigationController.h"
#include "platform/NotificationCenter.h"
#include "platform/TabBarController.h"
#include "platform/TransitionCoordinator.h"
#include "platform/View.h"
#include "platform/Window.h"
#include "support/Artifacts.h"
#include "support/LogCapture.h"
#include "support/TemporaryMainBundle.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTest>

using namespace ZQTPlatform;
using Constants = ZQTVINScanComponentConstants;

namespace {

const QString validVin = QStringLiteral("1HGCM82633A004352");

struct RecordingDelegate : VinScannerVCDelegate
{
    struct Call
    {
        QString vin;
        bool scanned;
        bool valid;
        Error error;
    };
    QList<Call> calls;
    QStringList *journal = nullptr;

    void didCompleteScanning(const QString &VIN, bool isVINScanned, bool isVINValid, const ZQTError &error) override
    {
        calls.append({VIN, isVINScanned, isVINValid, error});
        if (journal)
            journal->append(QStringLiteral("delegate"));
    }
};

DeviceProfile profile(qreal width, qreal height, DeviceProfile::Idiom idiom = DeviceProfile::Idiom::Phone)
{
    DeviceProfile p;
    p.mainScreenBounds = QSizeF(width, height);
    p.interfaceIdiom = idiom;
    p.statusBarHeight = 44.0;
    return p;
}

const QStringList normalStartUp = {
    "awakeFromNib", "viewDidLoad", "setupViewComponents", "setNavigationBackgroundColor",
    "setNavigationItemTintColor", "configNavButtons", "updateViewTitleWithTitle", "resizeViewForNormalScan",
    "viewWillAppear", "viewDidAppear", "initializeView", "intialConfiguration", "configMode", "configLayout",
    "initCameraRig", "initCameraImageView", "initBarCodeScanner", "initFlashButtons", "updateFlashControls",
    "turnTorchOn", "setVINPhotoCaptureEntity", "startBarCodeScanner",
};

bool started(const LogCapture &capture)
{
    const QStringList steps = capture.steps();
    return steps.contains("startBarCodeScanner") || steps.contains("promptForVin");
}

// A window of the device's size with a navigation controller at its root.
class Host
{
public:
    explicit Host(const QSize &size = QSize(375, 812)) : navigation(new NavigationController)
    {
        window.resize(size);
        window.setRootViewController(navigation);
    }

    // Pushes the screen, shows the window and waits for the end of the start-up.
    void push(ZQTVINCaptureVC *screen, const LogCapture &capture)
    {
        navigation->pushViewController(screen, false);
        window.makeKeyAndVisible();
        EXPECT_TRUE(QTest::qWaitFor([&] { return started(capture); }, 3000));
    }

    Window window;
    NavigationController *navigation;
};

class CaptureScreen : public ::testing::Test
{
protected:
    void SetUp() override { DeviceProfile::setCurrent(profile(375, 812)); }

    ZQTVINCaptureVC *plainScreen() { return ZQTVINCaptureVC::createVinScannerViewWithDelegate(&delegate, "CLM-1"); }
    ZQTVINCaptureVC *manualScreen()
    {
        return ZQTVINCaptureVC::createVinScannerManualOptionViewWithDelegate(&delegate, "CLM-1");
    }

    LogCapture capture;
    RecordingDelegate delegate;
};

QStringList withoutLayoutPasses(QStringList steps)
{
    steps.removeAll("viewWillTransitionToSize");
    return steps;
}

} // namespace

// --- Factories

TEST_F(CaptureScreen, FactoriesSetTheirOptions)
{
    ZQTVINScanAdjuster adjuster;
    adjuster.setRecipientName("Dana Reyes");
    struct Case
    {
        const char *name;
        std::function<ZQTVINCaptureVC *()> make;
        bool hasAdjuster;
        bool manualOption;
    };
    const QList<Case> cases = {
        {"plain", [&] { return ZQTVINCaptureVC::createVinScannerViewWithDelegate(&delegate, "C"); }, false, false},
        {"plain+adjuster", [&] { return ZQTVINCaptureVC::createVinScannerViewWithDelegate(&delegate, adjuster, "C"); },
         true, false},
        {"manual", [&] { return ZQTVINCaptureVC::createVinScannerManualOptionViewWithDelegate(&delegate, "C"); }, false,
         true},
        {"manual+adjuster",
         [&] { return ZQTVINCaptureVC::createVinScannerManualOptionViewWithDelegate(&delegate, adjuster, "C"); }, true,
         true},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        std::unique_ptr<ZQTVINCaptureVC> screen(c.make());
        ASSERT_NE(screen, nullptr);
        EXPECT_EQ(screen->delegate(), &delegate);
        EXPECT_EQ(screen->claimId(), "C");
        EXPECT_TRUE(screen->enableVinScanning());
        EXPECT_TRUE(screen->enableImageExposureAdjusted());
        EXPECT_EQ(screen->hasManualVINOption(), c.manualOption);
        ASSERT_EQ(screen->adjusterInfo().has_value(), c.hasAdjuster);
        if (c.hasAdjuster) {
            EXPECT_EQ(screen->adjusterInfo()->recipientName(), "Dana Reyes");
        }
        EXPECT_FALSE(screen->showManualEntry());
        EXPECT_FALSE(screen->enableLandscapeMode());
        EXPECT_FALSE(screen->isViewLoaded()) << "returned unpresented";
    }
}

// --- Start-up

TEST_F(CaptureScreen, StartUpRunsEveryStepInOrder)
{
    Host host;
    host.push(plainScreen(), capture);
    EXPECT_EQ(withoutLayoutPasses(capture.steps()), normalStartUp);
}

TEST_F(CaptureScreen, ManualOptionKeepsTheStripsAndManualEntryOpensThePrompt)
{
    ZQTVINCaptureVC *screen = manualScreen();
    screen->setShowManualEntry(true);
    Host host;
    host.push(screen, capture);
    QStringList expected = normalStartUp;
    expected.removeAll("resizeViewForNormalScan");
    expected.replace(expected.indexOf("startBarCodeScanner"), "promptForVin");
    expected << "dismissOverlayIfShown";
    EXPECT_EQ(withoutLayoutPasses(capture.steps()), expected);
}

TEST_F(CaptureScreen, LocationServicesAreForcedOnByAppearing)
{
    ZQTVINCaptureVC *screen = plainScreen();
    screen->setEnableLocationServices(false);
    Host host;
    host.push(screen, capture);
    EXPECT_TRUE(screen->enableLocationServices());
    EXPECT_TRUE(host.navigation->isNavigationBarHidden()) << "showNavigateBar is off";
    EXPECT_TRUE(screen->hidesBottomBarWhenPushed());
    EXPECT_EQ(screen->bundle(), Bundle::frameworkBundle());
    EXPECT_FLOAT_EQ(screen->scaleFactor(), 2.0f);
    EXPECT_FLOAT_EQ(screen->angle(), 180.0f);
    EXPECT_TRUE(screen->startingTime().isValid());
    EXPECT_EQ(screen->title(), "Vin Scan");
    EXPECT_EQ(screen->camera(), nullptr);
}

TEST_F(CaptureScreen, HostNavigationBarStaysWhenAskedFor)
{
    ZQTVINCaptureVC *screen = plainScreen();
    screen->setShowNavigateBar(true);
    Host host;
    host.push(screen, capture);
    EXPECT_FALSE(host.navigation->isNavigationBarHidden());
}

TEST_F(CaptureScreen, InertOptionsChangeNothing)
{
    auto run = [&](bool setInertOptions) {
        capture.clear();
        ZQTVINCaptureVC *screen = plainScreen();
        if (setInertOptions) {
            screen->setMode(7);
            screen->setEnableWizardStyle(true);
            screen->setAdditionalPhotoMode(true);
            screen->setLaunchPhotoCaptureViewWithDefaultImagesAlways(true);
            screen->setEnableImageExposureAdjusted(false);
            screen->setSavedImageDictionary({{"Front", "/tmp/front.jpg"}});
            screen->setThumbnailItems({QStringLiteral("Rear")});
        }
        Host host;
        host.push(screen, capture);
        EXPECT_EQ(screen->mode(), setInertOptions ? 7u : 0u) << "kept for the host";
        return std::make_pair(withoutLayoutPasses(capture.steps()), host.window.grab().toImage());
    };
    const auto plain = run(false);
    const auto inert = run(true);
    EXPECT_EQ(inert.first, plain.first);
    EXPECT_TRUE(inert.second == plain.second) << "the rendered screen differs";
}

// --- Layout from configuration

TEST_F(CaptureScreen, WithoutManualOptionTheStripsCollapse)
{
    ZQTVINCaptureVC *screen = plainScreen();
    Host host;
    host.push(screen, capture);
    for (const char *name : {"manualVINContainerHeight", "thumbnailTitleHeight", "carouselConstraintHeight",
                             "manualConstraintHeight"}) {
        SCOPED_TRACE(name);
        auto *constraint = screen->findChild<LayoutConstraint *>(name);
        ASSERT_NE(constraint, nullptr);
        EXPECT_DOUBLE_EQ(constraint->constant(), 0.0);
        EXPECT_EQ(constraint->firstItem()->height(), 0);
    }
    EXPECT_DOUBLE_EQ(screen->findChild<LayoutConstraint *>("constraintNavBarHeight")->constant(), 44.0);
}

TEST_F(CaptureScreen, ManualOptionStylesTheButtonAndLabelFromConfiguration)
{
    ZQTVINCaptureVC *screen = manualScreen();
    Host host;
    host.push(screen, capture);
    auto *button = screen->findChild<QPushButton *>("manuallyEnterVINBtn");
    ASSERT_NE(button, nullptr);
    EXPECT_GT(button->height(), 0);
    EXPECT_TRUE(button->isVisible());
    EXPECT_EQ(button->text(), Constants::getConfigStringForKey("ManualVINButtonText"));
    using State = ButtonStyle::State;
    EXPECT_EQ(ButtonStyle::backgroundColor(button, State::Normal), Constants::getGlobalColorForKey("ManualVINButtonColor"));
    EXPECT_EQ(ButtonStyle::backgroundColor(button, State::Highlighted),
              Constants::getGlobalColorForKey("ManualVINButtonHighlightedColor"));
    EXPECT_EQ(ButtonStyle::titleColor(button, State::Normal), Constants::getGlobalColorForKey("ManualVINButtonFontColor"));
    EXPECT_EQ(ButtonStyle::titleColor(button, State::Highlighted),
              Constants::getGlobalColorForKey("ManualVINButtonHighlightedFontColor"));
    EXPECT_DOUBLE_EQ(ButtonStyle::cornerRadius(button), Constants::getGlobalFloatForKey("ManualVINButtonCornerRadius"));
    EXPECT_EQ(button->font().pointSizeF() > 0 ? button->font().pointSizeF() : button->font().pixelSize(), 19.0);

    auto *label = screen->findChild<QLabel *>("carouselLbl");
    ASSERT_NE(label, nullptr);
    EXPECT_EQ(label->palette().color(QPalette::WindowText), Constants::getGlobalColorForKey("CarouselLabelColor"));
}

TEST_F(CaptureScreen, ViewComponentsTakeTheConfiguredColoursAndTitle)
{
    ZQTVINCaptureVC *screen = plainScreen();
    Host host;
    host.push(screen, capture);
    const QColor barColor = Constants::getGlobalColorForKey("VINScanNavigationBarColor");
    auto *bar = screen->findChild<NavigationBar *>("interNavigationBar");
    ASSERT_NE(bar, nullptr);
    EXPECT_EQ(bar->barTintColor(), barColor);
    EXPECT_FALSE(bar->isTranslucent());
    EXPECT_EQ(bar->barStyle(), NavigationBar::BarStyleBlack);
    EXPECT_EQ(bar->title(), Constants::getConfigStringForKey("TextTitle"));
    EXPECT_EQ(bar->titleColor(), Constants::getGlobalColorForKey("VINScanIconTitleColor"));
    EXPECT_EQ(backgroundColor(screen), barColor) << "the bar colour is set on the view last";
    EXPECT_EQ(backgroundColor(screen->findChild<QWidget *>("backgroundView")),
              Constants::getGlobalColorForKey("ApplicationBackgroundColor"));
    EXPECT_TRUE(screen->findChild<QWidget *>("permissionConverView")->isHidden());
    EXPECT_EQ(bar->mapTo(&host.window, QPoint(0, 0)).y(), 44) << "the inner bar sits below the status bar";
}

TEST_F(CaptureScreen, StatusBarFillerOnlyOnScreens812PointsHighOrWide)
{
    auto fillers = [](const NavigationController *navigation, const QColor &color) {
        int count = 0;
        for (const QWidget *child : navigation->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly))
            count += child->geometry() == QRect(0, 0, 500, 44) && backgroundColor(child) == color;
        return count;
    };
    const QColor barColor = Constants::getGlobalColorForKey("VINScanNavigationBarColor");
    {
        Host host;
        host.push(plainScreen(), capture);
        EXPECT_EQ(fillers(host.navigation, barColor), 1);
    }
    DeviceProfile::setCurrent(profile(414, 896));
    Host host(QSize(414, 896));
    host.push(plainScreen(), capture);
    EXPECT_EQ(fillers(host.navigation, barColor), 0);
}

TEST_F(CaptureScreen, CameraAreaIsAShareOfTheViewExceptOnSmallScreens)
{
    ZQTVINCaptureVC *screen = plainScreen();
    Host host;
    host.push(screen, capture);
    EXPECT_DOUBLE_EQ(screen->cameraViewDim(), screen->height() * 56.33 / 100.0);
    EXPECT_EQ(screen->height(), 812);

    DeviceProfile::setCurrent(profile(320, 480));
    screen->configLayout();
    EXPECT_DOUBLE_EQ(screen->cameraViewDim(), 230.0);
    auto *cameraImageView = screen->findChild<QLabel *>("cameraImageView");
    ASSERT_NE(cameraImageView, nullptr);
    EXPECT_EQ(cameraImageView->geometry(), screen->findChild<QWidget *>("scanOverlayView")->rect());
}

// --- Modal test

TEST_F(CaptureScreen, IsModalOnlyWhenPresented)
{
    Window window;
    window.resize(375, 812);
    auto *root = new ViewController;
    window.setRootViewController(root);
    window.makeKeyAndVisible();

    auto *navigation = new NavigationController(new ViewController);
    root->presentViewController(navigation, false);
    ZQTVINCaptureVC *pushed = plainScreen();
    navigation->pushViewController(pushed, false);
    EXPECT_TRUE(pushed->isModal()) << "inside a presented navigation controller";
    navigation->dismissViewControllerAnimated(false);

    Host host;
    ZQTVINCaptureVC *inStack = plainScreen();
    host.navigation->pushViewController(new ViewController, false);
    host.navigation->pushViewController(inStack, false);
    EXPECT_FALSE(inStack->isModal()) << "pushed";

    ZQTVINCaptureVC *presented = plainScreen();
    host.navigation->presentViewController(presented, false);
    EXPECT_TRUE(presented->isModal()) << "presented directly";
    presented->dismissViewControllerAnimated(false);

    auto *tabs = new TabBarController;
    ZQTVINCaptureVC *inTabs = plainScreen();
    tabs->setViewControllers({inTabs});
    EXPECT_FALSE(inTabs->isModal()) << "in a tab bar controller that nobody presented";
    auto *outerTabs = new TabBarController;
    outerTabs->setViewControllers({new ViewController});
    Window tabWindow;
    tabWindow.setRootViewController(outerTabs);
    outerTabs->presentViewController(tabs, false);
    EXPECT_TRUE(inTabs->isModal()) << "in a tab bar controller presented by a tab bar controller";

    std::unique_ptr<ZQTVINCaptureVC> alone(plainScreen());
    EXPECT_FALSE(alone->isModal());
}

// --- Orientation and status bar

TEST_F(CaptureScreen, OrientationPolicyFollowsLandscapeMode)
{
    std::unique_ptr<ZQTVINCaptureVC> screen(plainScreen());
    EXPECT_EQ(screen->supportedInterfaceOrientations(), 2u);
    EXPECT_TRUE(screen->shouldAutorotate());
    EXPECT_EQ(screen->preferredInterfaceOrientationForPresentation(), 1);
    for (int o : {0, 1, 2, 3, 4, 5})
        EXPECT_EQ(screen->shouldAutorotateToInterfaceOrientation(o), o == 1 || o == 2) << o;

    screen->setEnableLandscapeMode(true);
    EXPECT_EQ(screen->supportedInterfaceOrientations(), 24u);
    EXPECT_TRUE(screen->shouldAutorotate());
    EXPECT_EQ(screen->preferredInterfaceOrientationForPresentation(), 3);
    for (int o : {0, 1, 2, 3, 4, 5})
        EXPECT_EQ(screen->shouldAutorotateToInterfaceOrientation(o), o == 3 || o == 4) << o;
}

TEST_F(CaptureScreen, DeviceOrientationIsForcedByTheMode)
{
    ZQTVINCaptureVC *screen = plainScreen();
    screen->setEnableLandscapeMode(true);
    EXPECT_EQ(DeviceProfile::current().deviceOrientation, 1) << "waking from the scene forces portrait";
    Host host;
    host.push(screen, capture);
    EXPECT_EQ(DeviceProfile::current().deviceOrientation, 3);
}

TEST_F(CaptureScreen, StatusBarHiddenExceptOnPhonesWithAn812PointSide)
{
    std::unique_ptr<ZQTVINCaptureVC> screen(plainScreen());
    struct Case
    {
        DeviceProfile device;
        bool hidden;
    };
    const QList<Case> cases = {
        {profile(375, 812), false},
        {profile(812, 375), false},
        {profile(414, 896), true},
        {profile(375, 667), true},
        {profile(1024, 1366, DeviceProfile::Idiom::Pad), true},
        {profile(375, 812, DeviceProfile::Idiom::Pad), true},
        {profile(375, 812, DeviceProfile::Idiom::Unspecified), true},
    };
    for (const Case &c : cases) {
        DeviceProfile::setCurrent(c.device);
        EXPECT_EQ(screen->prefersStatusBarHidden(), c.hidden)
            << c.device.mainScreenBounds.width() << "x" << c.device.mainScreenBounds.height() << " idiom "
            << int(c.device.interfaceIdiom);
    }
}

TEST_F(CaptureScreen, StatusBarIsLightForTheExactConfiguredText)
{
    std::unique_ptr<ZQTVINCaptureVC> screen(plainScreen());
    ASSERT_EQ(Constants::getConfigStringForKey("VinScanControllerStatusbarType"), "LIGHT") << "the component's default";
    EXPECT_EQ(screen->preferredStatusBarStyle(), StatusBarStyle::LightContent);
}

TEST(CaptureScreenHostSettings, LowerCaseLightGivesTheDefaultStatusBarStyle)
{
    TemporaryMainBundle host;
    host.writeSettings("<key>VinScanControllerStatusbarType</key><string>light</string>");
    RecordingDelegate delegate;
    std::unique_ptr<ZQTVINCaptureVC> screen(ZQTVINCaptureVC::createVinScannerViewWithDelegate(&delegate, "C"));
    EXPECT_EQ(screen->preferredStatusBarStyle(), StatusBarStyle::Default);
}

TEST_F(CaptureScreen, LeavingRestoresTheStatusBarAndStopsTheTorch)
{
    DeviceProfile::setCurrent(profile(375, 667));
    ZQTVINCaptureVC *screen = plainScreen();
    Host host(QSize(375, 667));
    host.push(screen, capture);
    EXPECT_TRUE(Application::sharedApplication()->isStatusBarHidden()) << "the screen's own answer applies";
    capture.clear();
    host.navigation->pushViewController(new ViewController, false);
    QTest::qWait(20);
    EXPECT_EQ(capture.steps().mid(0, 2), QStringList({"viewWillDisappear", "turnTorchOn"}));
    EXPECT_FALSE(Application::sharedApplication()->isStatusBarHidden());
}

// --- Back button

TEST_F(CaptureScreen, BackButtonPopsAPushedScreenWithoutReporting)
{
    Host host;
    host.navigation->pushViewController(new ViewController, false);
    QPointer<ZQTVINCaptureVC> screen = plainScreen();
    host.push(screen, capture);
    capture.clear();
    screen->handleBackBtn();
    EXPECT_EQ(capture.steps().mid(0, 2), QStringList({"handleBackBtn", "stopBarCodeScanner"}));
    EXPECT_TRUE(QTest::qWaitFor([&] { return screen.isNull(); }, 2000));
    EXPECT_EQ(host.navigation->viewControllers().size(), 1);
    EXPECT_TRUE(delegate.calls.isEmpty());
    EXPECT_TRUE(capture.steps().contains("deinitCameraRig"));
}

TEST_F(CaptureScreen, BackButtonDismissesAPresentedScreenWithoutReporting)
{
    Host host;
    host.navigation->pushViewController(new ViewController, false);
    host.window.makeKeyAndVisible();
    QPointer<ZQTVINCaptureVC> screen = plainScreen();
    host.navigation->presentViewController(screen, true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return started(capture); }, 3000));
    screen->handleBackBtn();
    EXPECT_TRUE(QTest::qWaitFor([&] { return screen.isNull(); }, 2000));
    EXPECT_EQ(host.navigation->presentedViewController(), nullptr);
    EXPECT_EQ(host.navigation->viewControllers().size(), 1) << "nothing popped";
    EXPECT_TRUE(delegate.calls.isEmpty());
}

// --- Notifications

TEST_F(CaptureScreen, ApplicationAndKeyboardNotificationsReachTheScreenWhileObserved)
{
    Host host;
    host.navigation->pushViewController(new ViewController, false);
    QPointer<ZQTVINCaptureVC> screen = plainScreen();
    host.push(screen, capture);
    Application *app = Application::sharedApplication();

    capture.clear();
    app->enterBackground();
    app->enterForeground();
    app->keyboardWillHide();
    EXPECT_EQ(capture.steps(), QStringList({"appDidEnterBackGround", "appBecomeActive", "permissionConverCheck",
                                            "keyboardWillHide"}));

    host.navigation->pushViewController(new ViewController, false); // the screen disappears
    QTest::qWait(20);
    capture.clear();
    app->keyboardWillHide();
    app->enterBackground();
    app->enterForeground();
    EXPECT_EQ(capture.steps(), QStringList({"appDidEnterBackGround", "appBecomeActive", "permissionConverCheck"}))
        << "the keyboard observer goes at disappearance, the application ones stay";

    delete screen.data();
    capture.clear();
    app->enterBackground();
    app->enterForeground();
    EXPECT_TRUE(capture.steps().isEmpty()) << "a destroyed screen observes nothing";
}

// --- The VIN rule

TEST(CaptureScreenValidateVIN, FollowsTheLeadingIAndSeventeenCharacterRules)
{
    RecordingDelegate delegate;
    std::unique_ptr<ZQTVINCaptureVC> screen(ZQTVINCaptureVC::createVinScannerViewWithDelegate(&delegate, "C"));
    struct Case
    {
        QString payload;
        QString vin;
        bool valid;
    };
    const QList<Case> cases = {
        {validVin, validVin, true},
        {"I" + validVin, validVin, true},
        {validVin + "XYZ", validVin, true},                      // first 17
        {"XYZ" + validVin, validVin, true},                      // last 17
        {"AB" + validVin + "CD", "AB" + validVin + "CD", false}, // neither
        {validVin.left(16), validVin.left(16), false},
        {"i" + validVin, validVin, true},                        // lower-case i stays, then last 17
        {"1HGCM-82633A004352", "1HGCM-82633A004352", true},      // passes whole, hyphen kept
        {"II" + validVin, validVin, true},                       // one I dropped, then last 17
        {"1HGCM82633A004353", "1HGCM82633A004353", false},       // wrong check digit
        {QString(), QString(), false},
    };
    for (const Case &c : cases) {
        const ZQTVINDetails details = screen->validateVIN(c.payload);
        EXPECT_EQ(details.VIN(), c.vin) << c.payload.toStdString();
        EXPECT_EQ(details.isValid(), c.valid) << c.payload.toStdString();
    }
}

// --- Reports

TEST_F(CaptureScreen, ManualEntryReportsTheNormalisedVinAsTyped)
{
    std::unique_ptr<ZQTVINCaptureVC> screen(manualScreen());
    screen->loadViewIfNeeded();
    QStringList journal;
    delegate.journal = &journal;
    int observer = 0;
    NotificationCenter::defaultCenter().addObserver(&observer, "ANALYTICS_INFO", [&](const Notification &n) {
        journal << "analytics:" + n.object.toMap().value("eventName").toString();
    });

    screen->handleManualEntryOK("1HGCM82633A0O4352");
    screen->handleManualEntryOK("1HGCM82633AOO4353");
    NotificationCenter::defaultCenter().removeObserver(&observer);

    ASSERT_EQ(delegate.calls.size(), 2);
    EXPECT_EQ(delegate.calls[0].vin, validVin);
    EXPECT_FALSE(delegate.calls[0].scanned);
    EXPECT_TRUE(delegate.calls[0].valid);
    EXPECT_TRUE(delegate.calls[0].error.isNull());
    EXPECT_EQ(delegate.calls[1].vin, "1HGCM82633A004353");
    EXPECT_FALSE(delegate.calls[1].scanned);
    EXPECT_FALSE(delegate.calls[1].valid);
    EXPECT_EQ(screen->vinBarCode(), "1HGCM82633A004353");
    EXPECT_EQ(journal, QStringList({"analytics:screenTime", "delegate", "analytics:screenTime", "delegate"}));
}

TEST_F(CaptureScreen, BarcodeReportWithAPictureSavesItAndStops)
{
    std::unique_ptr<ZQTVINCaptureVC> screen(manualScreen());
    screen->show();
    QImage bitmap(8, 8, QImage::Format_RGB32);
    bitmap.fill(Qt::gray);
    capture.clear();
    screen->stillImageCaptureCompleted("I" + validVin, Image(bitmap), Error());
    ASSERT_EQ(delegate.calls.size(), 1);
    EXPECT_EQ(delegate.calls[0].vin, validVin);
    EXPECT_TRUE(delegate.calls[0].scanned);
    EXPECT_TRUE(delegate.calls[0].valid);
    EXPECT_TRUE(delegate.calls[0].error.isNull());
    EXPECT_FALSE(screen->vinBarCodeImage().isNull());
    EXPECT_TRUE(screen->findChild<QPushButton *>("manuallyEnterVINBtn")->isHidden());
    const QStringList steps = capture.steps();
    EXPECT_LT(steps.indexOf("processUsePhotoCompletionHandler"), steps.indexOf("stopBarCodeScanner"));
    EXPECT_LT(steps.indexOf("stopBarCodeScanner"), steps.indexOf("dismissOverlayIfShown"));
    EXPECT_LT(steps.indexOf("dismissOverlayIfShown"), steps.indexOf("validateVIN"));
    EXPECT_LT(steps.indexOf("validateVIN"), steps.indexOf("sendTimeSpent"));
}

TEST_F(CaptureScreen, BarcodeReportWithoutAPicturePassesTheErrorOn)
{
    std::unique_ptr<ZQTVINCaptureVC> screen(manualScreen());
    screen->show();
    capture.clear();
    const Error failure("AVFoundationErrorDomain", -11800, "The operation could not be completed");
    screen->stillImageCaptureCompleted("ABC", Image(), failure);
    ASSERT_EQ(delegate.calls.size(), 1);
    EXPECT_EQ(delegate.calls[0].vin, "ABC");
    EXPECT_TRUE(delegate.calls[0].scanned);
    EXPECT_FALSE(delegate.calls[0].valid);
    EXPECT_EQ(delegate.calls[0].error, failure);
    EXPECT_TRUE(screen->vinBarCodeImage().isNull());
    EXPECT_FALSE(screen->findChild<QPushButton *>("manuallyEnterVINBtn")->isHidden());
    EXPECT_FALSE(capture.steps().contains("stopBarCodeScanner"));
    EXPECT_FALSE(capture.steps().contains("processUsePhotoCompletionHandler"));
}

// --- Analytics and flash

TEST_F(CaptureScreen, AnalyticsEventsCarryTheirTypeNameAndContent)
{
    std::unique_ptr<ZQTVINCaptureVC> screen(plainScreen());
    QList<Notification> posted;
    int observer = 0;
    NotificationCenter::defaultCenter().addObserver(&observer, "ANALYTICS_INFO",
                                                    [&](const Notification &n) { posted << n; });
    screen->pushAnalyticsInfoForEventType(0, "x");
    screen->pushAnalyticsInfoForEventType(1, QString());
    screen->pushAnalyticsInfoForEventType(2, "1234");
    screen->pushAnalyticsInfoForEventType(3, "");
    screen->pushAnalyticsInfoForEventType(4, "ignored");
    NotificationCenter::defaultCenter().removeObserver(&observer);

    auto payload = [](const QString &type, const QString &name, const QString &content) {
        return QVariantMap{{"eventType", type}, {"eventName", name}, {"content", content}};
    };
    ASSERT_EQ(posted.size(), 4);
    EXPECT_EQ(posted[0].object.toMap(), payload("helpOverlay", "vinScan", "NULL"));
    EXPECT_EQ(posted[1].object.toMap(), payload("flashChange", "vinScan", "NULL"));
    EXPECT_EQ(posted[2].object.toMap(), payload("vinScan", "screenTime", "1234"));
    EXPECT_EQ(posted[3].object.toMap(), payload("vinScan", "hamburgerClick", ""));
    EXPECT_TRUE(posted[3].userInfo.isEmpty());
}

TEST_F(CaptureScreen, FlashButtonTogglesAndReportsOnlyUserChanges)
{
    std::unique_ptr<ZQTVINCaptureVC> screen(plainScreen());
    QStringList contents;
    int observer = 0;
    NotificationCenter::defaultCenter().addObserver(&observer, "ANALYTICS_INFO", [&](const Notification &n) {
        contents << n.object.toMap().value("content").toString();
    });
    screen->initFlashButtons();
    EXPECT_EQ(screen->flashSetting(), 0u);
    screen->handleFlashBtn();
    EXPECT_EQ(screen->flashSetting(), 1u);
    screen->handleFlashBtn();
    EXPECT_EQ(screen->flashSetting(), 0u);
    NotificationCenter::defaultCenter().removeObserver(&observer);
    EXPECT_EQ(contents, QStringList({"On", "Off"}));
}

TEST_F(CaptureScreen, HelpButtonPostsTheHelpEventThenShowsTheOverlay)
{
    std::unique_ptr<ZQTVINCaptureVC> screen(plainScreen());
    capture.clear();
    screen->handleHelpBtn();
    EXPECT_EQ(capture.steps(), QStringList({"handleHelpBtn", "pushAnalyticsInfoForEventType", "showOverlayWithForce"}));
}

// --- Size transitions

TEST_F(CaptureScreen, LandscapeTransitionsReinitialiseOnlyInLandscape)
{
    auto initialisations = [&](bool landscapeMode, int deviceOrientation) {
        std::unique_ptr<ZQTVINCaptureVC> screen(plainScreen());
        screen->setEnableLandscapeMode(landscapeMode);
        DeviceProfile::setDeviceOrientation(deviceOrientation);
        TransitionCoordinator coordinator;
        screen->viewWillTransitionToSize(QSizeF(812, 375), &coordinator);
        capture.clear();
        for (const auto &completion : coordinator.takeCompletions())
            completion();
        return capture.steps().count("initializeView");
    };
    EXPECT_EQ(initialisations(true, 3), 1);
    EXPECT_EQ(initialisations(true, 4), 1);
    EXPECT_EQ(initialisations(true, 5), 0) << "face up";
    EXPECT_EQ(initialisations(false, 3), 0) << "portrait mode ignores transitions";
}

// --- Rendering

TEST_F(CaptureScreen, RendersAt375x812)
{
    Host host;
    host.push(plainScreen(), capture);
    const QImage image = host.window.grab().toImage();
    ASSERT_EQ(image.size(), QSize(375, 812));
    ASSERT_TRUE(image.save(Artifacts::path("capture_375x812.png")));
    EXPECT_EQ(image.pixelColor(10, 10), Constants::getGlobalColorForKey("VINScanNavigationBarColor"))
        << "status bar filler";
    EXPECT_EQ(image.pixelColor(187, 400), Constants::getGlobalColorForKey("ApplicationBackgroundColor"))
        << "camera area";

    capture.clear();
    Host manualHost;
    ZQTVINCaptureVC *manual = manualScreen();
    manualHost.push(manual, capture);
    const QImage withStrips = manualHost.window.grab().toImage();
    ASSERT_TRUE(withStrips.save(Artifacts::path("capture_manual_375x812.png")));
    const QWidget *button = manual->findChild<QPushButton *>("manuallyEnterVINBtn");
    const QPoint inButton = button->mapTo(&manualHost.window, QPoint(button->width() / 2, 3));
    EXPECT_EQ(withStrips.pixelColor(inButton), Constants::getGlobalColorForKey("ManualVINButtonColor"));
    EXPECT_EQ(button->mapTo(&manualHost.window, QPoint(0, button->height())).y(), 812 - 15)
        << "the manual-entry strip ends the screen";
}
