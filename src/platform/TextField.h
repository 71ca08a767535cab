// The platform's text field: a line edit whose delegate may refuse each edit before it happens
// (given as the range it replaces and the replacement text), and which announces every change
// the user makes as its editing-changed event. Typing, deleting, pasting and input-method text
// all go through the delegate.
#pragma once

#include "ZQTGlobal.h"

#include <QLineEdit>

namespace ZQTPlatform {

class TextField;

// Asked on the GUI thread before an edit: the edit replaces `length` characters at `location`
// with `replacement` (empty for a deletion). false refuses it.
class ZQT_EXPORT TextFieldDelegate
{
public:
    virtual ~TextFieldDelegate() = default;
    virtual bool textFieldShouldChangeCharactersInRange(TextField *textField, int location, int length,
                                                        const QString &replacement) = 0;
};

class ZQT_EXPORT TextField : public QLineEdit
{
    Q_OBJECT

public:
    explicit TextField(QWidget *parent = nullptr);

    TextFieldDelegate *delegate() const;
    void setDelegate(TextFieldDelegate *delegate); // not owned; nullptr allows every edit

    // Sends the editing-changed event as a user edit would.
    void sendEditingChanged();

signals:
    // After each edit by the user, and on sendEditingChanged (GUI thread).
    void editingChanged(ZQTPlatform::TextField *textField);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    // Asks the delegate about replacing the selection (or nothing at the cursor) with the text.
    bool mayReplaceSelectionWith(const QString &replacement);

    TextFieldDelegate *m_delegate = nullptr;
};

} // namespace ZQTPlatform
