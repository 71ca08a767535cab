// The platform's alert: a modal card with a bold title, a message, text fields and one row of
// action buttons (the cancel action first), presented over the whole window, which it dims, by
// a view controller. Pressing an enabled action's button runs its handler while the alert is
// still presented and then dismisses the alert (unless the handler already did). A disabled
// action's button is greyed and cannot be pressed. On a keyboard, Return presses the first
// default-style action's button and Escape the cancel action's, as a click would.
#pragma once

#include "ZQTGlobal.h"
#include "platform/ui/ViewController.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QString>
#include <functional>

class QLabel;
class QPushButton;
class QVBoxLayout;
class QHBoxLayout;

namespace ZQTPlatform {

class AlertController;
class TextField;

class ZQT_EXPORT AlertAction : public QObject
{
    Q_OBJECT

public:
    enum Style { StyleDefault = 0, StyleCancel = 1, StyleDestructive = 2 };
    // Runs on the GUI thread with the action, while its alert is still presented.
    using Handler = std::function<void(AlertAction *action)>;

    AlertAction(const QString &title, Style style, Handler handler = {}, QObject *parent = nullptr);

    QString title() const;
    Style style() const;
    // Enabled by default.
    bool isEnabled() const;
    void setEnabled(bool enabled);
    // The alert that holds the action, or nullptr before it is added.
    AlertController *alertController() const;

signals:
    void enabledChanged(bool enabled);

private:
    friend class AlertController;
    QString m_title;
    Style m_style;
    Handler m_handler;
    bool m_enabled = true;
};

class ZQT_EXPORT AlertController : public ViewController
{
    Q_OBJECT

public:
    enum Style { StyleActionSheet = 0, StyleAlert = 1 };

    // The card is built at once, so fields and actions can be added before presenting.
    AlertController(const QString &title, const QString &message, Style style = StyleAlert);
    ~AlertController() override;

    QString alertTitle() const;
    QString message() const;
    Style preferredStyle() const;

    // The alert owns its actions. The buttons are drawn in one row, the cancel action first,
    // the others in the order they were added.
    void addAction(AlertAction *action);
    QList<AlertAction *> actions() const;
    // Adds a text field (rounded frame) below the message; the handler configures it at once.
    void addTextFieldWithConfigurationHandler(const std::function<void(TextField *field)> &configure = {});
    QList<TextField *> textFields() const;
    // The card that carries the title, message, fields and buttons (a child of the alert's view).
    QWidget *contentView() const;
    // The push button that stands for the action (for tests and hosts), or nullptr.
    QWidget *buttonForAction(const AlertAction *action) const;

    // Gives the first text field the keyboard focus.
    void viewDidAppear(bool animated) override;

protected:
    // GUI thread: the keys that the focused field leaves alone (Return, Enter, Escape) reach here.
    void keyPressEvent(QKeyEvent *event) override;

private:
    // The action a key presses: Return the first default-style one, Escape the cancel one.
    AlertAction *actionForKey(int key) const;
    // GUI thread: the button of an enabled action was clicked.
    void actionTriggered(AlertAction *action);
    // Lays the buttons out again in their row, cancel first, with hairlines between them.
    void rebuildButtons();

    QString m_title;
    QString m_message;
    Style m_style;
    QList<AlertAction *> m_actions;
    QList<TextField *> m_textFields;
    QHash<const AlertAction *, QPushButton *> m_buttons;
    QWidget *m_card = nullptr;
    QVBoxLayout *m_fieldsLayout = nullptr;
    QWidget *m_buttonsSeparator = nullptr;
    QHBoxLayout *m_buttonsLayout = nullptr;
};

} // namespace ZQTPlatform
