// The view-controller stand-ins: lifecycle order, navigation, modal presentation, storyboards,
// the shared application and the window's size transitions.
#include "platform/Application.h"
#include "platform/DeviceProfile.h"
#include "platform/Exception.h"
#include "platform/LayoutConstraint.h"
#include "platform/NavigationBar.h"
#include "platform/NavigationController.h"
#include "platform/NotificationCenter.h"
#include "platform/Storyboard.h"
#include "platform/TabBarController.h"
#include "platform/TransitionCoordinator.h"
#include "platform/Window.h"
#include "support/LogCapture.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QLabel>
#include <QPointer>
#include <QTemporaryDir>
#include <QTest>

using namespace ZQTPlatform;

namespace {

// Records each hook as "<name>.<hook>" in a shared journal.
class RecordingController : public ViewController
{
public:
    RecordingController(QStringList *journal, const QString &name) : m_journal(journal), m_name(name) {}

    void awakeFromNib() override { record("awakeFromNib"); }
    void viewDidLoad() override { record("viewDidLoad"); }
    void viewWillAppear(bool animated) override { record("viewWillAppear", animated); }
    void viewDidAppear(bool animated) override { record("viewDidAppear", animated); }
    void viewWillDisappear(bool animated) override { record("viewWillDisappear", animated); }
    void viewDidDisappear(bool animated) override { record("viewDidDisappear", animated); }

    unsigned orientations = InterfaceOrientation::MaskAllButUpsideDown;
    bool statusBarHidden = false;
    int statusBarStyle = StatusBarStyle::Default;
    unsigned supportedInterfaceOrientations() const override { return orientations; }
    bool prefersStatusBarHidden() const override { return statusBarHidden; }
    int preferredStatusBarStyle() const override { return statusBarStyle; }

private:
    void record(const char *hook) { m_journal->append(m_name + QLatin1Char('.') + QLatin1String(hook)); }
    void record(const char *hook, bool animated)
    {
        m_journal->append(m_name + QLatin1Char('.') + QLatin1String(hook) + (animated ? "(animated)" : ""));
    }

    QStringList *m_journal;
    QString m_name;
};

void settle()
{
    QTest::qWait(20);
}

struct Fixture
{
    Fixture()
    {
        window.resize(375, 812);
    }
    RecordingController *controller(const QString &name) { return new RecordingController(&journal, name); }

    QStringList journal;
    Window window;
};

} // namespace

TEST(ViewControllerLifecycle, LoadsOnceAndAppearsThenDisappears)
{
    Fixture f;
    RecordingController *a = f.controller("A");
    f.window.setRootViewController(a);
    f.window.makeKeyAndVisible();
    settle();
    EXPECT_EQ(f.journal, QStringList({"A.viewDidLoad", "A.viewWillAppear", "A.viewDidAppear"}));
    EXPECT_TRUE(a->isViewLoaded());

    f.journal.clear();
    a->hide();
    settle();
    a->show();
    settle();
    EXPECT_EQ(f.journal, QStringList({"A.viewWillDisappear", "A.viewDidDisappear", "A.viewWillAppear", "A.viewDidAppear"}));
}

TEST(ViewControllerLifecycle, LoadViewIfNeededRunsViewDidLoadWithoutAppearing)
{
    QStringList journal;
    RecordingController controller(&journal, "A");
    controller.loadViewIfNeeded();
    controller.loadViewIfNeeded();
    EXPECT_EQ(journal, QStringList({"A.viewDidLoad"}));
}

TEST(NavigationControllerTest, PushAndPopRunTheHooksInPlatformOrder)
{
    Fixture f;
    RecordingController *a = f.controller("A");
    auto *navigation = new NavigationController(a);
    f.window.setRootViewController(navigation);
    f.window.makeKeyAndVisible();
    settle();
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

TEST(NavigationControllerTest, BarShowsTopTitleKeepsItsHeightAndFollowsFlags)
{
    Fixture f;
    RecordingController *a = f.controller("A");
    a->setTitle("First");
    auto *navigation = new NavigationController(a);
    f.window.setRootViewController(navigation);
    f.window.makeKeyAndVisible();
    settle();
    EXPECT_EQ(navigation->navigationBar()->title(), "First");
    EXPECT_EQ(navigation->navigationBar()->height(), 44);

    RecordingController *b = f.controller("B");
    b->setHidesBottomBarWhenPushed(true);
    navigation->pushViewController(b, false);
    b->setTitle("Second");
    EXPECT_EQ(navigation->navigationBar()->title(), "Second");
    EXPECT_TRUE(navigation->isBottomBarHidden());

    navigation->setNavigationBarHidden(true);
    EXPECT_TRUE(navigation->isNavigationBarHidden());
    EXPECT_EQ(navigation->navigationBar()->height(), 44);
    settle();
    EXPECT_EQ(b->mapTo(&f.window, QPoint(0, 0)).y(), 0) << "the content moves up under a hidden bar";

    navigation->popViewControllerAnimated(false);
    EXPECT_EQ(navigation->navigationBar()->title(), "First");
    EXPECT_FALSE(navigation->isBottomBarHidden());
}

TEST(ModalPresentation, CoversTheWindowAndLinksBothWays)
{
    Fixture f;
    RecordingController *root = f.controller("Root");
    f.window.setRootViewController(root);
    f.window.makeKeyAndVisible();
    settle();
    f.journal.clear();

    QPointer<RecordingController> child = f.controller("Child");
    auto *presentedNavigation = new NavigationController(child);
    bool completed = false;
    root->presentViewController(presentedNavigation, true, [&] {
        completed = true;
        f.journal.append("completion");
    });
    settle();
    EXPECT_TRUE(completed);
    EXPECT_EQ(f.journal.last(), "completion") << "the completion follows viewDidAppear";
    EXPECT_TRUE(f.journal.contains("Child.viewDidAppear"));
    EXPECT_EQ(presentedNavigation->geometry(), f.window.rect());
    EXPECT_EQ(root->presentedViewController(), presentedNavigation);
    EXPECT_EQ(presentedNavigation->presentingViewController(), root);
    EXPECT_EQ(child->presentingViewController(), root) << "a child answers with its presented parent's presenter";
    EXPECT_FALSE(f.journal.contains("Root.viewWillDisappear")) << "the presenter stays beneath";

    f.window.resize(812, 375);
    settle();
    EXPECT_EQ(presentedNavigation->geometry(), f.window.rect()) << "the cover follows the window";
}

TEST(ModalPresentation, DismissDeletesThePresentedControllerAfterItDisappears)
{
    Fixture f;
    RecordingController *root = f.controller("Root");
    f.window.setRootViewController(root);
    f.window.makeKeyAndVisible();
    QPointer<RecordingController> presented = f.controller("Modal");
    root->presentViewController(presented, false);
    settle();
    f.journal.clear();

    bool completed = false;
    presented->dismissViewControllerAnimated(true, [&] { completed = true; });
    settle();
    EXPECT_EQ(f.journal, QStringList({"Modal.viewWillDisappear(animated)", "Modal.viewDidDisappear(animated)"}));
    EXPECT_TRUE(completed);
    EXPECT_TRUE(presented.isNull());
    EXPECT_EQ(root->presentedViewController(), nullptr);
}

TEST(ModalPresentation, RefusesASecondPresentationWithALogLine)
{
    LogCapture capture;
    Fixture f;
    RecordingController *root = f.controller("Root");
    f.window.setRootViewController(root);
    RecordingController *first = f.controller("First");
    RecordingController *second = f.controller("Second");
    root->presentViewController(first, false);
    root->presentViewController(second, false);
    EXPECT_EQ(root->presentedViewController(), first);
    EXPECT_EQ(second->presentingViewController(), nullptr);
    ASSERT_FALSE(capture.lines().isEmpty());
    EXPECT_TRUE(capture.lines().last().contains("which is already presenting"));
    delete second;
}

TEST(TabBarControllerTest, ShowsTheSelectedControllerAndIsFoundByItsChildren)
{
    Fixture f;
    auto *tabs = new TabBarController;
    RecordingController *a = f.controller("A");
    RecordingController *b = f.controller("B");
    tabs->setViewControllers({a, b});
    f.window.setRootViewController(tabs);
    f.window.makeKeyAndVisible();
    settle();
    EXPECT_EQ(tabs->selectedIndex(), 0);
    EXPECT_EQ(b->tabBarController(), tabs);
    EXPECT_FALSE(f.journal.contains("B.viewWillAppear"));

    tabs->setSelectedIndex(1);
    settle();
    EXPECT_EQ(tabs->selectedViewController(), b);
    EXPECT_TRUE(f.journal.contains("A.viewDidDisappear"));
    EXPECT_TRUE(f.journal.contains("B.viewDidAppear"));
}

namespace {

class SceneController : public ViewController
{
    Q_OBJECT
public:
    int awakenings = 0;
    void awakeFromNib() override { ++awakenings; }
};

const QByteArray testScene = R"(<?xml version="1.0" encoding="UTF-8"?>
<ui version="4.0">
 <widget class="QWidget" name="view">
  <property name="geometry"><rect><x>0</x><y>0</y><width>320</width><height>480</height></rect></property>
  <property name="customClass" stdset="0"><string>%CLASS%</string></property>
  <layout class="QVBoxLayout" name="layout">
   <item>
    <widget class="NavigationBar" name="bar">
     <property name="heightConstraint" stdset="0"><string>barHeight</string></property>
     <property name="minimumSize"><size><width>0</width><height>44</height></size></property>
     <property name="maximumSize"><size><width>16777215</width><height>44</height></size></property>
    </widget>
   </item>
   <item><widget class="QLabel" name="caption"><property name="text"><string>Hello</string></property></widget></item>
  </layout>
 </widget>
 <customwidgets><customwidget><class>NavigationBar</class><extends>QWidget</extends></customwidget></customwidgets>
</ui>
)";

struct SceneFolder
{
    explicit SceneFolder(const QByteArray &customClass)
    {
        QDir(dir.path()).mkpath("Board");
        QFile file(dir.filePath("Board/Scene.ui"));
        file.open(QIODevice::WriteOnly);
        file.write(QByteArray(testScene).replace("%CLASS%", customClass));
    }
    Storyboard storyboard() const { return Storyboard::storyboardWithName("Board", Bundle::bundleWithPath(dir.path())); }
    QTemporaryDir dir;
};

} // namespace

TEST(StoryboardTest, InstantiatesTheRegisteredClassWithOutletsAndConstraints)
{
    Storyboard::registerViewControllerClass<SceneController>("SceneController");
    SceneFolder folder("SceneController");
    std::unique_ptr<ViewController> controller(folder.storyboard().instantiateViewControllerWithIdentifier("Scene"));
    auto *scene = qobject_cast<SceneController *>(controller.get());
    ASSERT_NE(scene, nullptr);
    EXPECT_EQ(scene->awakenings, 1);
    EXPECT_FALSE(scene->isViewLoaded()) << "viewDidLoad waits for the first appearance";

    auto *bar = scene->findChild<NavigationBar *>("bar");
    ASSERT_NE(bar, nullptr) << "the project's own widget classes are made by the loader";
    ASSERT_NE(scene->findChild<QLabel *>("caption"), nullptr);
    EXPECT_EQ(scene->findChild<QLabel *>("caption")->text(), "Hello");

    auto *height = scene->findChild<LayoutConstraint *>("barHeight");
    ASSERT_NE(height, nullptr);
    EXPECT_EQ(height->firstItem(), bar);
    EXPECT_EQ(height->firstAttribute(), LayoutConstraint::Attribute::Height);
    EXPECT_EQ(height->relation(), LayoutConstraint::Relation::Equal);
    EXPECT_DOUBLE_EQ(height->constant(), 44.0);
    height->setConstant(0.0);
    EXPECT_EQ(bar->maximumHeight(), 0);
    EXPECT_EQ(bar->minimumHeight(), 0);
}

TEST(StoryboardTest, UnknownClassFallsBackToThePlainControllerWithTheLogLine)
{
    LogCapture capture;
    SceneFolder folder("NoSuchController");
    std::unique_ptr<ViewController> controller(folder.storyboard().instantiateViewControllerWithIdentifier("Scene"));
    ASSERT_NE(controller, nullptr);
    EXPECT_STREQ(controller->metaObject()->className(), "ZQTPlatform::ViewController");
    EXPECT_TRUE(capture.lines().contains("Unknown class NoSuchController in Interface Builder file."));
}

TEST(StoryboardTest, MissingSceneOrFolderIsRefused)
{
    SceneFolder folder("SceneController");
    try {
        folder.storyboard().instantiateViewControllerWithIdentifier("Elsewhere");
        FAIL() << "an unknown identifier must raise";
    } catch (const Exception &e) {
        EXPECT_EQ(e.name(), "NSInvalidArgumentException");
        EXPECT_TRUE(e.reason().contains("'Elsewhere'"));
    }
    EXPECT_TRUE(Storyboard::storyboardWithName("NoBoard", Bundle::bundleWithPath(folder.dir.path())).isNull());
}

TEST(LayoutConstraintTest, InequalitiesBoundTheItemInsteadOfFixingIt)
{
    QWidget holder;
    QWidget item(&holder);
    LayoutConstraint atLeast(&item, LayoutConstraint::Attribute::Width, LayoutConstraint::Relation::GreaterThanOrEqual,
                             1.0, 30.0, &holder);
    LayoutConstraint atMost(&item, LayoutConstraint::Attribute::Height, LayoutConstraint::Relation::LessThanOrEqual,
                            1.0, 20.0, &holder);
    EXPECT_EQ(item.minimumWidth(), 30);
    EXPECT_EQ(item.maximumWidth(), QWIDGETSIZE_MAX);
    EXPECT_EQ(item.maximumHeight(), 20);
    EXPECT_EQ(item.minimumHeight(), 0);
}

TEST(ApplicationTest, PostsForegroundAndBackgroundOncePerTransition)
{
    QStringList posted;
    int observer = 0;
    NotificationCenter::defaultCenter().addObserver(&observer, QString(), [&](const Notification &n) { posted << n.name; });
    Application *app = Application::sharedApplication();
    app->enterForeground(); // not in the background: nothing to announce
    app->enterBackground();
    app->enterBackground();
    app->enterForeground();
    app->keyboardWillHide();
    NotificationCenter::defaultCenter().removeObserver(&observer);
    EXPECT_EQ(posted, QStringList({"UIApplicationDidEnterBackgroundNotification",
                                   "UIApplicationWillEnterForegroundNotification", "UIKeyboardWillHideNotification"}));
}

TEST(ApplicationTest, StatusBarFrameComesFromTheDeviceProfile)
{
    DeviceProfile profile;
    profile.mainScreenBounds = QSizeF(375, 812);
    profile.interfaceIdiom = DeviceProfile::Idiom::Phone;
    profile.statusBarHeight = 44;
    DeviceProfile::setCurrent(profile);
    Application *app = Application::sharedApplication();
    EXPECT_EQ(app->statusBarFrame(), QRectF(0, 0, 375, 44));
    app->setStatusBarHidden(true);
    EXPECT_TRUE(DeviceProfile::current().statusBarHidden);
    EXPECT_TRUE(app->statusBarFrame().isEmpty());
}

TEST(ApplicationTest, StatusBarAndRotationFollowTheFrontmostController)
{
    DeviceProfile profile;
    profile.mainScreenBounds = QSizeF(375, 812);
    profile.interfaceIdiom = DeviceProfile::Idiom::Phone;
    DeviceProfile::setCurrent(profile);
    Fixture f;
    RecordingController *top = f.controller("Top");
    top->statusBarHidden = true;
    top->statusBarStyle = StatusBarStyle::LightContent;
    top->orientations = InterfaceOrientation::MaskPortrait;
    f.window.setRootViewController(new NavigationController(top));
    f.window.makeKeyAndVisible();
    settle();
    Application *app = Application::sharedApplication();
    EXPECT_EQ(f.window.frontmostViewController(), top);
    EXPECT_TRUE(app->isStatusBarHidden());
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

namespace {

class TransitionRecorder : public ViewController
{
public:
    QList<QSizeF> sizes;
    int completions = 0;
    void viewWillTransitionToSize(const QSizeF &size, TransitionCoordinator *coordinator) override
    {
        sizes << size;
        coordinator->animateAlongsideTransition({}, [this] { ++completions; });
    }
};

} // namespace

TEST(WindowTest, ASizeChangeReachesControllersAndCompletesLater)
{
    Window window;
    window.resize(375, 812);
    auto *child = new TransitionRecorder;
    window.setRootViewController(new NavigationController(child));
    window.makeKeyAndVisible();
    settle();
    EXPECT_TRUE(child->sizes.isEmpty()) << "the first size is no transition";

    window.resize(812, 375);
    EXPECT_EQ(child->sizes, QList<QSizeF>({QSizeF(812, 375)}));
    EXPECT_EQ(child->completions, 0);
    settle();
    EXPECT_EQ(child->completions, 1);
    EXPECT_TRUE(window.isKeyWindow());
    EXPECT_EQ(Window::keyWindow(), &window);
}

#include "test_view_controllers.moc"
