#include "platform/ui/ButtonStyle.h"

#include <QEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QStringList>
#include <QVariant>

namespace ZQTPlatform {

namespace {

constexpr char titleNormal[] = "_zqt_titleColorNormal";
constexpr char titleHighlighted[] = "_zqt_titleColorHighlighted";
constexpr char backgroundNormal[] = "_zqt_backgroundImageNormal";
constexpr char backgroundHighlighted[] = "_zqt_backgroundImageHighlighted";
constexpr char cornerRadiusKey[] = "_zqt_cornerRadius";
constexpr char borderWidthKey[] = "_zqt_borderWidth";
constexpr char borderColorKey[] = "_zqt_borderColor";
constexpr char clipsKey[] = "_zqt_clipsToBounds";

QColor colorProperty(const QPushButton *button, const char *key)
{
    return button->property(key).value<QColor>();
}

Image imageProperty(const QPushButton *button, const char *key)
{
    return button->property(key).value<Image>();
}

QString cssColor(const QColor &color)
{
    return QStringLiteral("rgba(%1, %2, %3, %4)")
        .arg(color.red())
        .arg(color.green())
        .arg(color.blue())
        .arg(color.alphaF());
}

QString titleDeclaration(const QColor &title)
{
    return title.isValid() ? QStringLiteral("color: %1;").arg(cssColor(title)) : QString();
}

// Draws the background image of the button's current state before the button draws its title
// and border over it. Runs on the GUI thread, inside the button's paint event.
class BackgroundPainter : public QObject
{
public:
    explicit BackgroundPainter(QPushButton *button) : QObject(button) {}

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        // Only paint events are cast: others also arrive while the button is being destroyed.
        if (event->type() == QEvent::Paint)
            paint(static_cast<QPushButton *>(watched));
        return false;
    }

private:
    static void paint(QPushButton *button)
    {
        Image image = button->isDown() ? imageProperty(button, backgroundHighlighted) : Image();
        if (image.isNull())
            image = imageProperty(button, backgroundNormal);
        if (image.isNull())
            return;
        QPainter painter(button);
        const QRectF bounds = button->rect();
        if (ButtonStyle::clipsToBounds(button) && ButtonStyle::cornerRadius(button) > 0.0) {
            painter.setRenderHint(QPainter::Antialiasing);
            QPainterPath corners;
            const qreal radius = ButtonStyle::cornerRadius(button);
            corners.addRoundedRect(bounds, radius, radius);
            painter.setClipPath(corners);
        }
        painter.drawImage(bounds, image.bitmap());
    }
};

// Renders the stored title colours and border as the button's style sheet, and makes sure the
// background images are drawn.
void restyle(QPushButton *button)
{
    if (!button->findChild<BackgroundPainter *>(QString(), Qt::FindDirectChildrenOnly))
        button->installEventFilter(new BackgroundPainter(button));
    const QColor border = colorProperty(button, borderColorKey);
    const qreal borderWidth = ButtonStyle::borderWidth(button);
    const qreal radius = ButtonStyle::clipsToBounds(button) ? ButtonStyle::cornerRadius(button) : 0.0;
    // The background is declared transparent so that the image drawn before shows through, and a
    // border is always declared: without one Qt may keep the native frame.
    const QColor drawnBorder = border.isValid() && borderWidth > 0.0 ? border : QColor(Qt::transparent);
    const QString base = QStringList{titleDeclaration(colorProperty(button, titleNormal)),
                                     QStringLiteral("background: transparent;"),
                                     QStringLiteral("border: %1px solid %2;").arg(qMax(borderWidth, 0.0)).arg(cssColor(drawnBorder)),
                                     QStringLiteral("border-radius: %1px;").arg(radius)}
                             .join(QLatin1Char(' '));
    const QString pressed = titleDeclaration(colorProperty(button, titleHighlighted));
    button->setStyleSheet(QStringLiteral("QPushButton { %1 } QPushButton:pressed { %2 }").arg(base.trimmed(), pressed));
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

void ButtonStyle::setBackgroundImage(QPushButton *button, const Image &image, State state)
{
    store(button, state == State::Normal ? backgroundNormal : backgroundHighlighted, QVariant::fromValue(image));
    button->update();
}

Image ButtonStyle::backgroundImage(const QPushButton *button, State state)
{
    return imageProperty(button, state == State::Normal ? backgroundNormal : backgroundHighlighted);
}

void ButtonStyle::setCornerRadius(QPushButton *button, qreal radius)
{
    store(button, cornerRadiusKey, radius);
}

qreal ButtonStyle::cornerRadius(const QPushButton *button)
{
    return button->property(cornerRadiusKey).toReal();
}

void ButtonStyle::setBorderWidth(QPushButton *button, qreal width)
{
    store(button, borderWidthKey, width);
}

qreal ButtonStyle::borderWidth(const QPushButton *button)
{
    return button->property(borderWidthKey).toReal();
}

void ButtonStyle::setBorderColor(QPushButton *button, const QColor &color)
{
    store(button, borderColorKey, color);
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
