#include "platform/ui/ConstraintLayout_p.h"

#include "platform/ui/LayoutConstraint.h"

#include <QCoreApplication>
#include <QEvent>
#include <QHash>
#include <QWidget>

#include <array>
#include <optional>

namespace ZQTPlatform {

namespace {

using Attribute = LayoutConstraint::Attribute;

// One axis of a frame in the holder's coordinates: its low edge, high edge and length, any two of
// which decide the third.
class Span
{
public:
    enum Part { Low, High, Length };

    std::optional<qreal> get(Part part) const
    {
        const auto &[low, high, length] = m_parts;
        if (m_parts[part])
            return m_parts[part];
        if (part == Low && high && length)
            return *high - *length;
        if (part == High && low && length)
            return *low + *length;
        if (part == Length && low && high)
            return *high - *low;
        return std::nullopt;
    }
    void set(Part part, qreal value) { m_parts[part] = value; }
    bool decided() const { return get(Low) && get(High); }

private:
    std::array<std::optional<qreal>, 3> m_parts;
};

struct Frame {
    Span horizontal;
    Span vertical;

    static Frame fixed(const QRect &rect)
    {
        Frame frame;
        frame.horizontal.set(Span::Low, rect.left());
        frame.horizontal.set(Span::Length, rect.width());
        frame.vertical.set(Span::Low, rect.top());
        frame.vertical.set(Span::Length, rect.height());
        return frame;
    }
};

// Where an attribute lives in a frame; nullopt for NotAnAttribute.
std::optional<std::pair<Span Frame::*, Span::Part>> locate(Attribute attribute)
{
    switch (attribute) {
    case Attribute::Left: return std::pair(&Frame::horizontal, Span::Low);
    case Attribute::Right: return std::pair(&Frame::horizontal, Span::High);
    case Attribute::Width: return std::pair(&Frame::horizontal, Span::Length);
    case Attribute::Top: return std::pair(&Frame::vertical, Span::Low);
    case Attribute::Bottom: return std::pair(&Frame::vertical, Span::High);
    case Attribute::Height: return std::pair(&Frame::vertical, Span::Length);
    case Attribute::NotAnAttribute: break;
    }
    return std::nullopt;
}

// Solves the equalities a view holds for the frames of its children that do not translate their
// autoresizing masks. The view itself and any other of its descendants are fixed where they are.
// Each equality decides an unknown side from a known one; the first constraint to decide a value
// wins. A dimension that no constraint decides keeps the child's size hint (the platform's
// intrinsic content size), or its present length when it has none, and an axis without any edge
// keeps the child's present position.
class Solver
{
public:
    Solver(QWidget *view, const QList<LayoutConstraint *> &constraints) : m_view(view)
    {
        for (const LayoutConstraint *constraint : constraints) {
            if (constraint->relation() != LayoutConstraint::Relation::Equal)
                continue;
            m_equalities.append(constraint);
            track(constraint->firstItem());
            track(constraint->secondItem());
        }
    }

    QList<std::pair<QWidget *, QRect>> frames()
    {
        for (;;) {
            while (propagate()) {
            }
            if (!settleFirstUndecided())
                break;
        }
        QList<std::pair<QWidget *, QRect>> result;
        for (QWidget *child : std::as_const(m_placed)) {
            const Frame &frame = m_frames[child];
            const int x = qRound(*frame.horizontal.get(Span::Low));
            const int y = qRound(*frame.vertical.get(Span::Low));
            const int width = qMax(0, qRound(*frame.horizontal.get(Span::High)) - x);
            const int height = qMax(0, qRound(*frame.vertical.get(Span::High)) - y);
            result.append({child, QRect(x, y, width, height)});
        }
        return result;
    }

private:
    void track(QWidget *item)
    {
        if (!item || m_frames.contains(item))
            return;
        if (item == m_view) {
            m_frames.insert(item, Frame::fixed(m_view->rect()));
        } else if (item->parentWidget() == m_view && !translatesAutoresizingMaskIntoConstraints(item)) {
            m_frames.insert(item, Frame());
            m_placed.append(item);
        } else if (m_view->isAncestorOf(item)) {
            m_frames.insert(item, Frame::fixed(QRect(item->mapTo(m_view, QPoint(0, 0)), item->size())));
        }
    }

    Span *span(QWidget *item, Attribute attribute)
    {
        const auto where = locate(attribute);
        const auto frame = m_frames.find(item);
        return where && item && frame != m_frames.end() ? &((*frame).*(where->first)) : nullptr;
    }

    // One pass over the equalities; true when it decided something.
    bool propagate()
    {
        bool decided = false;
        for (const LayoutConstraint *constraint : std::as_const(m_equalities))
            decided |= propagate(constraint);
        return decided;
    }

    bool propagate(const LayoutConstraint *constraint)
    {
        Span *first = span(constraint->firstItem(), constraint->firstAttribute());
        if (!first)
            return false;
        const Span::Part firstPart = locate(constraint->firstAttribute())->second;
        const std::optional<qreal> firstValue = first->get(firstPart);
        if (constraint->secondAttribute() == Attribute::NotAnAttribute) {
            if (firstValue)
                return false;
            first->set(firstPart, constraint->constant());
            return true;
        }
        Span *second = span(constraint->secondItem(), constraint->secondAttribute());
        if (!second)
            return false;
        const Span::Part secondPart = locate(constraint->secondAttribute())->second;
        const std::optional<qreal> secondValue = second->get(secondPart);
        if (secondValue && !firstValue) {
            first->set(firstPart, *secondValue * constraint->multiplier() + constraint->constant());
            return true;
        }
        if (firstValue && !secondValue && constraint->multiplier() != 0.0) {
            second->set(secondPart, (*firstValue - constraint->constant()) / constraint->multiplier());
            return true;
        }
        return false;
    }

    // Gives the first child with an undecided axis its own length and position there; false
    // when every child is decided.
    bool settleFirstUndecided()
    {
        for (QWidget *child : std::as_const(m_placed)) {
            Frame &frame = m_frames[child];
            const QSize hint = child->sizeHint();
            if (!frame.horizontal.decided()) {
                settle(frame.horizontal, hint.width() >= 0 ? hint.width() : child->width(), child->x());
                return true;
            }
            if (!frame.vertical.decided()) {
                settle(frame.vertical, hint.height() >= 0 ? hint.height() : child->height(), child->y());
                return true;
            }
        }
        return false;
    }

    static void settle(Span &span, int length, int position)
    {
        if (!span.get(Span::Length))
            span.set(Span::Length, length);
        if (!span.decided())
            span.set(Span::Low, position);
    }

    QWidget *m_view;
    QList<const LayoutConstraint *> m_equalities;
    QHash<QWidget *, Frame> m_frames;
    QList<QWidget *> m_placed;
};

} // namespace

ConstraintLayout::ConstraintLayout(QWidget *view) : QObject(view), m_view(view)
{
    view->installEventFilter(this);
}

ConstraintLayout *ConstraintLayout::of(const QWidget *view)
{
    return view->findChild<ConstraintLayout *>(QString(), Qt::FindDirectChildrenOnly);
}

void ConstraintLayout::attach(QWidget *view)
{
    if (!of(view))
        new ConstraintLayout(view);
}

void ConstraintLayout::setNeedsLayout(QWidget *view)
{
    if (view && of(view))
        QCoreApplication::postEvent(view, new QEvent(QEvent::LayoutRequest));
}

void ConstraintLayout::layoutSubviews()
{
    Solver solver(m_view, constraints(m_view));
    for (const auto &[child, rect] : solver.frames()) {
        if (child->geometry() != rect)
            child->setGeometry(rect);
        if (ConstraintLayout *inner = of(child))
            inner->layoutSubviews();
    }
}

bool ConstraintLayout::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_view && (event->type() == QEvent::Resize || event->type() == QEvent::LayoutRequest))
        layoutSubviews();
    return QObject::eventFilter(watched, event);
}

} // namespace ZQTPlatform
