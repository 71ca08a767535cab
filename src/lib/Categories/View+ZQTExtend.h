// Pinning a view to its superview or to a sibling with one call per edge, so that code that builds
// views by hand reads as a list of edges. Each operation stops the receiver translating its
// autoresizing mask, makes one equality "first . attribute = second . attribute * 1.0 + constant",
// adds it to the receiver's superview (also for sizes and for siblings) and returns it, so that the
// caller may change its constant later. A receiver without a superview adds nothing; the caller
// then owns the constraint returned. GUI thread only.
#pragma once

#include "ZQTGlobal.h"
#include "platform/ui/LayoutConstraint.h"

class QWidget;

namespace ZQTExtend {

using ZQTPlatform::LayoutConstraint;

// Top, left, right and bottom to the superview's same edges: four constraints, added in that order.
ZQT_EXPORT void addConstraintToFillInSupperView(QWidget *view);
// The receiver's edge to the superview's same edge.
ZQT_EXPORT LayoutConstraint *addConstraintAttachSupperTop(QWidget *view);
ZQT_EXPORT LayoutConstraint *addConstraintAttachSupperBottom(QWidget *view);
ZQT_EXPORT LayoutConstraint *addConstraintAttachSupperLeft(QWidget *view);
ZQT_EXPORT LayoutConstraint *addConstraintAttachSupperRight(QWidget *view);
// The receiver's height or width fixed to the length in points.
ZQT_EXPORT LayoutConstraint *addConstraintSetHeight(QWidget *view, qreal height);
ZQT_EXPORT LayoutConstraint *addConstraintSetWidth(QWidget *view, qreal width);
// The receiver next to the other view: its edge to the other view's opposite edge.
ZQT_EXPORT LayoutConstraint *addConstraintAttachTopTo(QWidget *view, QWidget *other);
ZQT_EXPORT LayoutConstraint *addConstraintAttachBottomTo(QWidget *view, QWidget *other);
ZQT_EXPORT LayoutConstraint *addConstraintAttachLeftTo(QWidget *view, QWidget *other);
ZQT_EXPORT LayoutConstraint *addConstraintAttachRightTo(QWidget *view, QWidget *other);
// The receiver's edge aligned with the other view's same edge.
ZQT_EXPORT LayoutConstraint *addConstraintAttachTopToInside(QWidget *view, QWidget *other);
// The one operation whose first item is the other view ("other . bottom = view . bottom +
// constant"): a positive constant raises the receiver's bottom above the other view's, where
// for the other inside operations a positive constant moves the receiver's edge down or right.
ZQT_EXPORT LayoutConstraint *addConstraintAttachBottomToInside(QWidget *view, QWidget *other);
ZQT_EXPORT LayoutConstraint *addConstraintAttachLeftToInside(QWidget *view, QWidget *other);
ZQT_EXPORT LayoutConstraint *addConstraintAttachRightToInside(QWidget *view, QWidget *other);

} // namespace ZQTExtend
