#include "platform/ui/NavigationController.h"

#include "platform/ui/NavigationBar.h"

#include <QGridLayout>

namespace ZQTPlatform {

namespace {
constexpr int barRow = 0;
constexpr int contentRow = 1;
} // namespace

NavigationController::NavigationController(ViewController *rootViewController, QWidget *parent)
    : ViewController(parent), m_bar(new NavigationBar(this)), m_layout(new QGridLayout(this))
{
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(0);
    m_layout->addWidget(m_bar, barRow, 0);
    m_layout->setRowStretch(contentRow, 1);
    if (rootViewController)
        pushViewController(rootViewController, false);
}

NavigationController::~NavigationController()
{
    // The stack goes before the child widgets do: their deletion must not reach it.
    for (ViewController *viewController : std::as_const(m_stack))
        disconnect(viewController, nullptr, this, nullptr);
}

QList<ViewController *> NavigationController::viewControllers() const
{
    return m_stack;
}

ViewController *NavigationController::topViewController() const
{
    return m_stack.isEmpty() ? nullptr : m_stack.last();
}

void NavigationController::pushViewController(ViewController *viewController, bool animated)
{
    if (!viewController || m_stack.contains(viewController))
        return;
    ViewController *previous = topViewController();
    addChildViewController(viewController);
    m_stack.append(viewController);
    m_layout->addWidget(viewController, contentRow, 0);
    connect(viewController, &ViewController::titleChanged, this, [this, viewController] {
        if (topViewController() == viewController)
            showTitleOf(viewController);
    });
    // A controller deleted by its owner leaves the stack; the one below becomes the top. The
    // controller is half destroyed by now: it is only compared by address.
    connect(viewController, &QObject::destroyed, this, [this](QObject *gone) {
        auto isGone = [gone](ViewController *entry) { return static_cast<void *>(entry) == static_cast<void *>(gone); };
        const bool wasTop = !m_stack.isEmpty() && isGone(m_stack.last());
        m_stack.removeIf(isGone);
        if (wasTop && !m_stack.isEmpty()) {
            m_stack.last()->show();
            showTitleOf(m_stack.last());
        }
    });
    if (previous) {
        setNextTransitionAnimated(previous, animated);
        previous->hide();
    }
    setNextTransitionAnimated(viewController, animated);
    viewController->show();
    showTitleOf(viewController);
}

ViewController *NavigationController::popViewControllerAnimated(bool animated)
{
    if (m_stack.size() < 2)
        return nullptr;
    ViewController *popped = m_stack.takeLast();
    disconnect(popped, nullptr, this, nullptr);
    releaseAfterDisappearing(popped, animated);
    ViewController *top = topViewController();
    setNextTransitionAnimated(top, animated);
    top->show();
    showTitleOf(top);
    return popped;
}

NavigationBar *NavigationController::navigationBar() const
{
    return m_bar;
}

bool NavigationController::isNavigationBarHidden() const
{
    return m_barHidden;
}

void NavigationController::setNavigationBarHidden(bool hidden, bool)
{
    m_barHidden = hidden;
    m_bar->setVisible(!hidden);
}

bool NavigationController::isBottomBarHidden() const
{
    const ViewController *top = topViewController();
    return top && top->hidesBottomBarWhenPushed();
}

ViewController *NavigationController::childViewControllerForStatusBar() const
{
    return topViewController();
}

void NavigationController::showTitleOf(ViewController *viewController)
{
    m_bar->setTitle(viewController->title());
}

} // namespace ZQTPlatform
