// The row of ten digit keys laid along the bottom of the manual VIN prompt, beside the system
// keyboard. Its look comes from the interface file "DigitKeyboardView"; the keys type into the
// prompt's field and stop at 17 characters. GUI thread only.
#pragma once

#include "ZQTGlobal.h"

#include <QList>
#include <QPointer>
#include <QWidget>

class QPushButton;

namespace ZQTPlatform {
class LayoutConstraint;
class TextField;
}

class ZQT_EXPORT DigitKeyboardView : public QWidget
{
    Q_OBJECT

public:
    explicit DigitKeyboardView(QWidget *parent = nullptr);

    // A new view from the interface file "DigitKeyboardView" of the component's bundle; the
    // caller owns it. nullptr (after a log line) when the file cannot be loaded.
    static DigitKeyboardView *create();
    // create, typing into the field.
    static DigitKeyboardView *createWithField(ZQTPlatform::TextField *field);

    // The container the keys are laid out in (from the interface file).
    QWidget *keybuttonContainView() const;
    ZQTPlatform::TextField *inputTextField() const;
    void setInputTextField(ZQTPlatform::TextField *field); // not owned

    // Pins this view (already a subview of `view`) to the inside bottom and right of the view,
    // lays it out and builds the keys. Returns the bottom constraint.
    ZQTPlatform::LayoutConstraint *attachToControllerBottom(QWidget *view);
    // (Re)builds the ten keys, 0 to 9, in one row: each (window width - 80) / 10 - 2 points wide,
    // 2 points apart, from the container's left edge. The keys keep that width as the window's
    // width changes.
    void setDigitButtons();
    // Appends the key's digit to the field while the result stays under 18 characters, then
    // sends the field's editing-changed event. Nothing without a field.
    void onClickDigitButton(QPushButton *button);
    // The keys, in order 0 to 9.
    QList<QPushButton *> buttons() const;

    // As wide as the superview (the row spans it), as high as the interface file makes it.
    QSize sizeHint() const override;

protected:
    // Touches on the row go no further (GUI thread).
    void mousePressEvent(QMouseEvent *event) override;
    // GUI thread: the row spans the window, so its size changes with the window's.
    void resizeEvent(QResizeEvent *event) override;

private:
    QPointer<QWidget> m_keybuttonContainView;
    QPointer<ZQTPlatform::TextField> m_inputTextField;
    QList<QPushButton *> m_buttons;
    QList<QPointer<ZQTPlatform::LayoutConstraint>> m_keyWidths;
};
