#include "platform/LayoutConstraint.h"

#include <QVariant>

namespace ZQTPlatform {

LayoutConstraint::LayoutConstraint(QWidget *firstItem, Attribute attribute, Relation relation, qreal multiplier,
                                   qreal constant, QObject *holder)
    : QObject(holder), m_firstItem(firstItem), m_attribute(attribute), m_relation(relation),
      m_multiplier(multiplier), m_constant(constant)
{
    apply();
}

QWidget *LayoutConstraint::firstItem() const
{
    return m_firstItem;
}

LayoutConstraint::Attribute LayoutConstraint::firstAttribute() const
{
    return m_attribute;
}

LayoutConstraint::Relation LayoutConstraint::relation() const
{
    return m_relation;
}

qreal LayoutConstraint::multiplier() const
{
    return m_multiplier;
}

qreal LayoutConstraint::constant() const
{
    return m_constant;
}

void LayoutConstraint::setConstant(qreal constant)
{
    m_constant = constant;
    apply();
}

void LayoutConstraint::apply()
{
    if (!m_firstItem)
        return;
    const int length = qMax(0, qRound(m_constant));
    const bool height = m_attribute == Attribute::Height;
    switch (m_relation) {
    case Relation::Equal:
        height ? m_firstItem->setFixedHeight(length) : m_firstItem->setFixedWidth(length);
        break;
    case Relation::GreaterThanOrEqual:
        height ? m_firstItem->setMinimumHeight(length) : m_firstItem->setMinimumWidth(length);
        break;
    case Relation::LessThanOrEqual:
        height ? m_firstItem->setMaximumHeight(length) : m_firstItem->setMaximumWidth(length);
        break;
    }
}

void LayoutConstraint::makeSceneConstraints(QWidget *root)
{
    QList<QWidget *> widgets = root->findChildren<QWidget *>();
    widgets.prepend(root);
    for (QWidget *widget : std::as_const(widgets)) {
        const QString name = widget->property(heightConstraintProperty).toString();
        if (name.isEmpty())
            continue;
        // The scene fixes the widget's height (minimum = maximum); otherwise its present height counts.
        const int height = widget->minimumHeight() == widget->maximumHeight() ? widget->maximumHeight()
                                                                               : widget->height();
        QObject *holder = widget->parentWidget() ? static_cast<QObject *>(widget->parentWidget()) : widget;
        auto *constraint = new LayoutConstraint(widget, Attribute::Height, Relation::Equal, 1.0, height, holder);
        constraint->setObjectName(name);
    }
}

} // namespace ZQTPlatform
