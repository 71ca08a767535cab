#include "platform/ui/ViewController.h"

#include "platform/ui/Application.h"
#include "platform/ui/LayoutConstraint.h"
#include "platform/foundation/Log.h"
#include "platform/ui/NavigationController.h"
#include "platform/ui/TabBarController.h"
#include "platform/ui/TransitionCoordinator.h"
#include "platform/ui/Window.h"

#include <QEvent>
#include <QHideEvent>
#include <QPointer>
#include <QShowEvent>
#include <utility>

namespace ZQTPlatform {

namespace {

enum class Appearance { Disappeared, Appearing, Appeared, Disappearing };

template <class Container>
Container *nearestContainer(const ViewController *start)
{
    for (ViewController *c = start->parentViewController(); c; c = c->parentViewController()) {
        if (auto *container = qobject_cast<Container *>(c))
            return container;
    }
    return nullptr;
}

// The controller whose view holds the widget (nested controllers hold their own widgets).
const ViewController *owningController(const QWidget *widget)
{
    for (const QWidget *w = widget; w; w = w->parentWidget()) {
        if (auto *controller = qobject_cast<const ViewController *>(w))
            return controller;
    }
    return nullptr;
}

} // namespace

struct ViewController::Private
{
    bool viewLoaded = false;
    QString title;
    QPointer<ViewController> parent;
    QList<QPointer<ViewController>> children;
    QPointer<ViewController> presenting;
    QPointer<ViewController> presented;
    QPointer<QWidget> presentationHost;
    bool hidesBottomBarWhenPushed = false;
    Appearance appearance = Appearance::Disappeared;
    bool nextTransitionAnimated = false;
    bool deleteAfterDisappearing = false;
    bool destroying = false;
};

namespace {

// Whether the controller is on the key window's path from its root to the frontmost controller
// (through presented controllers and the children containers name for the status bar).
bool speaksForKeyWindow(const ZQTPlatform::ViewController *controller)
{
    const ZQTPlatform::Window *window = ZQTPlatform::Window::keyWindow();
    for (const ZQTPlatform::ViewController *step = window ? window->rootViewController() : nullptr; step;) {
        if (step == controller)
            return true;
        const ZQTPlatform::ViewController *presented = step->presentedViewController();
        step = presented ? presented : step->childViewControllerForStatusBar();
    }
    return false;
}

} // namespace

ViewController::ViewController(QWidget *parent) : QWidget(parent), d(std::make_unique<Private>())
{
}

ViewController::~ViewController()
{
    // No hook runs from here on: the subclass part is already gone.
    d->destroying = true;
    if (d->presented)
        delete d->presented.data();
    if (d->presentationHost)
        d->presentationHost->removeEventFilter(this);
}

bool ViewController::isViewLoaded() const
{
    return d->viewLoaded;
}

void ViewController::loadViewIfNeeded()
{
    if (d->viewLoaded)
        return;
    d->viewLoaded = true;
    viewDidLoad();
}

QString ViewController::title() const
{
    return d->title;
}

void ViewController::setTitle(const QString &title)
{
    if (d->title == title)
        return;
    d->title = title;
    Q_EMIT titleChanged(title);
}

ViewController *ViewController::parentViewController() const
{
    return d->parent;
}

QList<ViewController *> ViewController::childViewControllers() const
{
    QList<ViewController *> result;
    for (const QPointer<ViewController> &child : d->children) {
        if (child)
            result.append(child);
    }
    return result;
}

void ViewController::addChildViewController(ViewController *child)
{
    if (!child || child->d->parent == this)
        return;
    child->removeFromParentViewController();
    child->d->parent = this;
    d->children.append(child);
}

void ViewController::removeFromParentViewController()
{
    if (d->parent)
        d->parent->d->children.removeAll(this);
    d->parent = nullptr;
}

NavigationController *ViewController::navigationController() const
{
    return nearestContainer<NavigationController>(this);
}

TabBarController *ViewController::tabBarController() const
{
    return nearestContainer<TabBarController>(this);
}

void ViewController::presentViewController(ViewController *viewController, bool animated,
                                           std::function<void()> completion)
{
    if (!viewController || viewController == this)
        return;
    if (d->presented) {
        log(QStringLiteral("Warning: Attempt to present %1 on %2 which is already presenting %3")
                .arg(QString::fromLatin1(viewController->metaObject()->className()),
                     QString::fromLatin1(metaObject()->className()),
                     QString::fromLatin1(d->presented->metaObject()->className())));
        return;
    }
    QWidget *host = window();
    d->presented = viewController;
    viewController->d->presenting = this;
    viewController->d->presentationHost = host;
    viewController->setParent(host);
    viewController->setGeometry(host->rect());
    host->installEventFilter(viewController);
    viewController->d->nextTransitionAnimated = animated;
    viewController->raise();
    viewController->show();
    if (completion)
        QMetaObject::invokeMethod(viewController, std::move(completion), Qt::QueuedConnection);
}

void ViewController::dismissViewControllerAnimated(bool animated, std::function<void()> completion)
{
    ViewController *presenter = d->presented ? this : presentingViewController();
    if (!presenter || !presenter->d->presented)
        return;
    takeDownPresentation(presenter, animated);
    if (completion)
        QMetaObject::invokeMethod(presenter, std::move(completion), Qt::QueuedConnection);
}

void ViewController::takeDownPresentation(ViewController *presenter, bool animated)
{
    ViewController *presented = presenter->d->presented;
    if (presented->d->presented)
        takeDownPresentation(presented, false);
    presenter->d->presented = nullptr;
    if (presented->d->presentationHost)
        presented->d->presentationHost->removeEventFilter(presented);
    releaseAfterDisappearing(presented, animated);
}

ViewController *ViewController::presentingViewController() const
{
    for (const ViewController *c = this; c; c = c->parentViewController()) {
        if (c->d->presenting)
            return c->d->presenting;
    }
    return nullptr;
}

ViewController *ViewController::presentedViewController() const
{
    return d->presented;
}

bool ViewController::hidesBottomBarWhenPushed() const
{
    return d->hidesBottomBarWhenPushed;
}

void ViewController::setHidesBottomBarWhenPushed(bool hides)
{
    d->hidesBottomBarWhenPushed = hides;
}

unsigned ViewController::supportedInterfaceOrientations() const
{
    return InterfaceOrientation::MaskAllButUpsideDown;
}

bool ViewController::shouldAutorotate() const
{
    return true;
}

bool ViewController::shouldAutorotateToInterfaceOrientation(int orientation) const
{
    return orientation == InterfaceOrientation::Portrait;
}

int ViewController::preferredInterfaceOrientationForPresentation() const
{
    return InterfaceOrientation::Portrait;
}

int ViewController::preferredStatusBarStyle() const
{
    return 0;
}

bool ViewController::prefersStatusBarHidden() const
{
    return false;
}

ViewController *ViewController::childViewControllerForStatusBar() const
{
    return nullptr;
}

void ViewController::setNeedsStatusBarAppearanceUpdate()
{
    Application::sharedApplication()->updateStatusBarAppearance();
}

void ViewController::awakeFromNib() {}
void ViewController::viewDidLoad() {}
void ViewController::viewWillAppear(bool) {}
void ViewController::viewDidAppear(bool) {}
void ViewController::viewWillDisappear(bool) {}
void ViewController::viewDidDisappear(bool) {}
void ViewController::viewWillLayoutSubviews() {}
void ViewController::didReceiveMemoryWarning() {}

void ViewController::viewWillTransitionToSize(const QSizeF &size, TransitionCoordinator *coordinator)
{
    for (ViewController *child : childViewControllers())
        child->viewWillTransitionToSize(size, coordinator);
    if (d->presented)
        d->presented->viewWillTransitionToSize(size, coordinator);
}

void ViewController::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (event->spontaneous() || d->destroying)
        return;
    if (d->appearance == Appearance::Appearing || d->appearance == Appearance::Appeared)
        return;
    loadViewIfNeeded();
    const bool animated = std::exchange(d->nextTransitionAnimated, false);
    d->appearance = Appearance::Appearing;
    viewWillAppear(animated);
    // Only a controller that speaks for the window changes the status bar as it appears. One
    // whose view was merely added to another controller's view (a card over a screen) does not:
    // the screen's preference would otherwise undo what the card itself set.
    if (speaksForKeyWindow(this))
        Application::sharedApplication()->updateStatusBarAppearance();
    updateTopLayoutGuide();
    QMetaObject::invokeMethod(this, [this, animated] { finishAppearing(animated); }, Qt::QueuedConnection);
}

void ViewController::finishAppearing(bool animated)
{
    if (d->appearance != Appearance::Appearing)
        return;
    d->appearance = Appearance::Appeared;
    viewDidAppear(animated);
}

void ViewController::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    if (event->spontaneous() || d->destroying)
        return;
    if (d->appearance != Appearance::Appearing && d->appearance != Appearance::Appeared)
        return;
    const bool animated = std::exchange(d->nextTransitionAnimated, false);
    d->appearance = Appearance::Disappearing;
    viewWillDisappear(animated);
    QMetaObject::invokeMethod(this, [this, animated] { finishDisappearing(animated); }, Qt::QueuedConnection);
}

void ViewController::finishDisappearing(bool animated)
{
    if (d->appearance != Appearance::Disappearing)
        return;
    d->appearance = Appearance::Disappeared;
    viewDidDisappear(animated);
    if (d->deleteAfterDisappearing)
        deleteLater();
}

void ViewController::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    if (!d->viewLoaded || d->destroying)
        return;
    updateTopLayoutGuide();
    viewWillLayoutSubviews();
}

void ViewController::moveEvent(QMoveEvent *event)
{
    QWidget::moveEvent(event);
    if (d->viewLoaded && !d->destroying)
        updateTopLayoutGuide();
}

void ViewController::updateTopLayoutGuide()
{
    LayoutConstraint *guide = nullptr;
    for (LayoutConstraint *candidate : findChildren<LayoutConstraint *>(QString::fromLatin1(topLayoutGuideConstraintName))) {
        if (candidate->firstItem() && owningController(candidate->firstItem()) == this)
            guide = candidate;
    }
    if (!guide)
        return;
    const bool touchesTop = isWindow() || mapTo(window(), QPoint(0, 0)).y() == 0;
    const qreal length = touchesTop ? Application::sharedApplication()->statusBarFrame().height() : 0.0;
    if (guide->constant() != length)
        guide->setConstant(length);
}

bool ViewController::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == d->presentationHost && event->type() == QEvent::Resize)
        setGeometry(d->presentationHost->rect());
    return QWidget::eventFilter(watched, event);
}

void ViewController::setNextTransitionAnimated(ViewController *viewController, bool animated)
{
    viewController->d->nextTransitionAnimated = animated;
}

void ViewController::releaseAfterDisappearing(ViewController *viewController, bool animated)
{
    const Appearance state = viewController->d->appearance;
    if (state == Appearance::Appearing || state == Appearance::Appeared) {
        viewController->d->deleteAfterDisappearing = true;
        viewController->d->nextTransitionAnimated = animated;
        viewController->hide();
    } else if (state == Appearance::Disappearing) {
        viewController->d->deleteAfterDisappearing = true;
    } else {
        viewController->hide();
        viewController->deleteLater();
    }
}

} // namespace ZQTPlatform
