// A tab bar controller reduced to what the component meets: a list of view controllers of
// which the selected one is on screen.
#pragma once

#include "ZQTGlobal.h"
#include "platform/ui/ViewController.h"

class QGridLayout;

namespace ZQTPlatform {

class ZQT_EXPORT TabBarController : public ViewController
{
    Q_OBJECT

public:
    explicit TabBarController(QWidget *parent = nullptr);

    QList<ViewController *> viewControllers() const;
    // Takes ownership of the controllers and selects the first; the previous ones are deleted.
    void setViewControllers(const QList<ViewController *> &viewControllers);
    // -1 when there is none.
    int selectedIndex() const;
    void setSelectedIndex(int index);
    ViewController *selectedViewController() const;

    ViewController *childViewControllerForStatusBar() const override;

private:
    QGridLayout *m_layout;
    QList<ViewController *> m_viewControllers;
    int m_selectedIndex = -1;
};

} // namespace ZQTPlatform
