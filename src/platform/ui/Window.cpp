#include "platform/ui/Window.h"

#include "platform/ui/TransitionCoordinator.h"
#include "platform/ui/View.h"
#include "platform/ui/ViewController.h"

#include <QGridLayout>
#include <QPointer>
#include <QResizeEvent>

namespace ZQTPlatform {

namespace {
QPointer<Window> &currentKeyWindow()
{
    static QPointer<Window> window;
    return window;
}
} // namespace

Window::Window(QWidget *parent) : QWidget(parent)
{
    auto *layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
}

Window::~Window() = default;

ViewController *Window::rootViewController() const
{
    return m_root;
}

void Window::setRootViewController(ViewController *viewController)
{
    if (viewController == m_root)
        return;
    delete m_root.data();
    m_root = viewController;
    if (m_root) {
        static_cast<QGridLayout *>(layout())->addWidget(m_root, 0, 0);
        m_root->show();
    }
}

void Window::makeKeyAndVisible()
{
    currentKeyWindow() = this;
    show();
}

bool Window::isKeyWindow() const
{
    return currentKeyWindow() == this;
}

Window *Window::keyWindow()
{
    return currentKeyWindow();
}

void Window::layoutIfNeeded()
{
    ZQTPlatform::layoutIfNeeded(this);
}

ViewController *Window::frontmostViewController() const
{
    ViewController *front = m_root;
    while (front) {
        if (ViewController *presented = front->presentedViewController())
            front = presented;
        else if (ViewController *child = front->childViewControllerForStatusBar())
            front = child;
        else
            break;
    }
    return front;
}

void Window::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    if (!m_root || !event->oldSize().isValid() || event->oldSize() == event->size())
        return;
    TransitionCoordinator coordinator;
    m_root->viewWillTransitionToSize(QSizeF(event->size()), &coordinator);
    for (const TransitionCoordinator::Block &animation : coordinator.takeAnimations())
        animation();
    for (const TransitionCoordinator::Block &completion : coordinator.takeCompletions())
        QMetaObject::invokeMethod(this, completion, Qt::QueuedConnection);
}

} // namespace ZQTPlatform
