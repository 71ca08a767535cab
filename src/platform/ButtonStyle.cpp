#include "platform/ButtonStyle.h"

#include <QPushButton>
#include <QStringList>
#include <QVariant>

namespace ZQTPlatform {

namespace {

constexpr char titleNormal[] = "_zqt_titleColorNormal";
constexpr char titleHighlighted[] = "_zqt_titleColorHighlighted";
constexpr char backgroundNormal[] = "_zqt_backgroundColorNormal";
constexpr char backgroundHighlighted[] = "_zqt_backgroundColorHighlighted";
constexpr char cornerRadiusKey[] = "_zqt_cornerRadius";
constexpr char borderWidthKey[] = "_zqt_borderWidth";
constexpr char borderColorKey[] = "_zqt_borderColor";
constexpr char clipsKey[] = "_zqt_clipsToBounds";

QColor colorProperty(const QPushButton *button, const char *key)
{
    return button->property(key).value<QColor>();
}

QString cssColor(const QColor &color)
{
    return QStringLiteral("rgba(%1, %2, %3, %4)")
        .arg(color.red())
        .arg(color.green())
        .arg(color.blue())
        .arg(color.alphaF());
}

QString declarations(const QColor &title, const QColor &background)
{
    QStringList lines;
    if (title.isValid())
        lines << QStringLiteral("color: %1;").arg(cssColor(title));
    if (background.isValid())
        lines << QStringLiteral("background-color: %1;").arg(cssColor(background));
    return lines.join(QLatin1Char(' '));
}

// Renders the stored looks as the button's style sheet.
void restyle(QPushButton *button)
{
    const QColor border = colorProperty(button, borderColorKey);
    const qreal borderWidth = ButtonStyle::borderWidth(button);
    const qreal radius = ButtonStyle::clipsToBounds(button) ? ButtonStyle::cornerRadius(button) : 0.0;
    QString base = declarations(colorProperty(button, titleNormal), colorProperty(button, backgroundNormal));
    // A border is always declared: without one Qt may keep the native frame and not draw the
    // background colour.
    const QColor drawnBorder = border.isValid() && borderWidth > 0.0 ? border : QColor(Qt::transparent);
    base += QStringLiteral(" border: %1px solid %2;").arg(qMax(borderWidth, 0.0)).arg(cssColor(drawnBorder));
    base += QStringLiteral(" border-radius: %1px;").arg(radius);
    const QString pressed = declarations(colorProperty(button, titleHighlighted),
                                         colorProperty(button, backgroundHighlighted));
    button->setStyleSheet(QStringLiteral("QPushButton { %1 } QPushButton:pressed { %2 }").arg(base, pressed));
}

void store(QPushButton *button, const char *key, const QVariant &value)
{
    button->setProperty(key, value);
    restyle(button);
}

} // namespace

void ButtonStyle::setTitleColor(QPushButton *button, const QColor &color, State state)
{
    store(button, state == State::Normal ? titleNormal : titleHighlighted, color);
}

QColor ButtonStyle::titleColor(const QPushButton *button, State state)
{
    return colorProperty(button, state == State::Normal ? titleNormal : titleHighlighted);
}

void ButtonStyle::setBackgroundColor(QPushButton *button, const QColor &color, State state)
{
    store(button, state == State::Normal ? backgroundNormal : backgroundHighlighted, color);
}

QColor ButtonStyle::backgroundColor(const QPushButton *button, State state)
{
    return colorProperty(button, state == State::Normal ? backgroundNormal : backgroundHighlighted);
}

void ButtonStyle::setCornerRadius(QPushButton *button, qreal radius)
{
    store(button, cornerRadiusKey, radius);
}

qreal ButtonStyle::cornerRadius(const QPushButton *button)
{
    return button->property(cornerRadiusKey).toReal();
}

void ButtonStyle::setBorder(QPushButton *button, qreal width, const QColor &color)
{
    button->setProperty(borderWidthKey, width);
    store(button, borderColorKey, color);
}

qreal ButtonStyle::borderWidth(const QPushButton *button)
{
    return button->property(borderWidthKey).toReal();
}

QColor ButtonStyle::borderColor(const QPushButton *button)
{
    return colorProperty(button, borderColorKey);
}

void ButtonStyle::setClipsToBounds(QPushButton *button, bool clips)
{
    store(button, clipsKey, clips);
}

bool ButtonStyle::clipsToBounds(const QPushButton *button)
{
    return button->property(clipsKey).toBool();
}

} // namespace ZQTPlatform
