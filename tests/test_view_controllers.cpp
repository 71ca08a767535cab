// The view-controller stand-ins: the order of the hooks in navigation, modal presentation, the
// shared application's status bar and rotation, and the window's size transitions. The
// application's notifications, loading and tab bar controllers are exercised through the
// capture screen (test_capture_screen.cpp).
#include "platform/ui/Application.h"
#include "platform/foundation/DeviceProfile.h"
#include "platform/ui/NavigationController.h"
#include "platform/ui/TransitionCoordinator.h"
#include "platform/ui/Window.h"
#include "support/LogCapture.h"
#include "support/ScreenTestSupport.h"

#include <gtest/gtest.h>

#include <QPointer>
#include <QTest>

using namespace ZQTPlatform;

namespace {

// Records each hook as "<name>.<hook>" in a shared journal; answers status bar and rotation
// questions with its public fields.
class RecordingController : public ViewController
{
public:
    RecordingController(QStringList *journal, const QString &name) : m_journal(journal), m_name(name) {}
    void viewDidLoad() override { record("viewDidLoad"); }
    void viewWillAppear(bool animated) override { record("viewWillAppear", animated); }
    void viewDidAppear(bool animated) override { record("viewDidAppear", animated); }
    void viewWillDisappear(bool animated) override { record("viewWillDisappear", animated); }
    void viewDidDisappear(bool animated) override { record("viewDidDisappear", animated); }
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
    void record(const QString &hook, bool animated = false) { m_journal->append(m_name + '.' + hook + (animated ? "(animated)" : "")); }
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

TEST(NavigationControllerTest, PushAndPopRunTheHooksInPlatformOrder)
{
    Fixture f;
    RecordingController *a = f.controller("A");
    auto *navigation = f.showRoot(new NavigationController(a));
    f.journal.clear();

    QPointer<RecordingController> b = f.controller("B");
    navigation->pushViewController(b, true);
    settle();
    EXPECT_EQ(f.journal, QStringList({"A.viewWillDisappear(animated)", "B.viewDidLoad", "B.viewWillAppear(animated)",
                                      "A.viewDidDisappear(animated)", "B.viewDidAppear(animated)"}));
    EXPECT_EQ(navigation->viewControllers(), QList<ViewController *>({a, b.data()}));
    EXPECT_EQ(b->navigationController(), navigation);

    f.journal.clear();
    EXPECT_EQ(navigation->popViewControllerAnimated(false), b.data());
    settle();
    EXPECT_EQ(f.journal, QStringList({"B.viewWillDisappear", "A.viewWillAppear", "B.viewDidDisappear", "A.viewDidAppear"}));
    EXPECT_TRUE(b.isNull()) << "a popped controller is deleted once it has disappeared";
    EXPECT_EQ(navigation->popViewControllerAnimated(false), nullptr) << "the root is never popped";
}

TEST(ModalPresentation, CoversTheWindowLinksBothWaysRefusesASecondAndDismissDeletes)
{
    LogCapture capture;
    Fixture f;
    RecordingController *root = f.showRoot(f.controller("Root"));
    f.journal.clear();
    QPointer<RecordingController> child = f.controller("Child");
    QPointer<NavigationController> presented = new NavigationController(child);
    root->presentViewController(presented, true, [&] { f.journal.append("completion"); });
    settle();
    EXPECT_EQ(f.journal.mid(f.journal.size() - 2), QStringList({"Child.viewDidAppear", "completion"}));
    EXPECT_FALSE(f.journal.contains("Root.viewWillDisappear")) << "the presenter stays beneath";
    EXPECT_EQ(root->presentedViewController(), presented);
    EXPECT_EQ(presented->presentingViewController(), root);
    EXPECT_EQ(child->presentingViewController(), root) << "a child answers with its presented parent's presenter";
    EXPECT_EQ(presented->geometry(), f.window.rect());
    f.window.resize(812, 375);
    settle();
    EXPECT_EQ(presented->geometry(), f.window.rect()) << "the cover follows the window";

    std::unique_ptr<RecordingController> second(f.controller("Second"));
    root->presentViewController(second.get(), false);
    EXPECT_EQ(root->presentedViewController(), presented);
    EXPECT_EQ(second->presentingViewController(), nullptr);
    ASSERT_FALSE(capture.lines().isEmpty());
    EXPECT_TRUE(capture.lines().last().contains("which is already presenting"));

    f.journal.clear();
    bool completed = false;
    presented->dismissViewControllerAnimated(true, [&] { completed = true; });
    settle();
    EXPECT_EQ(f.journal, QStringList({"Child.viewWillDisappear", "Child.viewDidDisappear"}));
    EXPECT_TRUE(completed);
    EXPECT_TRUE(presented.isNull()) << "deleted once it has disappeared";
    EXPECT_EQ(root->presentedViewController(), nullptr);
}

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
