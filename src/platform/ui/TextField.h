// The platform's text field: a line edit whose delegate may refuse each edit (given as the range
// it replaces and the replacement text), which may filter the text the user enters, and which
// announces every change the user makes as its editing-changed event. Every way the user changes
// the text goes through the delegate: edits whose range and text are known beforehand (typing,
// pasting and cutting by key or context menu, middle-click pasting of the selection, input-method
// commits) are asked about before they happen; the others (deletions, undo and redo, the clear
// button, dropping text, dragging text out) are asked about once made and taken back when
// refused. Changes made by code (setText) are neither asked about nor announced.
#pragma once

#include "ZQTGlobal.h"

#include <QLineEdit>
#include <functional>
#include <optional>

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

    // Text the user enters (typed, pasted, committed by an input method or dropped) is replaced by
    // what the filter makes of it before the delegate is asked about it and before it goes in, so
    // that the undo history holds the filtered edit. No filter (the default) takes text as it is.
    using InputFilter = std::function<QString(const QString &text)>;
    void setInputFilter(InputFilter filter);

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
    void mouseReleaseEvent(QMouseEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    QString filtered(const QString &text) const;
    // Asks the delegate about replacing the selection (or nothing at the cursor) with the text.
    bool mayReplaceSelectionWith(const QString &replacement);
    // Typed text joins the undo step of the typing before it; a paste is an undo step of its own.
    enum class Entry { Typed, Pasted };
    // The user enters the text in place of the selection: filtered, asked about, then put in by
    // `edit` (the line edit's own edit of the text) when the filter keeps the text as it is, else
    // inserted filtered. false when the delegate refused it.
    bool enter(const QString &text, const std::function<void()> &edit, Entry entry);
    // Ends the line edit's current undo step, as its own pastes do, keeping the cursor and selection.
    void endUndoStep();
    // Runs an edit that the delegate has allowed already.
    void runAsked(const std::function<void()> &edit);
    // GUI thread: the text changed, by the user or by code.
    void noteTextChange();
    // GUI thread: the user's edit has changed the text. Asks the delegate about it unless it was
    // asked beforehand, takes it back when refused, else announces it.
    void userChangedText();
    // Fills the field's context menu: its edit actions go through the delegate like keys do.
    void fillContextMenu(QMenu *menu);

    TextFieldDelegate *m_delegate = nullptr;
    InputFilter m_inputFilter;
    BorderStyle m_borderStyle = BorderStyle::None;
    // The text as it stood after the last change, by the user or by code.
    QString m_shownText;
    // The text before the last change that no textEdited came before (by code, or the clear
    // button's); nothing once a user's edit has followed.
    std::optional<QString> m_textBeforeUnaskedChange;
    // A user's edit was handled and its textChanged is still to come.
    bool m_editEnding = false;
    bool m_askedBeforehand = false;
};

} // namespace ZQTPlatform
