// The view-controller stand-ins: the shared application's status bar and rotation. Navigation,
// modal presentation, size transitions, the application's notifications and loading are
// exercised through the capture screen (test_capture_screen.cpp, test_screen_face.cpp).
#include "platform/ui/Application.h"
#include "platform/foundation/DeviceProfile.h"
#include "platform/ui/NavigationController.h"
#include "platform/ui/Window.h"
#include "support/ScreenTestSupport.h"

#include <gtest/gtest.h>

#include <QTest>

using namespace ZQTPlatform;

namespace {

// Answers status bar and rotation questions with its public fields.
class AnsweringController : public ViewController
{
public:
    unsigned supportedInterfaceOrientations() const override { return orientations; }
    bool prefersStatusBarHidden() const override { return statusBarHidden; }
    int preferredStatusBarStyle() const override { return statusBarStyle; }

    unsigned orientations = InterfaceOrientation::MaskAllButUpsideDown;
    bool statusBarHidden = false;
    int statusBarStyle = StatusBarStyle::Default;
};

} // namespace

TEST(ApplicationTest, StatusBarAndRotationFollowTheFrontmostController)
{
    DeviceProfile::setCurrent(phoneProfile());
    Application *app = Application::sharedApplication();
    EXPECT_EQ(app->statusBarFrame(), QRectF(0, 0, 375, 44));

    Window window;
    window.resize(375, 812);
    auto *top = new AnsweringController;
    top->statusBarHidden = true;
    top->statusBarStyle = StatusBarStyle::LightContent;
    top->orientations = InterfaceOrientation::MaskPortrait;
    window.setRootViewController(new NavigationController(top));
    window.makeKeyAndVisible();
    QTest::qWait(20);
    EXPECT_EQ(Window::keyWindow(), &window);
    EXPECT_EQ(window.frontmostViewController(), top);
    EXPECT_TRUE(app->isStatusBarHidden());
    EXPECT_TRUE(app->statusBarFrame().isEmpty());
    EXPECT_EQ(app->statusBarStyle(), StatusBarStyle::LightContent);

    DeviceProfile::setDeviceOrientation(InterfaceOrientation::LandscapeRight);
    app->attemptRotationToDeviceOrientation();
    EXPECT_EQ(app->statusBarOrientation(), InterfaceOrientation::Portrait) << "portrait-only controller";
    top->orientations = InterfaceOrientation::MaskLandscape;
    app->attemptRotationToDeviceOrientation();
    EXPECT_EQ(app->statusBarOrientation(), InterfaceOrientation::LandscapeRight);
    DeviceProfile::setDeviceOrientation(5); // face up names no interface orientation
    app->attemptRotationToDeviceOrientation();
    EXPECT_EQ(app->statusBarOrientation(), InterfaceOrientation::LandscapeRight);
}
