// The platform's text field: a line edit whose delegate may refuse each edit before it happens
// (given as the range it replaces and the replacement text), and which announces every change
// the user makes as its editing-changed event. Typing, deleting, pasting (keys and context menu)
// and input-method commits all go through the delegate; dropping text on the field is off.
#pragma once

#include "ZQTGlobal.h"

#include <QLineEdit>
#include <functional>

class QMenu;

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
    enum class BorderStyle { None, RoundedRect };

    explicit TextField(QWidget *parent = nullptr);

    TextFieldDelegate *delegate() const;
    void setDelegate(TextFieldDelegate *delegate); // not owned; nullptr allows every edit

    // None (the default) draws the bare text; RoundedRect a light grey rounded frame on white.
    BorderStyle borderStyle() const;
    void setBorderStyle(BorderStyle style);

    // Sends the editing-changed event as a user edit would.
    void sendEditingChanged();

signals:
    // After each edit by the user that changed the text, and on sendEditingChanged (GUI thread).
    void editingChanged(ZQTPlatform::TextField *textField);

protected:
    // GUI thread, as Qt delivers the events.
    void keyPressEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    // Asks the delegate about replacing the selection (or nothing at the cursor) with the text.
    bool mayReplaceSelectionWith(const QString &replacement);
    // For edits whose range is only known once made (word and line deletions, undo, redo): runs
    // the edit, asks the delegate about the change it made, and takes it back when refused.
    void runCheckedAfterwards(const std::function<void()> &edit);
    // Fills the field's context menu: its edit actions go through the delegate like keys do.
    void fillContextMenu(QMenu *menu);
    // Announces the edit when the text is no longer `before`.
    void finishUserEdit(const QString &before);

    TextFieldDelegate *m_delegate = nullptr;
    BorderStyle m_borderStyle = BorderStyle::None;
};

} // namespace ZQTPlatform
