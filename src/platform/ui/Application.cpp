#include "platform/ui/Application.h"

#include "platform/foundation/DeviceProfile.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/foundation/Orientation.h"
#include "platform/ui/ViewController.h"
#include "platform/ui/Window.h"

#include <QGuiApplication>
#include <QInputMethod>

namespace ZQTPlatform {

Application *Application::sharedApplication()
{
    static Application *instance = new Application(QCoreApplication::instance());
    return instance;
}

Application::Application(QObject *parent) : QObject(parent), m_orientation(InterfaceOrientation::Portrait)
{
    if (auto *gui = qobject_cast<QGuiApplication *>(QCoreApplication::instance())) {
        connect(gui, &QGuiApplication::applicationStateChanged, this, &Application::applicationStateChanged);
        QInputMethod *input = QGuiApplication::inputMethod();
        connect(input, &QInputMethod::visibleChanged, this, [this, input] {
            if (!input->isVisible())
                keyboardWillHide();
        });
    }
}

bool Application::isStatusBarHidden() const
{
    return DeviceProfile::current().statusBarHidden;
}

void Application::setStatusBarHidden(bool hidden)
{
    DeviceProfile::setStatusBarHidden(hidden);
}

QRectF Application::statusBarFrame() const
{
    const DeviceProfile profile = DeviceProfile::current();
    if (profile.statusBarHidden)
        return QRectF();
    return QRectF(0.0, 0.0, profile.mainScreenBounds.width(), profile.statusBarHeight);
}

int Application::statusBarStyle() const
{
    return m_statusBarStyle;
}

int Application::statusBarOrientation() const
{
    return m_orientation;
}

void Application::setStatusBarOrientation(int orientation)
{
    m_orientation = orientation;
}

Window *Application::keyWindow() const
{
    return Window::keyWindow();
}

void Application::attemptRotationToDeviceOrientation()
{
    const Window *window = keyWindow();
    const ViewController *front = window ? window->frontmostViewController() : nullptr;
    const int device = DeviceProfile::current().deviceOrientation;
    if (!front || !InterfaceOrientation::isInterfaceOrientation(device))
        return;
    if (front->shouldAutorotate() && (front->supportedInterfaceOrientations() & InterfaceOrientation::mask(device)))
        m_orientation = device;
}

void Application::updateStatusBarAppearance()
{
    const Window *window = keyWindow();
    const ViewController *front = window ? window->frontmostViewController() : nullptr;
    if (!front)
        return;
    m_statusBarStyle = front->preferredStatusBarStyle();
    setStatusBarHidden(front->prefersStatusBarHidden());
}

void Application::enterBackground()
{
    if (m_inBackground)
        return;
    m_inBackground = true;
    NotificationCenter::defaultCenter().postNotificationName(QString::fromLatin1(UIApplicationDidEnterBackgroundNotification));
}

void Application::enterForeground()
{
    if (!m_inBackground)
        return;
    m_inBackground = false;
    NotificationCenter::defaultCenter().postNotificationName(QString::fromLatin1(UIApplicationWillEnterForegroundNotification));
}

void Application::keyboardWillHide()
{
    NotificationCenter::defaultCenter().postNotificationName(QString::fromLatin1(UIKeyboardWillHideNotification));
}

void Application::applicationStateChanged(Qt::ApplicationState state)
{
    if (state == Qt::ApplicationHidden || state == Qt::ApplicationSuspended)
        enterBackground();
    else if (state == Qt::ApplicationActive)
        enterForeground();
}

} // namespace ZQTPlatform
