// The capture screen: factories, start-up order, layout from configuration, modal test,
// orientation and status bar answers, back button, notifications, the VIN rule and the manual report.
#include "ZQTVINScanComponent.h"
#include "ViewControllers/VINPayload_p.h"
#include "platform/ui/Application.h"
#include "platform/ui/ButtonStyle.h"
#include "platform/capture/CaptureDevice.h"
#include "platform/ui/LayoutConstraint.h"
#include "platform/ui/NavigationBar.h"
#include "platform/ui/View.h"
#include "support/LogCapture.h"
#include "support/ScreenTestSupport.h"
#include "support/TemporaryMainBundle.h"

#include "support/TestData.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTest>

using namespace ZQTPlatform;
using Constants = ZQTVINScanComponentConstants;

namespace {

class CaptureScreen : public ::testing::Test
{
protected:
    void SetUp() override { DeviceProfile::setCurrent(phoneProfile()); }
    void TearDown() override { CaptureDevice::removeStandIns(); }

    ZQTVINCaptureVC *plainScreen() { return ZQTVINCaptureVC::createVinScannerViewWithDelegate(&delegate, "CLM-1"); }
    ZQTVINCaptureVC *manualScreen()
    {
        return ZQTVINCaptureVC::createVinScannerManualOptionViewWithDelegate(&delegate, "CLM-1");
    }
    ZQTVINCaptureVC *push(PhoneHost &host, ZQTVINCaptureVC *screen) { return pushAndWait(host, screen, capture); }
    // The steps logged so far, without the layout passes.
    QStringList steps() const
    {
        QStringList steps = capture.steps();
        steps.removeAll("viewWillTransitionToSize");
        return steps;
    }

    LogCapture capture;
    RecordingDelegate delegate;
};

const QStringList normalStartUp = {
    "awakeFromNib", "viewDidLoad", "setupViewComponents", "setNavigationBackgroundColor",
    "setNavigationItemTintColor", "configNavButtons", "updateViewTitleWithTitle", "resizeViewForNormalScan",
    "viewWillAppear", "viewDidAppear", "initializeView", "intialConfiguration", "configMode", "configLayout",
    "initCameraRig", "initCameraImageView", "initBarCodeScanner", "initFlashButtons", "updateFlashControls",
    "turnTorchOn", "setVINPhotoCaptureEntity", "startBarCodeScanner",
};

} // namespace

TEST_F(CaptureScreen, StartUpRunsEveryStepInOrderAndHidesTheHostBarUnlessAskedToKeepIt)
{
    {
        PhoneHost host;
        ZQTVINCaptureVC *screen = plainScreen();
        screen->setEnableLocationServices(false);
        screen->loadViewIfNeeded(); // loading again when shown loads nothing twice
        push(host, screen);
        EXPECT_EQ(steps(), normalStartUp);
        EXPECT_TRUE(screen->enableLocationServices()) << "forced on by appearing";
        EXPECT_TRUE(screen->hidesBottomBarWhenPushed());
        EXPECT_TRUE(host.navigation->isNavigationBarHidden());
    }
    // Manual entry opens the prompt instead of the scanner; asking for the host's bar keeps it.
    capture.clear();
    ZQTVINCaptureVC *screen = manualScreen();
    screen->setShowManualEntry(true);
    screen->setShowNavigateBar(true);
    PhoneHost host;
    push(host, screen);
    QStringList expected = normalStartUp;
    expected.removeAll("resizeViewForNormalScan");
    expected.replace(expected.indexOf("startBarCodeScanner"), "promptForVin");
    expected << "dismissOverlayIfShown";
    EXPECT_EQ(steps(), expected);
    EXPECT_FALSE(host.navigation->isNavigationBarHidden());
}

// Rendered to <build>/test-artifacts/ (the preview on every phone: test_screen_face.cpp).
TEST_F(CaptureScreen, PlainScreenCollapsesTheStripsAndRendersTheConfiguredLook)
{
    addFlatCamera(QColor(40, 160, 200));
    PhoneHost host;
    ZQTVINCaptureVC *screen = push(host, plainScreen());
    QTest::qWait(300);
    for (const char *name : {"manualVINContainerHeight", "thumbnailTitleHeight", "carouselConstraintHeight",
                             "manualConstraintHeight"}) {
        auto *constraint = screen->findChild<LayoutConstraint *>(name);
        ASSERT_NE(constraint, nullptr) << name;
        EXPECT_EQ(constraint->constant(), 0.0) << name;
        EXPECT_EQ(constraint->firstItem()->height(), 0) << name;
    }

    auto *bar = screen->findChild<NavigationBar *>("interNavigationBar");
    ASSERT_NE(bar, nullptr);
    EXPECT_EQ(bar->title(), Constants::getConfigStringForKey("TextTitle"));
    EXPECT_EQ(bar->mapTo(&host.window, QPoint(0, 0)).y(), 44) << "the inner bar sits below the status bar";
    EXPECT_EQ(backgroundColor(screen), configuredColour("VINScanNavigationBarColor")) << "the bar colour is set last";

    const QImage image = host.window.grab().toImage();
    ASSERT_EQ(image.size(), QSize(375, 812));
    ASSERT_TRUE(image.save(TestData::artifactPath("capture_375x812.png")));
    EXPECT_EQ(image.pixelColor(10, 10), configuredColour("VINScanNavigationBarColor")) << "status bar filler";

    // The manual option keeps the manual-entry strip at the bottom, styled from configuration.
    PhoneHost manualHost;
    ZQTVINCaptureVC *manual = push(manualHost, manualScreen());
    auto *button = manual->findChild<QPushButton *>("manuallyEnterVINBtn");
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(button->text(), Constants::getConfigStringForKey("ManualVINButtonText"));
    EXPECT_EQ(ButtonStyle::titleColor(button, ButtonStyle::State::Normal), configuredColour("ManualVINButtonFontColor"));
    const QImage withStrip = manualHost.window.grab().toImage();
    ASSERT_TRUE(withStrip.save(TestData::artifactPath("capture_manual_375x812.png")));
    EXPECT_EQ(withStrip.pixelColor(button->mapTo(&manualHost.window, QPoint(button->width() / 2, 3))),
              configuredColour("ManualVINButtonColor"));
    EXPECT_EQ(button->mapTo(&manualHost.window, QPoint(0, button->height())).y(), 812 - 15)
        << "the manual-entry strip ends the screen";
}

// The screen's answers: orientations by landscape mode (the device turned when it shows), the
// status bar hidden except on phones with an 812-point side, light only for the exact text, modal
// only inside a presented navigation controller. (The older rotation questions are asked by
// nothing in the platform.)
TEST_F(CaptureScreen, OrientationStatusBarAndModalAnswersFollowLandscapeModeThePhoneAndThePresentation)
{
    ZQTVINCaptureVC *screen = plainScreen();
    EXPECT_FALSE(screen->isModal()) << "alone (pushed on the host's stack or presented directly: the back button's test)";
    for (const bool landscape : {false, true}) {
        screen->setEnableLandscapeMode(landscape);
        EXPECT_EQ(screen->supportedInterfaceOrientations(), landscape ? 24u : 2u);
        EXPECT_TRUE(screen->shouldAutorotate());
    }
    EXPECT_EQ(DeviceProfile::current().deviceOrientation, 1) << "waking from the scene forces portrait";

    using Idiom = DeviceProfile::Idiom;
    const QList<std::tuple<QSizeF, Idiom, bool>> cases = {{{375, 812}, Idiom::Phone, false},
                                                          {{812, 375}, Idiom::Phone, false},
                                                          {{414, 896}, Idiom::Phone, true},
                                                          {{375, 812}, Idiom::Pad, true}};
    for (const auto &[size, idiom, hidden] : cases) {
        DeviceProfile device = phoneProfile(size);
        device.interfaceIdiom = idiom;
        DeviceProfile::setCurrent(device);
        EXPECT_EQ(screen->prefersStatusBarHidden(), hidden) << size.width() << "x" << size.height() << " idiom " << int(idiom);
    }
    EXPECT_EQ(screen->preferredStatusBarStyle(), StatusBarStyle::LightContent) << "the shipped \"LIGHT\"";
    {
        TemporaryMainBundle host;
        host.writeSettings("<key>VinScanControllerStatusbarType</key><string>light</string>");
        EXPECT_EQ(screen->preferredStatusBarStyle(), StatusBarStyle::Default);
    }
    PhoneHost host;
    push(host, screen);
    EXPECT_EQ(DeviceProfile::current().deviceOrientation, 3);

    // Inside a presented navigation controller the screen is modal.
    auto *navigation = new NavigationController(new ViewController);
    host.navigation->presentViewController(navigation, false);
    ZQTVINCaptureVC *pushed = plainScreen();
    navigation->pushViewController(pushed, false);
    EXPECT_TRUE(pushed->isModal());
}

TEST_F(CaptureScreen, TheBackButtonPopsAPushedScreenAndDismissesAPresentedOneWithoutReporting)
{
    for (const bool presented : {false, true}) {
        SCOPED_TRACE(presented ? "presented" : "pushed");
        PhoneHost host;
        host.navigation->pushViewController(new ViewController, false);
        host.window.makeKeyAndVisible();
        QPointer<ZQTVINCaptureVC> screen = plainScreen();
        screen->setHasBackButton(true);
        const qsizetype before = startUps(capture);
        if (presented)
            host.navigation->presentViewController(screen, true);
        else
            host.navigation->pushViewController(screen, false);
        ASSERT_TRUE(QTest::qWaitFor([&] { return startUps(capture) > before; }, 3000));
        ASSERT_EQ(host.navigation->isNavigationBarHidden(), !presented);
        capture.clear();
        QTest::mouseClick(screen->findChild<QPushButton *>("backButton"), Qt::LeftButton);
        EXPECT_EQ(steps().mid(0, 2), QStringList({"handleBackBtn", "stopBarCodeScanner"}));
        EXPECT_TRUE(QTest::qWaitFor([&] { return screen.isNull(); }, 2000));
        EXPECT_TRUE(steps().contains("deinitCameraRig"));
        EXPECT_EQ(host.navigation->presentedViewController(), nullptr);
        EXPECT_EQ(host.navigation->viewControllers().size(), 1);
        EXPECT_FALSE(host.navigation->isNavigationBarHidden()) << "the host's bar is back";
        EXPECT_TRUE(delegate.calls().isEmpty());
    }
}

TEST_F(CaptureScreen, ApplicationAndKeyboardNotificationsReachTheScreenWhileObserved)
{
    PhoneHost host;
    host.navigation->pushViewController(new ViewController, false);
    QPointer<ZQTVINCaptureVC> screen = push(host, plainScreen());
    Application *app = Application::sharedApplication();
    const auto notify = [&] {
        capture.clear();
        app->enterForeground(); // not in the background: nothing to announce
        app->keyboardWillHide();
        app->enterBackground();
        app->enterBackground(); // announced once
        app->enterForeground();
        return steps();
    };
    const QStringList applicationSteps = {"appDidEnterBackGround", "appBecomeActive", "permissionConverCheck"};
    EXPECT_EQ(notify(), QStringList{"keyboardWillHide"} + applicationSteps);
    host.navigation->pushViewController(new ViewController, false); // the screen disappears
    QTest::qWait(20);
    EXPECT_EQ(notify(), applicationSteps) << "the keyboard observer goes at disappearance, the application ones stay";
    delete screen.data();
    EXPECT_TRUE(notify().isEmpty()) << "a destroyed screen observes nothing";
}

// The codes of a frame are ranked on every frame by the same rule, quietly: a valid VIN first,
// VIN-shaped texts (17 VIN characters, check digit wrong or absent) next, part numbers and paint
// codes last.
TEST_F(CaptureScreen, ValidateVINTheRankOfACodeAndTheManualReportFollowTheLeadingIAndSeventeenCharacterRules)
{
    std::unique_ptr<ZQTVINCaptureVC> screen(manualScreen());
    const QList<std::tuple<QString, QString, int>> cases = {
        {validVin, validVin, 0},
        {"I" + validVin, validVin, 0},
        {"I" + validVin + "X", validVin, 0},                  // the I goes before the first 17 are tried
        {validVin + "XYZ", validVin, 0},                      // first 17
        {"XYZ" + validVin, validVin, 0},                      // last 17
        {"AB" + validVin + "CD", "AB" + validVin + "CD", 1},  // neither
        {validVin.left(16), validVin.left(16), 2},
        {"i" + validVin, validVin, 0},                        // lower-case i stays, then last 17
        {"1HGCM-82633A004352", "1HGCM-82633A004352", 0},      // passes whole, hyphen kept
        {"1HGCM82633A004353", "1HGCM82633A004353", 1},       // wrong check digit
        {"WVWZZZ1JZXW000001", "WVWZZZ1JZXW000001", 1},       // no check digit (a letter in its place)
        {"I1HGCM82633A004353-2", "1HGCM82633A004353-2", 1},  // first 17 after the I
        {"PN 84512-33A07", "PN 84512-33A07", 2},
        {"1HGCM82633A0O4352", "1HGCM82633A0O4352", 2},       // an O is no VIN character
        {QString(), QString(), 2}};
    for (const auto &[payload, vin, rank] : cases) {
        capture.clear();
        EXPECT_EQ(VINPayload::rank(payload), rank) << payload.toStdString();
        EXPECT_TRUE(capture.lines().isEmpty()) << capture.lines().join('|').toStdString();
        const ZQTVINDetails details = screen->validateVIN(payload);
        EXPECT_EQ(details.VIN(), vin) << payload.toStdString();
        EXPECT_EQ(details.isValid(), rank == 0) << payload.toStdString();
    }

    // The manual entry reports an invalid VIN too, and posts the time on screen each time.
    screen->loadViewIfNeeded();
    AnalyticsRecorder analytics;
    screen->handleManualEntryOK("1HGCM82633A0O4352");
    EXPECT_EQ(analytics.events.size(), 1);
    screen->handleManualEntryOK("1HGCM82633AOO4353");
    const QList<RecordingDelegate::Call> calls = delegate.calls();
    ASSERT_EQ(calls.size(), 2);
    EXPECT_EQ(calls[0].vin, validVin);
    EXPECT_TRUE(calls[0].valid);
    EXPECT_TRUE(calls[0].error.isNull());
    EXPECT_EQ(calls[1].vin, "1HGCM82633A004353");
    EXPECT_FALSE(calls[1].valid);
    EXPECT_FALSE(calls[0].scanned || calls[1].scanned);
    EXPECT_EQ(screen->vinBarCode(), "1HGCM82633A004353");
    ASSERT_EQ(analytics.events.size(), 2);
    EXPECT_EQ(analytics.events[0].value("eventName"), "screenTime");
    EXPECT_EQ(analytics.events[1].value("eventName"), "screenTime");
}
