#include "platform/ui/ViewAnimation.h"

#include <QGraphicsOpacityEffect>
#include <QPropertyAnimation>
#include <QWidget>

namespace ZQTPlatform {

namespace {

constexpr char alphaAnimationName[] = "alphaAnimation";

// The opacity animation of one view, a child of the view's effect; it carries its completion.
class AlphaAnimation : public QPropertyAnimation
{
public:
    AlphaAnimation(QGraphicsOpacityEffect *effect, AlphaCompletion completion)
        : QPropertyAnimation(effect, "opacity", effect), m_completion(std::move(completion))
    {
        setObjectName(QLatin1String(alphaAnimationName));
        // GUI thread: the animation ran to its end.
        connect(this, &QAbstractAnimation::finished, this, [this] { complete(true); });
    }

    // Stops the animation where it is and reports it cut short.
    void interrupt()
    {
        stop();
        complete(false);
    }

private:
    void complete(bool finished)
    {
        const AlphaCompletion completion = std::exchange(m_completion, {});
        deleteLater();
        if (completion)
            completion(finished);
    }

    AlphaCompletion m_completion;
};

QGraphicsOpacityEffect *existingEffect(const QWidget *view)
{
    return qobject_cast<QGraphicsOpacityEffect *>(view->graphicsEffect());
}

// Marks the view and every subview for repainting. A new alpha changes the pixels of the whole
// subtree, but the window's repaint manager takes the area of opaque subviews (a filled backdrop,
// say) out of a view's own update, because they normally hide the view: with an effect on the
// view, updating the view alone leaves those areas, and every subview's text over them, as they
// were drawn at the previous alpha (nothing at all after a fade in from 0). Each subview's own
// update reaches the screen through the view's effect.
void updateWithSubviews(QWidget *view)
{
    view->update();
    for (QWidget *subview : view->findChildren<QWidget *>())
        subview->update();
}

QGraphicsOpacityEffect *opacityEffect(QWidget *view)
{
    QGraphicsOpacityEffect *effect = existingEffect(view);
    if (!effect) {
        effect = new QGraphicsOpacityEffect(view);
        // GUI thread: every alpha change, set at once or by an animation step.
        QObject::connect(effect, &QGraphicsOpacityEffect::opacityChanged, view, [view] { updateWithSubviews(view); });
        view->setGraphicsEffect(effect); // the view owns it
    }
    return effect;
}

void interruptRunningAnimation(QGraphicsOpacityEffect *effect)
{
    const auto running = effect->findChildren<QPropertyAnimation *>(QLatin1String(alphaAnimationName),
                                                                     Qt::FindDirectChildrenOnly);
    for (QPropertyAnimation *animation : running) {
        if (animation->state() == QAbstractAnimation::Running)
            static_cast<AlphaAnimation *>(animation)->interrupt();
    }
}

} // namespace

qreal alpha(const QWidget *view)
{
    const QGraphicsOpacityEffect *effect = view ? existingEffect(view) : nullptr;
    return effect ? effect->opacity() : 1.0;
}

void setAlpha(QWidget *view, qreal alpha)
{
    if (!view)
        return;
    QGraphicsOpacityEffect *effect = opacityEffect(view);
    interruptRunningAnimation(effect);
    effect->setOpacity(alpha);
}

void animateAlpha(QWidget *view, qreal alpha, double seconds, AlphaCompletion completion)
{
    if (!view)
        return;
    QGraphicsOpacityEffect *effect = opacityEffect(view);
    interruptRunningAnimation(effect);
    auto *animation = new AlphaAnimation(effect, std::move(completion));
    animation->setDuration(qMax(0, qRound(seconds * 1000.0)));
    animation->setStartValue(effect->opacity());
    animation->setEndValue(qBound(0.0, alpha, 1.0));
    animation->setEasingCurve(QEasingCurve::InOutQuad);
    animation->start();
}

} // namespace ZQTPlatform
