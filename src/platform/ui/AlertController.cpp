#include "platform/ui/AlertController.h"

#include "platform/ui/Font.h"
#include "platform/ui/TextField.h"
#include "platform/ui/View.h"

#include <QFontMetrics>
#include <QFrame>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace ZQTPlatform {

namespace {

// The platform's alert metrics, in points.
constexpr int cardWidth = 270;
constexpr int cardCornerRadius = 14;
constexpr int textMargin = 16;
constexpr int buttonHeight = 44;
constexpr qreal titleFontSize = 17.0;
constexpr qreal messageFontSize = 13.0;
constexpr qreal buttonFontSize = 17.0;
const QColor dimmingColor(0, 0, 0, 102);
const QColor hairlineColor(60, 60, 67, 74);

QString buttonStyleSheet(AlertAction::Style style)
{
    const char *color = style == AlertAction::StyleDestructive ? "rgb(255, 59, 48)" : "rgb(0, 122, 255)";
    return QStringLiteral("QPushButton { border: none; background: transparent; color: %1; }"
                          " QPushButton:pressed { background: rgba(0, 0, 0, 20); }"
                          " QPushButton:disabled { color: rgba(60, 60, 67, 77); }")
        .arg(QLatin1String(color));
}

QWidget *hairline(QWidget *parent, Qt::Orientation orientation)
{
    auto *line = new QWidget(parent);
    setBackgroundColor(line, hairlineColor);
    if (orientation == Qt::Horizontal)
        line->setFixedHeight(1);
    else
        line->setFixedWidth(1);
    return line;
}

QLabel *centredLabel(const QString &text, qreal size, bool bold, QWidget *parent)
{
    // Titles and messages come from the host's configuration: shown as written, never as markup.
    auto *label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setText(text);
    QFont font = Font::systemFontOfSize(size);
    font.setBold(bold);
    label->setFont(font);
    label->setAlignment(Qt::AlignCenter);
    label->setWordWrap(true);
    // The card's width is fixed, so the wrapped text's height is known now.
    const QRect wrapped = QFontMetrics(font).boundingRect(QRect(0, 0, cardWidth - 2 * textMargin, 0),
                                                          Qt::AlignCenter | Qt::TextWordWrap, text);
    label->setMinimumHeight(wrapped.height());
    setTextColor(label, Qt::black);
    return label;
}

} // namespace

AlertAction::AlertAction(const QString &title, Style style, Handler handler, QObject *parent)
    : QObject(parent), m_title(title), m_style(style), m_handler(std::move(handler))
{
}

QString AlertAction::title() const
{
    return m_title;
}

AlertAction::Style AlertAction::style() const
{
    return m_style;
}

bool AlertAction::isEnabled() const
{
    return m_enabled;
}

void AlertAction::setEnabled(bool enabled)
{
    if (m_enabled == enabled)
        return;
    m_enabled = enabled;
    emit enabledChanged(enabled);
}

AlertController *AlertAction::alertController() const
{
    return qobject_cast<AlertController *>(parent());
}

AlertController::AlertController(const QString &title, const QString &message, Style style)
    : m_title(title), m_message(message), m_style(style)
{
    setBackgroundColor(this, dimmingColor);

    m_card = new QFrame(this);
    m_card->setObjectName(QStringLiteral("alertCard"));
    m_card->setFixedWidth(cardWidth);
    m_card->setStyleSheet(QStringLiteral("#alertCard { background: rgb(242, 242, 242); border-radius: %1px; }")
                              .arg(cardCornerRadius));

    auto *texts = new QVBoxLayout;
    texts->setContentsMargins(textMargin, 20, textMargin, 16);
    texts->setSpacing(4);
    texts->addWidget(centredLabel(title, titleFontSize, true, m_card));
    if (!message.isEmpty())
        texts->addWidget(centredLabel(message, messageFontSize, false, m_card));
    m_fieldsLayout = new QVBoxLayout;
    m_fieldsLayout->setSpacing(6);
    texts->addLayout(m_fieldsLayout);

    m_buttonsSeparator = hairline(m_card, Qt::Horizontal);
    m_buttonsLayout = new QHBoxLayout;
    m_buttonsLayout->setContentsMargins(0, 0, 0, 0);
    m_buttonsLayout->setSpacing(0);

    auto *cardLayout = new QVBoxLayout(m_card);
    cardLayout->setContentsMargins(0, 0, 0, 0);
    cardLayout->setSpacing(0);
    cardLayout->addLayout(texts);
    cardLayout->addWidget(m_buttonsSeparator);
    cardLayout->addLayout(m_buttonsLayout);
    m_buttonsSeparator->hide();

    auto *centre = new QVBoxLayout(this);
    centre->addStretch();
    centre->addWidget(m_card, 0, Qt::AlignHCenter);
    centre->addStretch();
}

AlertController::~AlertController() = default;

QString AlertController::alertTitle() const
{
    return m_title;
}

QString AlertController::message() const
{
    return m_message;
}

AlertController::Style AlertController::preferredStyle() const
{
    return m_style;
}

void AlertController::addAction(AlertAction *action)
{
    if (!action || m_actions.contains(action))
        return;
    action->setParent(this);
    m_actions.append(action);
    auto *button = new QPushButton(action->title(), m_card);
    QFont font = Font::systemFontOfSize(buttonFontSize);
    font.setBold(action->style() == AlertAction::StyleCancel);
    button->setFont(font);
    button->setFixedHeight(buttonHeight);
    button->setFocusPolicy(Qt::NoFocus);
    button->setStyleSheet(buttonStyleSheet(action->style()));
    button->setEnabled(action->isEnabled());
    connect(action, &AlertAction::enabledChanged, button, &QWidget::setEnabled);
    connect(button, &QPushButton::clicked, this, [this, action] { actionTriggered(action); });
    m_buttons.insert(action, button);
    rebuildButtons();
}

QList<AlertAction *> AlertController::actions() const
{
    return m_actions;
}

void AlertController::addTextFieldWithConfigurationHandler(const std::function<void(TextField *field)> &configure)
{
    auto *field = new TextField(m_card);
    field->setBorderStyle(TextField::BorderStyle::RoundedRect);
    field->setFont(Font::systemFontOfSize(messageFontSize));
    field->setMinimumHeight(28);
    if (m_textFields.isEmpty())
        m_fieldsLayout->setContentsMargins(0, 12, 0, 0);
    m_fieldsLayout->addWidget(field);
    m_textFields.append(field);
    if (configure)
        configure(field);
}

QList<TextField *> AlertController::textFields() const
{
    return m_textFields;
}

QWidget *AlertController::contentView() const
{
    return m_card;
}

QWidget *AlertController::buttonForAction(const AlertAction *action) const
{
    return m_buttons.value(action);
}

void AlertController::viewDidAppear(bool animated)
{
    ViewController::viewDidAppear(animated);
    if (!m_textFields.isEmpty())
        m_textFields.first()->setFocus(Qt::OtherFocusReason);
}

void AlertController::keyPressEvent(QKeyEvent *event)
{
    const AlertAction *action = actionForKey(event->key());
    QPushButton *button = action ? m_buttons.value(action) : nullptr;
    if (!button) {
        ViewController::keyPressEvent(event);
        return;
    }
    event->accept();
    button->click(); // nothing for a disabled action
}

AlertAction *AlertController::actionForKey(int key) const
{
    AlertAction::Style wanted;
    if (key == Qt::Key_Return || key == Qt::Key_Enter)
        wanted = AlertAction::StyleDefault;
    else if (key == Qt::Key_Escape)
        wanted = AlertAction::StyleCancel;
    else
        return nullptr;
    const auto found = std::find_if(m_actions.cbegin(), m_actions.cend(),
                                    [wanted](const AlertAction *action) { return action->style() == wanted; });
    return found == m_actions.cend() ? nullptr : *found;
}

void AlertController::actionTriggered(AlertAction *action)
{
    if (!action->isEnabled())
        return;
    const QPointer<AlertController> self(this);
    if (action->m_handler)
        action->m_handler(action);
    // Unless the handler already took the alert down.
    if (self && self->presentingViewController() && self->presentingViewController()->presentedViewController() == self)
        dismissViewControllerAnimated(true);
}

void AlertController::rebuildButtons()
{
    while (QLayoutItem *item = m_buttonsLayout->takeAt(0)) {
        if (QWidget *widget = item->widget(); widget && !qobject_cast<QPushButton *>(widget))
            delete widget; // a hairline of the previous row
        delete item;
    }
    QList<AlertAction *> ordered = m_actions;
    std::stable_partition(ordered.begin(), ordered.end(),
                          [](const AlertAction *a) { return a->style() == AlertAction::StyleCancel; });
    for (const AlertAction *action : std::as_const(ordered)) {
        if (m_buttonsLayout->count() > 0)
            m_buttonsLayout->addWidget(hairline(m_card, Qt::Vertical));
        m_buttonsLayout->addWidget(m_buttons.value(action), 1);
    }
    m_buttonsSeparator->setVisible(!m_actions.isEmpty());
}

} // namespace ZQTPlatform
