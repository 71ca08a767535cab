#include "platform/ui/TabBarController.h"

#include <QGridLayout>

namespace ZQTPlatform {

TabBarController::TabBarController(QWidget *parent) : ViewController(parent), m_layout(new QGridLayout(this))
{
    m_layout->setContentsMargins(0, 0, 0, 0);
}

QList<ViewController *> TabBarController::viewControllers() const
{
    return m_viewControllers;
}

void TabBarController::setViewControllers(const QList<ViewController *> &viewControllers)
{
    for (ViewController *old : std::as_const(m_viewControllers)) {
        if (!viewControllers.contains(old))
            releaseAfterDisappearing(old, false);
    }
    m_viewControllers = viewControllers;
    m_selectedIndex = -1;
    for (ViewController *viewController : viewControllers) {
        addChildViewController(viewController);
        m_layout->addWidget(viewController, 0, 0);
        viewController->hide();
    }
    setSelectedIndex(0);
}

int TabBarController::selectedIndex() const
{
    return m_selectedIndex;
}

void TabBarController::setSelectedIndex(int index)
{
    if (index < 0 || index >= m_viewControllers.size() || index == m_selectedIndex)
        return;
    if (ViewController *previous = selectedViewController())
        previous->hide();
    m_selectedIndex = index;
    m_viewControllers.at(index)->show();
}

ViewController *TabBarController::selectedViewController() const
{
    return m_selectedIndex < 0 ? nullptr : m_viewControllers.at(m_selectedIndex);
}

ViewController *TabBarController::childViewControllerForStatusBar() const
{
    return selectedViewController();
}

} // namespace ZQTPlatform
