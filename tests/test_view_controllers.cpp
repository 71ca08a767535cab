// The view-controller stand-ins: the shared application's status bar and rotation, and the
// window's size transitions. Navigation, modal presentation, the application's notifications and
// loading are exercised through the capture screen (test_capture_screen.cpp).
#include "platform/ui/Application.h"
#include "platform/foundation/DeviceProfile.h"
#include "platform/ui/NavigationController.h"
#include "platform/ui/TransitionCoordinator.h"
#include "platform/ui/Window.h"
#include "support/ScreenTestSupport.h"

#include <gtest/gtest.h>

#include <QTest>

using namespace ZQTPlatform;

namespace {

// Records size transitions as "<name>.<hook>" in a shared journal; answers status bar and
// rotation questions with its public fields.
class RecordingController : public ViewController
{
public:
    RecordingController(QStringList *journal, const QString &name) : m_journal(journal), m_name(name) {}
    unsigned supportedInterfaceOrientations() const override { return orientations; }
    bool prefersStatusBarHidden() const override { return statusBarHidden; }
    int preferredStatusBarStyle() const override { return statusBarStyle; }
    void viewWillTransitionToSize(const QSizeF &size, TransitionCoordinator *coordinator) override
    {
        record(QStringLiteral("viewWillTransitionToSize(%1x%2)").arg(size.width()).arg(size.height()));
        coordinator->animateAlongsideTransition({}, [this] { record("transitionCompleted"); });
    }

    unsigned orientations = InterfaceOrientation::MaskAllButUpsideDown;
    bool statusBarHidden = false;
    int statusBarStyle = StatusBarStyle::Default;

private:
    void record(const QString &hook) { m_journal->append(m_name + '.' + hook); }
    QStringList *m_journal;
    QString m_name;
};

void settle() { QTest::qWait(20); }

struct Fixture
{
    Fixture() { window.resize(375, 812); }
    RecordingController *controller(const QString &name) { return new RecordingController(&journal, name); }
    // Makes the controller the window's root and shows the window.
    template <class T> T *showRoot(T *root)
    {
        window.setRootViewController(root);
        window.makeKeyAndVisible();
        settle();
        return root;
    }

    QStringList journal;
    Window window;
};

} // namespace

TEST(ApplicationTest, StatusBarAndRotationFollowTheFrontmostController)
{
    DeviceProfile::setCurrent(phoneProfile());
    Application *app = Application::sharedApplication();
    EXPECT_EQ(app->statusBarFrame(), QRectF(0, 0, 375, 44));

    Fixture f;
    RecordingController *top = f.controller("Top");
    top->statusBarHidden = true;
    top->statusBarStyle = StatusBarStyle::LightContent;
    top->orientations = InterfaceOrientation::MaskPortrait;
    f.showRoot(new NavigationController(top));
    EXPECT_EQ(f.window.frontmostViewController(), top);
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

TEST(WindowTest, ASizeChangeReachesControllersAndCompletesLater)
{
    Fixture f;
    f.showRoot(new NavigationController(f.controller("A")));
    EXPECT_FALSE(f.journal.join(' ').contains("viewWillTransitionToSize")) << "the first size is no transition";
    EXPECT_EQ(Window::keyWindow(), &f.window);
    f.journal.clear();
    f.window.resize(812, 375);
    EXPECT_EQ(f.journal, QStringList({"A.viewWillTransitionToSize(812x375)"}));
    settle();
    EXPECT_EQ(f.journal, QStringList({"A.viewWillTransitionToSize(812x375)", "A.transitionCompleted"}));
}
