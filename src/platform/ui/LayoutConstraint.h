// A layout constraint as the platform keeps one: "first item's attribute (relation) second item's
// attribute times the multiplier plus the constant". A constraint acts once a view holds it (the
// items' common superview on the platform): a width or height with no second item fixes (or
// bounds, for the inequalities) the widget's width or height at once, and the holder applies its
// equalities between edges and sizes to its children whenever it lays out.
// Scenes name their height constraints with the dynamic property "heightConstraint" on the
// constrained widget; loading the scene makes one constraint of that name per such widget.
#pragma once

#include "ZQTGlobal.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QWidget>

namespace ZQTPlatform {

class LayoutConstraint;

// view holds the constraint from now on (it becomes the constraint's QObject parent) and lays out
// by its constraints. A null view adds nothing, and the caller keeps owning the constraint.
ZQT_EXPORT void addConstraint(QWidget *view, LayoutConstraint *constraint);

class ZQT_EXPORT LayoutConstraint : public QObject
{
    Q_OBJECT

public:
    // Numbered as the platform numbers them.
    enum class Attribute { NotAnAttribute = 0, Left = 1, Right = 2, Top = 3, Bottom = 4, Width = 7, Height = 8 };
    enum class Relation { LessThanOrEqual = -1, Equal = 0, GreaterThanOrEqual = 1 };

    // The dynamic property of a scene widget that names its height constraint.
    static constexpr char heightConstraintProperty[] = "heightConstraint";

    // A size constraint of firstItem (no second item), a child of holder (the item's superview on
    // the platform), applied to firstItem now.
    LayoutConstraint(QWidget *firstItem, Attribute attribute, Relation relation, qreal multiplier,
                     qreal constant, QObject *holder);
    // A constraint held by no view yet: it does nothing until addConstraint gives it a holder.
    // secondItem is null, with NotAnAttribute, for a size constraint.
    LayoutConstraint(QWidget *firstItem, Attribute firstAttribute, Relation relation, QWidget *secondItem,
                     Attribute secondAttribute, qreal multiplier, qreal constant);

    QWidget *firstItem() const;
    Attribute firstAttribute() const;
    Relation relation() const;
    QWidget *secondItem() const;
    Attribute secondAttribute() const;
    qreal multiplier() const;
    qreal constant() const;
    // Applies a size constraint at once and has the holder lay out again.
    void setConstant(qreal constant);

    // The view that holds the constraint, or null.
    QWidget *holder() const;

    // Makes the named height constraint of every widget under root that carries the property.
    static void makeSceneConstraints(QWidget *root);

private:
    friend void addConstraint(QWidget *view, LayoutConstraint *constraint);
    void apply();

    QPointer<QWidget> m_firstItem;
    Attribute m_firstAttribute;
    Relation m_relation;
    QPointer<QWidget> m_secondItem;
    Attribute m_secondAttribute;
    qreal m_multiplier;
    qreal m_constant;
};

// The constraints the view holds, in the order they were added.
ZQT_EXPORT QList<LayoutConstraint *> constraints(const QWidget *view);

// Whether the widget keeps the geometry it is given (true, the default) or takes the geometry its
// superview's constraints give it (false).
ZQT_EXPORT bool translatesAutoresizingMaskIntoConstraints(const QWidget *view);
ZQT_EXPORT void setTranslatesAutoresizingMaskIntoConstraints(QWidget *view, bool translates);

} // namespace ZQTPlatform
