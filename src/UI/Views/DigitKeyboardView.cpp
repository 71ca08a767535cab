#include "UI/Views/DigitKeyboardView.h"

#include "lib/Categories/View+ZQTExtend.h"
#include "platform/foundation/Bundle.h"
#include "platform/ui/Font.h"
#include "platform/foundation/Log.h"
#include "platform/ui/Storyboard.h"
#include "platform/ui/TextField.h"
#include "platform/ui/View.h"
#include "platform/ui/Window.h"

#include <QGraphicsDropShadowEffect>
#include <QMouseEvent>
#include <QPushButton>

using namespace ZQTPlatform;

namespace {

constexpr char interfaceFileName[] = "DigitKeyboardView";
constexpr char containerName[] = "keybuttonContainView";
// The digit a key types, kept on the key as the platform's view tag.
constexpr char tagProperty[] = "tag";
constexpr int digitCount = 10;
// Characters a field may reach through the keys: 17, a whole VIN.
constexpr int lengthLimit = 18;
constexpr qreal keyGap = 2.0;
constexpr qreal keyFontSize = 22.0;

const bool registeredWithFormLoader = [] {
    Storyboard::registerWidgetClass(QString::fromLatin1(interfaceFileName),
                                    [](QWidget *parent) { return new DigitKeyboardView(parent); });
    return true;
}();

qreal keyWidth()
{
    const Window *window = Window::keyWindow();
    return ((window ? window->width() : 0) - 80) / qreal(digitCount) - keyGap;
}

// A white key with rounded corners and a grey shadow one point down and right.
QPushButton *makeKey(int digit, QWidget *parent)
{
    auto *key = new QPushButton(QString::number(digit), parent);
    key->setProperty(tagProperty, digit);
    key->setFont(Font::systemFontOfSize(keyFontSize));
    key->setFocusPolicy(Qt::NoFocus);
    key->setStyleSheet(QStringLiteral("QPushButton { background: white; color: black; border: none;"
                                      " border-radius: 5px; }"
                                      " QPushButton:pressed { background: rgb(188, 192, 199); }"));
    auto *shadow = new QGraphicsDropShadowEffect(key);
    shadow->setColor(Qt::gray);
    shadow->setOffset(1.0, 1.0);
    shadow->setBlurRadius(0.0);
    key->setGraphicsEffect(shadow);
    return key;
}

} // namespace

DigitKeyboardView::DigitKeyboardView(QWidget *parent) : QWidget(parent)
{
    // The interface file gives the row its background through a style sheet.
    setAttribute(Qt::WA_StyledBackground);
}

DigitKeyboardView *DigitKeyboardView::create()
{
    Q_UNUSED(registeredWithFormLoader);
    QWidget *root = Storyboard::loadNibNamed(QString::fromLatin1(interfaceFileName), Bundle::frameworkBundle());
    auto *view = qobject_cast<DigitKeyboardView *>(root);
    if (!view) {
        log(QStringLiteral("Could not load the interface file %1").arg(QString::fromLatin1(interfaceFileName)));
        delete root;
        return nullptr;
    }
    view->m_keybuttonContainView = view->findChild<QWidget *>(QString::fromLatin1(containerName));
    return view;
}

DigitKeyboardView *DigitKeyboardView::createWithField(TextField *field)
{
    DigitKeyboardView *view = create();
    if (view)
        view->setInputTextField(field);
    return view;
}

QWidget *DigitKeyboardView::keybuttonContainView() const
{
    return m_keybuttonContainView;
}

TextField *DigitKeyboardView::inputTextField() const
{
    return m_inputTextField;
}

void DigitKeyboardView::setInputTextField(TextField *field)
{
    m_inputTextField = field;
}

LayoutConstraint *DigitKeyboardView::attachToControllerBottom(QWidget *view)
{
    LayoutConstraint *bottom = ZQTExtend::addConstraintAttachBottomToInside(this, view);
    ZQTExtend::addConstraintAttachRightToInside(this, view);
    layoutIfNeeded(this);
    setDigitButtons();
    return bottom;
}

void DigitKeyboardView::setDigitButtons()
{
    for (QPushButton *button : std::as_const(m_buttons))
        delete button;
    m_buttons.clear();
    m_keyWidths.clear();
    if (!m_keybuttonContainView)
        return;
    const qreal width = keyWidth();
    for (int digit = 0; digit < digitCount; ++digit) {
        QPushButton *key = makeKey(digit, m_keybuttonContainView);
        addSubview(m_keybuttonContainView, key);
        ZQTExtend::addConstraintAttachSupperTop(key);
        ZQTExtend::addConstraintAttachSupperBottom(key);
        m_keyWidths.append(ZQTExtend::addConstraintSetWidth(key, width));
        if (!m_buttons.isEmpty()) {
            ZQTExtend::addConstraintAttachLeftTo(key, m_buttons.last())->setConstant(keyGap);
        } else {
            ZQTExtend::addConstraintAttachSupperLeft(key);
            layoutIfNeeded(this);
        }
        connect(key, &QPushButton::clicked, this, [this, key] { onClickDigitButton(key); });
        m_buttons.append(key);
    }
    layoutIfNeeded(this);
}

void DigitKeyboardView::onClickDigitButton(QPushButton *button)
{
    if (!m_inputTextField || !button)
        return;
    const QString text = m_inputTextField->text() + QString::number(button->property(tagProperty).toInt());
    if (text.size() >= lengthLimit)
        return;
    m_inputTextField->setText(text);
    m_inputTextField->sendEditingChanged();
}

QList<QPushButton *> DigitKeyboardView::buttons() const
{
    return m_buttons;
}

QSize DigitKeyboardView::sizeHint() const
{
    return QSize(parentWidget() ? parentWidget()->width() : width(), minimumHeight());
}

void DigitKeyboardView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    const qreal width = keyWidth();
    for (LayoutConstraint *keyWidth : std::as_const(m_keyWidths)) {
        if (keyWidth && keyWidth->constant() != width)
            keyWidth->setConstant(width);
    }
}

void DigitKeyboardView::mousePressEvent(QMouseEvent *event)
{
    log(QString());
    event->accept();
}
