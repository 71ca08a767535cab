// The platform's view controller, on a QWidget that is the controller's view. It runs the
// lifecycle hooks as the platform does: viewDidLoad once before the first appearance (or at
// loadViewIfNeeded), viewWillAppear when the widget is shown and viewDidAppear on the next turn
// of the event loop, the disappear pair likewise when it is hidden. It knows its containers,
// presents other controllers modally and answers the orientation and status bar questions.
#pragma once

#include "ZQTGlobal.h"
#include "platform/foundation/Orientation.h"

#include <QList>
#include <QSizeF>
#include <QString>
#include <QWidget>
#include <functional>
#include <memory>

namespace ZQTPlatform {

class NavigationController;
class TabBarController;
class TransitionCoordinator;

class ZQT_EXPORT ViewController : public QWidget
{
    Q_OBJECT

public:
    // A scene whose root holds a height constraint of this name gets a top layout guide: the
    // constraint follows the status bar's height while the controller's view touches the top
    // edge of its window, and is 0 otherwise.
    static constexpr char topLayoutGuideConstraintName[] = "topLayoutGuideHeight";

    explicit ViewController(QWidget *parent = nullptr);
    ~ViewController() override;

    // True once viewDidLoad has run.
    bool isViewLoaded() const;
    // Runs viewDidLoad now unless it has run.
    void loadViewIfNeeded();

    QString title() const;
    void setTitle(const QString &title);

    // Containment. A child's widget is placed by its container; the parent link is kept until
    // the child is deleted or removed.
    ViewController *parentViewController() const;
    QList<ViewController *> childViewControllers() const;
    void addChildViewController(ViewController *child);
    void removeFromParentViewController();
    // The nearest container of that kind among the parent controllers, or nullptr.
    NavigationController *navigationController() const;
    TabBarController *tabBarController() const;

    // Modal presentation. The presented controller's widget is laid over the whole of this
    // controller's window, is owned by that window, and is deleted once it has been dismissed
    // (after its viewDidDisappear). The presenter stays on screen beneath it and gets no
    // disappear calls. The completion runs after the presented controller's viewDidAppear.
    void presentViewController(ViewController *viewController, bool animated,
                               std::function<void()> completion = {});
    // Dismisses what this controller presented or, when it presented nothing, this controller
    // itself (through its presenter). The completion runs after viewDidDisappear.
    void dismissViewControllerAnimated(bool animated, std::function<void()> completion = {});
    // The controller that presented this one or one of its parents; nullptr when none did.
    ViewController *presentingViewController() const;
    // The controller that this one presented, or nullptr.
    ViewController *presentedViewController() const;

    // Asks a navigation controller to hide its bottom bar while this controller is on top.
    bool hidesBottomBarWhenPushed() const;
    void setHidesBottomBarWhenPushed(bool hides);

    // Orientation questions (masks and values of InterfaceOrientation).
    virtual unsigned supportedInterfaceOrientations() const;              // all but upside down
    virtual bool shouldAutorotate() const;                                // true
    virtual bool shouldAutorotateToInterfaceOrientation(int orientation) const; // portrait only
    virtual int preferredInterfaceOrientationForPresentation() const;     // portrait
    // Status bar questions: style 0 default, 1 light content; hidden or not.
    virtual int preferredStatusBarStyle() const;                          // 0
    virtual bool prefersStatusBarHidden() const;                          // false
    // The child whose answers stand for this controller's (containers name their top child).
    virtual ViewController *childViewControllerForStatusBar() const;      // nullptr
    // Applies the status bar answers of the key window again.
    void setNeedsStatusBarAppearanceUpdate();

    // Lifecycle hooks; overrides call the base class as on the platform.
    virtual void awakeFromNib();
    virtual void viewDidLoad();
    virtual void viewWillAppear(bool animated);
    virtual void viewDidAppear(bool animated);
    virtual void viewWillDisappear(bool animated);
    virtual void viewDidDisappear(bool animated);
    // Called before the view lays out its children after a change of size (once loaded).
    virtual void viewWillLayoutSubviews();
    // Called by the window before its size changes; the base passes it on to the children
    // and to the presented controller. coordinator may be nullptr.
    virtual void viewWillTransitionToSize(const QSizeF &size, TransitionCoordinator *coordinator);
    virtual void didReceiveMemoryWarning();

Q_SIGNALS:
    void titleChanged(const QString &title);

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

    // For containers: the animated flag that the next appear or disappear pair of a child gets.
    static void setNextTransitionAnimated(ViewController *viewController, bool animated);
    // For containers: hides the controller and deletes it once it has disappeared (at once
    // when it is not on screen).
    static void releaseAfterDisappearing(ViewController *viewController, bool animated);

private:
    void updateTopLayoutGuide();
    void finishAppearing(bool animated);
    void finishDisappearing(bool animated);
    static void takeDownPresentation(ViewController *presenter, bool animated);

    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace ZQTPlatform
