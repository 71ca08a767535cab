// The shared application: its status bar (kept in the device profile), its interface
// orientation, and the application and keyboard notifications that it posts on the default
// notification centre as the Qt application changes state. Hosts and tests may also drive the
// foreground, background and keyboard transitions by hand.
#pragma once

#include "ZQTGlobal.h"

#include <QObject>
#include <QRectF>

namespace ZQTPlatform {

class Window;

inline constexpr char UIApplicationWillEnterForegroundNotification[] = "UIApplicationWillEnterForegroundNotification";
inline constexpr char UIApplicationDidEnterBackgroundNotification[] = "UIApplicationDidEnterBackgroundNotification";
inline constexpr char UIKeyboardWillHideNotification[] = "UIKeyboardWillHideNotification";

namespace StatusBarStyle {
constexpr int Default = 0;
constexpr int LightContent = 1;
} // namespace StatusBarStyle

class ZQT_EXPORT Application : public QObject
{
    Q_OBJECT

public:
    // The one instance, made on first use on the GUI thread.
    static Application *sharedApplication();

    bool isStatusBarHidden() const;
    void setStatusBarHidden(bool hidden);
    // Across the top of the main screen, as high as the status bar; empty while it is hidden.
    QRectF statusBarFrame() const;
    int statusBarStyle() const;
    // The interface orientation (an InterfaceOrientation value), portrait at start.
    int statusBarOrientation() const;
    // Sets the interface orientation as it is (unknown, 0, included), as the platform's setter.
    void setStatusBarOrientation(int orientation);

    Window *keyWindow() const;

    // Gives the interface the device's orientation when the key window's frontmost controller
    // autorotates and supports it.
    void attemptRotationToDeviceOrientation();
    // Takes the status bar's style and visibility from the key window's frontmost controller.
    void updateStatusBarAppearance();

    // Posts UIApplicationDidEnterBackgroundNotification (once per stay in the background).
    void enterBackground();
    // Posts UIApplicationWillEnterForegroundNotification when coming back from the background.
    void enterForeground();
    // Posts UIKeyboardWillHideNotification.
    void keyboardWillHide();

private:
    explicit Application(QObject *parent);
    void applicationStateChanged(Qt::ApplicationState state);

    bool m_inBackground = false;
    int m_statusBarStyle = StatusBarStyle::Default;
    int m_orientation;
};

} // namespace ZQTPlatform
