// A top-level window that shows one root view controller. The window made key last is the
// application's key window. A change of the window's size is announced to the controllers
// through viewWillTransitionToSize.
#pragma once

#include "ZQTGlobal.h"
#include "platform/ui/ViewController.h"

#include <QPointer>
#include <QWidget>

namespace ZQTPlatform {

class ZQT_EXPORT Window : public QWidget
{
    Q_OBJECT

public:
    explicit Window(QWidget *parent = nullptr);
    ~Window() override;

    ViewController *rootViewController() const;
    // The window owns its root controller; a previous root is deleted.
    void setRootViewController(ViewController *viewController);

    // Shows the window and makes it the key window.
    void makeKeyAndVisible();
    bool isKeyWindow() const;
    // The key window, or nullptr when there is none.
    static Window *keyWindow();

    // Lays the window's views out now.
    void layoutIfNeeded();

    // The controller that speaks for the window: the root, then whatever it (and each
    // controller after it) presented, then the child that each container names.
    ViewController *frontmostViewController() const;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    QPointer<ViewController> m_root;
};

} // namespace ZQTPlatform
