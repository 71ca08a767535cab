// The view category that pins views by their edges, and the superview laying its children out
// by the constraints it holds.
#include "lib/Categories/View+ZQTExtend.h"
#include "platform/View.h"

#include <gtest/gtest.h>

#include <QPushButton>
#include <QTest>
#include <QWidget>

#include <functional>
#include <memory>
#include <ostream>

using namespace ZQTExtend;
using ZQTPlatform::constraints;
using ZQTPlatform::translatesAutoresizingMaskIntoConstraints;
using Attribute = LayoutConstraint::Attribute;

// Geometries in failure messages as "x,y widthxheight".
static void PrintTo(const QRect &rect, std::ostream *out)
{
    *out << rect.x() << ',' << rect.y() << ' ' << rect.width() << 'x' << rect.height();
}

namespace {

enum class Item { Receiver, Other, Superview, None };

struct Expected {
    Item first;
    Attribute firstAttribute;
    Item second;
    Attribute secondAttribute;
    qreal constant;
};

struct Operation {
    const char *name;
    // Calls the operation on the receiver; gives what it returns.
    std::function<LayoutConstraint *(QWidget *receiver, QWidget *other)> call;
    QList<Expected> made;
};

LayoutConstraint *noResult(void (*operation)(QWidget *), QWidget *receiver)
{
    operation(receiver);
    return nullptr;
}

const QList<Operation> &operations()
{
    using A = Attribute;
    static const QList<Operation> table = {
        {"addConstraintToFillInSupperView", [](QWidget *v, QWidget *) { return noResult(addConstraintToFillInSupperView, v); },
         {{Item::Receiver, A::Top, Item::Superview, A::Top, 0.0},
          {Item::Receiver, A::Left, Item::Superview, A::Left, 0.0},
          {Item::Receiver, A::Right, Item::Superview, A::Right, 0.0},
          {Item::Receiver, A::Bottom, Item::Superview, A::Bottom, 0.0}}},
        {"addConstraintAttachSupperTop", [](QWidget *v, QWidget *) { return addConstraintAttachSupperTop(v); },
         {{Item::Receiver, A::Top, Item::Superview, A::Top, 0.0}}},
        {"addConstraintAttachSupperBottom", [](QWidget *v, QWidget *) { return addConstraintAttachSupperBottom(v); },
         {{Item::Receiver, A::Bottom, Item::Superview, A::Bottom, 0.0}}},
        {"addConstraintAttachSupperLeft", [](QWidget *v, QWidget *) { return addConstraintAttachSupperLeft(v); },
         {{Item::Receiver, A::Left, Item::Superview, A::Left, 0.0}}},
        {"addConstraintAttachSupperRight", [](QWidget *v, QWidget *) { return addConstraintAttachSupperRight(v); },
         {{Item::Receiver, A::Right, Item::Superview, A::Right, 0.0}}},
        {"addConstraintSetHeight", [](QWidget *v, QWidget *) { return addConstraintSetHeight(v, 44.0); },
         {{Item::Receiver, A::Height, Item::None, A::NotAnAttribute, 44.0}}},
        {"addConstraintSetWidth", [](QWidget *v, QWidget *) { return addConstraintSetWidth(v, 12.5); },
         {{Item::Receiver, A::Width, Item::None, A::NotAnAttribute, 12.5}}},
        {"addConstraintAttachTopTo", addConstraintAttachTopTo, {{Item::Receiver, A::Top, Item::Other, A::Bottom, 0.0}}},
        {"addConstraintAttachBottomTo", addConstraintAttachBottomTo,
         {{Item::Receiver, A::Bottom, Item::Other, A::Top, 0.0}}},
        {"addConstraintAttachLeftTo", addConstraintAttachLeftTo, {{Item::Receiver, A::Left, Item::Other, A::Right, 0.0}}},
        {"addConstraintAttachRightTo", addConstraintAttachRightTo,
         {{Item::Receiver, A::Right, Item::Other, A::Left, 0.0}}},
        {"addConstraintAttachTopToInside", addConstraintAttachTopToInside,
         {{Item::Receiver, A::Top, Item::Other, A::Top, 0.0}}},
        {"addConstraintAttachBottomToInside", addConstraintAttachBottomToInside,
         {{Item::Other, A::Bottom, Item::Receiver, A::Bottom, 0.0}}},
        {"addConstraintAttachLeftToInside", addConstraintAttachLeftToInside,
         {{Item::Receiver, A::Left, Item::Other, A::Left, 0.0}}},
        {"addConstraintAttachRightToInside", addConstraintAttachRightToInside,
         {{Item::Receiver, A::Right, Item::Other, A::Right, 0.0}}},
    };
    return table;
}

} // namespace

TEST(LayoutConstraintHelpers, EachOperationAddsItsEquationsToTheSuperviewAndReturnsIt)
{
    for (const Operation &operation : operations()) {
        SCOPED_TRACE(operation.name);
        QWidget superview;
        auto *receiver = new QWidget(&superview);
        auto *other = new QWidget(&superview);
        const auto item = [&](Item which) -> QWidget * {
            switch (which) {
            case Item::Receiver: return receiver;
            case Item::Other: return other;
            case Item::Superview: return &superview;
            case Item::None: break;
            }
            return nullptr;
        };

        LayoutConstraint *returned = operation.call(receiver, other);

        EXPECT_FALSE(translatesAutoresizingMaskIntoConstraints(receiver));
        EXPECT_TRUE(translatesAutoresizingMaskIntoConstraints(other));
        EXPECT_TRUE(constraints(receiver).isEmpty()) << "the superview holds them, never the receiver";
        const QList<LayoutConstraint *> held = constraints(&superview);
        ASSERT_EQ(held.size(), operation.made.size());
        EXPECT_EQ(returned, held.size() == 1 ? held.first() : nullptr);
        for (int i = 0; i < held.size(); ++i) {
            const Expected &expected = operation.made.at(i);
            SCOPED_TRACE(i);
            EXPECT_EQ(held[i]->firstItem(), item(expected.first));
            EXPECT_EQ(held[i]->firstAttribute(), expected.firstAttribute);
            EXPECT_EQ(held[i]->relation(), LayoutConstraint::Relation::Equal);
            EXPECT_EQ(held[i]->secondItem(), item(expected.second));
            EXPECT_EQ(held[i]->secondAttribute(), expected.secondAttribute);
            EXPECT_EQ(held[i]->multiplier(), 1.0);
            EXPECT_EQ(held[i]->constant(), expected.constant);
            EXPECT_EQ(held[i]->holder(), &superview);
        }
    }
}

TEST(LayoutConstraintHelpers, AReceiverWithoutSuperviewAddsNothing)
{
    QWidget lonely;
    std::unique_ptr<LayoutConstraint> top(addConstraintAttachSupperTop(&lonely));
    std::unique_ptr<LayoutConstraint> height(addConstraintSetHeight(&lonely, 30.0));
    EXPECT_FALSE(translatesAutoresizingMaskIntoConstraints(&lonely));
    EXPECT_EQ(top->holder(), nullptr);
    EXPECT_EQ(top->firstItem(), &lonely);
    EXPECT_EQ(top->secondItem(), nullptr) << "a constraint to no view";
    EXPECT_EQ(height->holder(), nullptr);
    EXPECT_NE(lonely.maximumHeight(), 30) << "an unadded size constraint does not act";
}

// A digit keyboard: a display strip over a row of three keys. The outer keys have fixed widths
// and the middle key spans the room between them; a backdrop fills the row.
class KeyboardLayout : public ::testing::Test
{
protected:
    void SetUp() override
    {
        display = new QWidget(&keyboard);
        addConstraintAttachSupperTop(display);
        addConstraintAttachSupperLeft(display);
        addConstraintAttachSupperRight(display);
        displayHeight = addConstraintSetHeight(display, 40);

        row = new QWidget(&keyboard);
        addConstraintAttachTopTo(row, display);
        addConstraintAttachSupperLeft(row);
        addConstraintAttachSupperRight(row);
        addConstraintAttachSupperBottom(row);

        backdrop = new QWidget(row);
        addConstraintToFillInSupperView(backdrop);
        one = new QPushButton("1", row);
        two = new QPushButton("2", row);
        three = new QPushButton("3", row);
        // The middle key refers to keys laid out after it.
        addConstraintAttachLeftTo(two, one);
        addConstraintAttachRightTo(two, three);
        addConstraintAttachTopToInside(two, one);
        twoBottom = addConstraintAttachBottomToInside(two, one);
        addConstraintAttachSupperLeft(one);
        addConstraintSetWidth(one, 80);
        addConstraintAttachSupperTop(one);
        addConstraintAttachSupperBottom(one);
        addConstraintAttachSupperRight(three);
        addConstraintSetWidth(three, 80);
        addConstraintAttachTopToInside(three, one);
        addConstraintAttachBottomToInside(three, backdrop);

        // A caption standing on the row.
        caption = new QWidget(&keyboard);
        addConstraintAttachBottomTo(caption, row);
        addConstraintAttachSupperLeft(caption);
        addConstraintSetWidth(caption, 100);
        addConstraintSetHeight(caption, 20);

        keyboard.resize(320, 240);
        keyboard.show();
    }

    QWidget keyboard;
    QWidget *display = nullptr;
    QWidget *row = nullptr;
    QWidget *backdrop = nullptr;
    QWidget *caption = nullptr;
    QPushButton *one = nullptr;
    QPushButton *two = nullptr;
    QPushButton *three = nullptr;
    LayoutConstraint *displayHeight = nullptr;
    LayoutConstraint *twoBottom = nullptr;
};

TEST_F(KeyboardLayout, ChildrenFollowTheirConstraintsWhenTheSuperviewResizes)
{
    keyboard.resize(400, 300);
    EXPECT_EQ(display->geometry(), QRect(0, 0, 400, 40));
    EXPECT_EQ(row->geometry(), QRect(0, 40, 400, 260));
    EXPECT_EQ(backdrop->geometry(), QRect(0, 0, 400, 260));
    EXPECT_EQ(one->geometry(), QRect(0, 0, 80, 260));
    EXPECT_EQ(two->geometry(), QRect(80, 0, 240, 260));
    EXPECT_EQ(three->geometry(), QRect(320, 0, 80, 260));
    EXPECT_EQ(caption->geometry(), QRect(0, 20, 100, 20));

    keyboard.resize(200, 100);
    EXPECT_EQ(row->geometry(), QRect(0, 40, 200, 60));
    EXPECT_EQ(two->geometry(), QRect(80, 0, 40, 60));
}

TEST_F(KeyboardLayout, ChangingAConstantLaysOutAgain)
{
    displayHeight->setConstant(64);
    ZQTPlatform::layoutIfNeeded(&keyboard);
    EXPECT_EQ(display->geometry(), QRect(0, 0, 320, 64));
    EXPECT_EQ(row->geometry(), QRect(0, 64, 320, 176));
    EXPECT_EQ(two->geometry(), QRect(80, 0, 160, 176));
    EXPECT_EQ(caption->geometry(), QRect(0, 44, 100, 20));

    // "one . bottom = two . bottom + 10": a positive constant lifts the key's bottom.
    twoBottom->setConstant(10);
    ZQTPlatform::layoutIfNeeded(row);
    EXPECT_EQ(two->geometry(), QRect(80, 0, 160, 166));
}
