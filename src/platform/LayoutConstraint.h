// A layout constraint as the platform keeps one: "first item's attribute (relation) constant",
// with a multiplier. Setting the constant applies it to the item at once: a width or height
// constraint fixes (or bounds, for the inequalities) the widget's width or height.
// Scenes name their height constraints with the dynamic property "heightConstraint" on the
// constrained widget; loading the scene makes one constraint of that name per such widget.
#pragma once

#include "ZQTGlobal.h"

#include <QObject>
#include <QPointer>
#include <QWidget>

namespace ZQTPlatform {

class ZQT_EXPORT LayoutConstraint : public QObject
{
    Q_OBJECT

public:
    // Numbered as the platform numbers them.
    enum class Attribute { Width = 7, Height = 8 };
    enum class Relation { LessThanOrEqual = -1, Equal = 0, GreaterThanOrEqual = 1 };

    // The dynamic property of a scene widget that names its height constraint.
    static constexpr char heightConstraintProperty[] = "heightConstraint";

    // The constraint is a child of holder (the item's superview on the platform) and applies
    // itself to firstItem now.
    LayoutConstraint(QWidget *firstItem, Attribute attribute, Relation relation, qreal multiplier,
                     qreal constant, QObject *holder);

    QWidget *firstItem() const;
    Attribute firstAttribute() const;
    Relation relation() const;
    qreal multiplier() const;
    qreal constant() const;
    void setConstant(qreal constant);

    // Makes the named height constraint of every widget under root that carries the property.
    static void makeSceneConstraints(QWidget *root);

private:
    void apply();

    QPointer<QWidget> m_firstItem;
    Attribute m_attribute;
    Relation m_relation;
    qreal m_multiplier;
    qreal m_constant;
};

} // namespace ZQTPlatform
