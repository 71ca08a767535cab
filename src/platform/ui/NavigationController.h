// A navigation controller: a stack of view controllers under a navigation bar. Only the top
// controller is on screen; pushing and popping run the appear and disappear hooks.
#pragma once

#include "ZQTGlobal.h"
#include "platform/ui/ViewController.h"

class QGridLayout;

namespace ZQTPlatform {

class NavigationBar;

class ZQT_EXPORT NavigationController : public ViewController
{
    Q_OBJECT

public:
    // rootViewController (may be nullptr) becomes the bottom of the stack.
    explicit NavigationController(ViewController *rootViewController = nullptr, QWidget *parent = nullptr);
    ~NavigationController() override;

    QList<ViewController *> viewControllers() const;
    ViewController *topViewController() const;

    // Puts the controller on top; the navigation controller owns it from then on.
    void pushViewController(ViewController *viewController, bool animated);
    // Takes the top controller off (never the root) and returns it; it is deleted once it has
    // disappeared, so the pointer is only good until the event loop runs. nullptr at the root.
    ViewController *popViewControllerAnimated(bool animated);

    // The bar shows the top controller's title; it is 44 points high, hidden or not.
    NavigationBar *navigationBar() const;
    bool isNavigationBarHidden() const;
    void setNavigationBarHidden(bool hidden, bool animated = false);
    // True while the top controller asks for the bottom bar to be hidden.
    bool isBottomBarHidden() const;

    ViewController *childViewControllerForStatusBar() const override;

private:
    void showTitleOf(ViewController *viewController);

    NavigationBar *m_bar;
    QGridLayout *m_layout;
    QList<ViewController *> m_stack;
    bool m_barHidden = false;
};

} // namespace ZQTPlatform
