#include "platform/ui/LayoutConstraint.h"

#include "platform/ui/ConstraintLayout_p.h"

#include <QVariant>

namespace ZQTPlatform {

namespace {

// The dynamic property that records a widget's translatesAutoresizingMaskIntoConstraints;
// absent means true.
constexpr char translatesProperty[] = "_zqt_translatesAutoresizingMaskIntoConstraints";

} // namespace

LayoutConstraint::LayoutConstraint(QWidget *firstItem, Attribute attribute, Relation relation, qreal multiplier,
                                   qreal constant, QObject *holder)
    : LayoutConstraint(firstItem, attribute, relation, nullptr, Attribute::NotAnAttribute, multiplier, constant)
{
    setParent(holder);
    apply();
}

LayoutConstraint::LayoutConstraint(QWidget *firstItem, Attribute firstAttribute, Relation relation,
                                   QWidget *secondItem, Attribute secondAttribute, qreal multiplier, qreal constant)
    : m_firstItem(firstItem), m_firstAttribute(firstAttribute), m_relation(relation), m_secondItem(secondItem),
      m_secondAttribute(secondAttribute), m_multiplier(multiplier), m_constant(constant)
{
    // A constraint goes with either view it relates.
    for (QWidget *item : {firstItem, secondItem}) {
        if (item)
            connect(item, &QObject::destroyed, this, &QObject::deleteLater);
    }
}

QWidget *LayoutConstraint::firstItem() const
{
    return m_firstItem;
}

LayoutConstraint::Attribute LayoutConstraint::firstAttribute() const
{
    return m_firstAttribute;
}

LayoutConstraint::Relation LayoutConstraint::relation() const
{
    return m_relation;
}

QWidget *LayoutConstraint::secondItem() const
{
    return m_secondItem;
}

LayoutConstraint::Attribute LayoutConstraint::secondAttribute() const
{
    return m_secondAttribute;
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
    ConstraintLayout::setNeedsLayout(holder());
}

QWidget *LayoutConstraint::holder() const
{
    return qobject_cast<QWidget *>(parent());
}

void LayoutConstraint::apply()
{
    const bool size = m_firstAttribute == Attribute::Width || m_firstAttribute == Attribute::Height;
    if (!m_firstItem || !parent() || !size || m_secondAttribute != Attribute::NotAnAttribute)
        return;
    const int length = qMax(0, qRound(m_constant));
    const bool height = m_firstAttribute == Attribute::Height;
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

void addConstraint(QWidget *view, LayoutConstraint *constraint)
{
    if (!view || !constraint)
        return;
    constraint->setParent(view);
    constraint->apply();
    ConstraintLayout::attach(view);
    ConstraintLayout::setNeedsLayout(view);
}

QList<LayoutConstraint *> constraints(const QWidget *view)
{
    return view->findChildren<LayoutConstraint *>(Qt::FindDirectChildrenOnly);
}

bool translatesAutoresizingMaskIntoConstraints(const QWidget *view)
{
    const QVariant translates = view->property(translatesProperty);
    return !translates.isValid() || translates.toBool();
}

void setTranslatesAutoresizingMaskIntoConstraints(QWidget *view, bool translates)
{
    view->setProperty(translatesProperty, translates);
}

} // namespace ZQTPlatform
