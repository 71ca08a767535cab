#include "lib/Categories/View+ZQTExtend.h"

#include <QWidget>

namespace ZQTExtend {

using Attribute = LayoutConstraint::Attribute;

namespace {

// The steps every operation takes for the receiver `view`: autoresizing translation off, the
// constraint made, added to the receiver's superview, returned.
LayoutConstraint *addForView(QWidget *view, QWidget *firstItem, Attribute firstAttribute, QWidget *secondItem,
                             Attribute secondAttribute, qreal constant = 0.0)
{
    ZQTPlatform::setTranslatesAutoresizingMaskIntoConstraints(view, false);
    auto *constraint = new LayoutConstraint(firstItem, firstAttribute, LayoutConstraint::Relation::Equal,
                                            secondItem, secondAttribute, 1.0, constant);
    ZQTPlatform::addConstraint(view->parentWidget(), constraint);
    return constraint;
}

LayoutConstraint *toSuperview(QWidget *view, Attribute attribute)
{
    return addForView(view, view, attribute, view->parentWidget(), attribute);
}

LayoutConstraint *size(QWidget *view, Attribute attribute, qreal length)
{
    return addForView(view, view, attribute, nullptr, Attribute::NotAnAttribute, length);
}

} // namespace

void addConstraintToFillInSupperView(QWidget *view)
{
    for (Attribute attribute : {Attribute::Top, Attribute::Left, Attribute::Right, Attribute::Bottom})
        toSuperview(view, attribute);
}

LayoutConstraint *addConstraintAttachSupperTop(QWidget *view)
{
    return toSuperview(view, Attribute::Top);
}

LayoutConstraint *addConstraintAttachSupperBottom(QWidget *view)
{
    return toSuperview(view, Attribute::Bottom);
}

LayoutConstraint *addConstraintAttachSupperLeft(QWidget *view)
{
    return toSuperview(view, Attribute::Left);
}

LayoutConstraint *addConstraintAttachSupperRight(QWidget *view)
{
    return toSuperview(view, Attribute::Right);
}

LayoutConstraint *addConstraintSetHeight(QWidget *view, qreal height)
{
    return size(view, Attribute::Height, height);
}

LayoutConstraint *addConstraintSetWidth(QWidget *view, qreal width)
{
    return size(view, Attribute::Width, width);
}

LayoutConstraint *addConstraintAttachTopTo(QWidget *view, QWidget *other)
{
    return addForView(view, view, Attribute::Top, other, Attribute::Bottom);
}

LayoutConstraint *addConstraintAttachBottomTo(QWidget *view, QWidget *other)
{
    return addForView(view, view, Attribute::Bottom, other, Attribute::Top);
}

LayoutConstraint *addConstraintAttachLeftTo(QWidget *view, QWidget *other)
{
    return addForView(view, view, Attribute::Left, other, Attribute::Right);
}

LayoutConstraint *addConstraintAttachRightTo(QWidget *view, QWidget *other)
{
    return addForView(view, view, Attribute::Right, other, Attribute::Left);
}

LayoutConstraint *addConstraintAttachTopToInside(QWidget *view, QWidget *other)
{
    return addForView(view, view, Attribute::Top, other, Attribute::Top);
}

LayoutConstraint *addConstraintAttachBottomToInside(QWidget *view, QWidget *other)
{
    return addForView(view, other, Attribute::Bottom, view, Attribute::Bottom);
}

LayoutConstraint *addConstraintAttachLeftToInside(QWidget *view, QWidget *other)
{
    return addForView(view, view, Attribute::Left, other, Attribute::Left);
}

LayoutConstraint *addConstraintAttachRightToInside(QWidget *view, QWidget *other)
{
    return addForView(view, view, Attribute::Right, other, Attribute::Right);
}

} // namespace ZQTExtend
