#include "platform/ui/TextField.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>

#include <optional>

namespace ZQTPlatform {

namespace {

struct Range
{
    int location;
    int length;
};

// The edit that turned `before` into `after`: the stretch between their common start and end.
// Inside a run of equal characters the stretch is placed at the run's end.
std::pair<Range, QString> difference(const QString &before, const QString &after)
{
    const int shorter = int(qMin(before.size(), after.size()));
    int prefix = 0;
    while (prefix < shorter && before.at(prefix) == after.at(prefix))
        ++prefix;
    int suffix = 0;
    while (suffix < shorter - prefix && before.at(before.size() - 1 - suffix) == after.at(after.size() - 1 - suffix))
        ++suffix;
    const Range range{prefix, int(before.size()) - prefix - suffix};
    return {range, after.mid(prefix, after.size() - prefix - suffix)};
}

bool isTyping(const QKeyEvent *event)
{
    const QString text = event->text();
    return !text.isEmpty() && text.at(0).isPrint()
        && !(event->modifiers() & (Qt::ControlModifier | Qt::MetaModifier));
}

QString clipboardText(QClipboard::Mode mode = QClipboard::Clipboard)
{
    return QGuiApplication::clipboard()->text(mode);
}

const char *styleSheetFor(TextField::BorderStyle style)
{
    switch (style) {
    case TextField::BorderStyle::RoundedRect:
        return "QLineEdit { background: white; color: black; border: 1px solid rgb(199, 199, 204);"
               " border-radius: 5px; padding: 3px 6px; }";
    case TextField::BorderStyle::None:
        break;
    }
    return "";
}

} // namespace

TextField::TextField(QWidget *parent) : QLineEdit(parent)
{
    // GUI thread. A user's edit emits textEdited, then textChanged; the clear button emits
    // textChanged, then textEdited; code emits textChanged alone.
    connect(this, &QLineEdit::textEdited, this, &TextField::userChangedText);
    connect(this, &QLineEdit::textChanged, this, &TextField::noteTextChange);
}

TextFieldDelegate *TextField::delegate() const
{
    return m_delegate;
}

void TextField::setDelegate(TextFieldDelegate *delegate)
{
    m_delegate = delegate;
}

void TextField::setInputFilter(InputFilter filter)
{
    m_inputFilter = std::move(filter);
}

QString TextField::filtered(const QString &text) const
{
    return m_inputFilter ? m_inputFilter(text) : text;
}

TextField::BorderStyle TextField::borderStyle() const
{
    return m_borderStyle;
}

void TextField::setBorderStyle(BorderStyle style)
{
    m_borderStyle = style;
    setStyleSheet(QString::fromLatin1(styleSheetFor(style)));
}

void TextField::sendEditingChanged()
{
    emit editingChanged(this);
}

bool TextField::mayReplaceSelectionWith(const QString &replacement)
{
    if (!m_delegate)
        return true;
    const Range range = hasSelectedText() ? Range{selectionStart(), int(selectedText().size())}
                                          : Range{cursorPosition(), 0};
    return m_delegate->textFieldShouldChangeCharactersInRange(this, range.location, range.length, replacement);
}

bool TextField::enter(const QString &text, const std::function<void()> &edit, Entry entry)
{
    const QString entered = filtered(text);
    if (!mayReplaceSelectionWith(entered))
        return false;
    if (entered == text) {
        runAsked(edit);
        return true;
    }
    runAsked([this, &entered, entry] {
        if (entry == Entry::Pasted)
            endUndoStep();
        insert(entered);
        if (entry == Entry::Pasted)
            endUndoStep();
    });
    return true;
}

void TextField::endUndoStep()
{
    // The line edit ends its undo step when the cursor moves: one place over and back, with the
    // selection as it was.
    const int cursor = cursorPosition();
    const int start = hasSelectedText() ? selectionStart() : cursor;
    const int length = int(selectedText().size());
    setCursorPosition(cursor > 0 ? cursor - 1 : cursor + 1);
    if (length == 0)
        setCursorPosition(cursor);
    else if (cursor == start)
        setSelection(start + length, -length);
    else
        setSelection(start, length);
}

void TextField::runAsked(const std::function<void()> &edit)
{
    m_askedBeforehand = true;
    edit();
    m_askedBeforehand = false; // also when the edit changed nothing
}

void TextField::noteTextChange()
{
    if (!std::exchange(m_editEnding, false)) {
        // Made by code, or by the clear button, which announces its edit afterwards.
        m_textBeforeUnaskedChange = m_shownText;
    }
    m_shownText = text();
}

void TextField::userChangedText()
{
    const QString after = text();
    QString before;
    if (after != m_shownText) {
        before = m_shownText;
        m_editEnding = true; // its textChanged follows
        m_textBeforeUnaskedChange.reset();
    } else if (after.isEmpty() && m_textBeforeUnaskedChange) {
        before = *std::exchange(m_textBeforeUnaskedChange, std::nullopt); // the clear button's edit
    }
    if (after == before)
        return;
    if (!std::exchange(m_askedBeforehand, false) && m_delegate) {
        const auto [range, replacement] = difference(before, after);
        if (!m_delegate->textFieldShouldChangeCharactersInRange(this, range.location, range.length, replacement)) {
            setText(before);
            setCursorPosition(range.location + range.length);
            return;
        }
    }
    m_shownText = after;
    emit editingChanged(this);
}

void TextField::keyPressEvent(QKeyEvent *event)
{
    if (isReadOnly()) {
        QLineEdit::keyPressEvent(event);
        return;
    }
    // Typing, pasting and cutting replace the selection with a text known before the edit.
    std::optional<QString> replacement;
    if (event->matches(QKeySequence::Paste))
        replacement = clipboardText();
    else if (isTyping(event))
        replacement = event->text();
    else if (event->matches(QKeySequence::Cut) && hasSelectedText())
        replacement = QString();
    if (!replacement) {
        // Deletions, undo and redo are asked about once made; moves and copies change nothing.
        QLineEdit::keyPressEvent(event);
        return;
    }
    const Entry entry = event->matches(QKeySequence::Paste) ? Entry::Pasted : Entry::Typed;
    if (!enter(*replacement, [this, event] { QLineEdit::keyPressEvent(event); }, entry))
        event->accept();
}

void TextField::inputMethodEvent(QInputMethodEvent *event)
{
    const bool commits = !event->commitString().isEmpty() || event->replacementLength() > 0;
    if (!commits || isReadOnly() || (!m_delegate && !m_inputFilter)) {
        QLineEdit::inputMethodEvent(event);
        return;
    }
    QInputMethodEvent entered(event->preeditString(), event->attributes());
    entered.setCommitString(filtered(event->commitString()), event->replacementStart(), event->replacementLength());
    bool allowed;
    if (event->replacementLength() > 0 && m_delegate) {
        allowed = m_delegate->textFieldShouldChangeCharactersInRange(
            this, cursorPosition() + event->replacementStart(), event->replacementLength(), entered.commitString());
    } else {
        allowed = mayReplaceSelectionWith(entered.commitString());
    }
    if (allowed) {
        runAsked([this, &entered] { QLineEdit::inputMethodEvent(&entered); });
    } else {
        // The composition goes on; only the refused commit is dropped.
        QInputMethodEvent composing(event->preeditString(), event->attributes());
        QLineEdit::inputMethodEvent(&composing);
    }
}

void TextField::contextMenuEvent(QContextMenuEvent *event)
{
    QMenu menu(this);
    fillContextMenu(&menu);
    menu.exec(event->globalPos());
}

void TextField::mouseReleaseEvent(QMouseEvent *event)
{
    // Where there is a selection clipboard (X11), a middle click pastes it at the cursor.
    const bool pastesSelection = event->button() == Qt::MiddleButton && !isReadOnly()
        && QGuiApplication::clipboard()->supportsSelection();
    if (!pastesSelection) {
        QLineEdit::mouseReleaseEvent(event);
        return;
    }
    deselect();
    enter(clipboardText(QClipboard::Selection), [this, event] { QLineEdit::mouseReleaseEvent(event); }, Entry::Pasted);
}

void TextField::dropEvent(QDropEvent *event)
{
    const QString text = event->mimeData()->text();
    const QString entered = filtered(text);
    if (entered == text) {
        QLineEdit::dropEvent(event);
        return;
    }
    // The line edit drops the filtered text where the text would have gone.
    QMimeData filteredData;
    filteredData.setText(entered);
    QDropEvent filteredDrop(event->position(), event->possibleActions(), &filteredData, event->buttons(),
                            event->modifiers());
    filteredDrop.setDropAction(event->dropAction());
    QLineEdit::dropEvent(&filteredDrop);
    event->setDropAction(filteredDrop.dropAction());
    event->setAccepted(filteredDrop.isAccepted());
}

void TextField::fillContextMenu(QMenu *menu)
{
    const bool editable = !isReadOnly();
    const auto addEdit = [this, menu](const QString &title, const QKeySequence &keys, bool enabled,
                                      const std::function<void()> &edit) {
        QAction *action = menu->addAction(title);
        connect(action, &QAction::triggered, this, edit);
        action->setShortcut(keys);
        action->setEnabled(enabled);
    };
    addEdit(tr("&Undo"), QKeySequence::Undo, editable && isUndoAvailable(), [this] { undo(); });
    addEdit(tr("&Redo"), QKeySequence::Redo, editable && isRedoAvailable(), [this] { redo(); });
    menu->addSeparator();
    const bool selected = hasSelectedText() && echoMode() == Normal;
    addEdit(tr("Cu&t"), QKeySequence::Cut, editable && selected, [this] {
        if (mayReplaceSelectionWith(QString()))
            runAsked([this] { cut(); });
    });
    QAction *copyAction = menu->addAction(tr("&Copy"));
    copyAction->setShortcut(QKeySequence::Copy);
    copyAction->setEnabled(selected);
    connect(copyAction, &QAction::triggered, this, &QLineEdit::copy);
    addEdit(tr("&Paste"), QKeySequence::Paste, editable && !clipboardText().isEmpty(),
            [this] { enter(clipboardText(), [this] { paste(); }, Entry::Pasted); });
    addEdit(tr("Delete"), QKeySequence(), editable && hasSelectedText(), [this] {
        if (mayReplaceSelectionWith(QString()))
            runAsked([this] { del(); });
    });
    menu->addSeparator();
    QAction *selectAllAction = menu->addAction(tr("Select All"));
    selectAllAction->setShortcut(QKeySequence::SelectAll);
    selectAllAction->setEnabled(!text().isEmpty() && selectedText() != text());
    connect(selectAllAction, &QAction::triggered, this, &QLineEdit::selectAll);
}

} // namespace ZQTPlatform
