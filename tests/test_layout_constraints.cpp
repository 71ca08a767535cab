// The view category that pins views by their edges, and the superview laying its children out
// by the constraints it holds.
#include "lib/Categories/View+ZQTExtend.h"
#include "platform/ui/View.h"

#include <gtest/gtest.h>

#include <QPushButton>
#include <QTest>
#include <QWidget>

#include <functional>
#include <memory>

using namespace ZQTExtend;
using ZQTPlatform::constraints;
using ZQTPlatform::translatesAutoresizingMaskIntoConstraints;
using Attribute = LayoutConstraint::Attribute;

namespace {

// The views an equation names: the receiver, the other view, their superview, or none.
enum Item { Receiver, Other, Superview, None };

// One equation "first.attribute = second.attribute + constant" that an operation must add.
struct Expected { Item first; Attribute firstAttribute; Item second; Attribute secondAttribute; qreal constant; };

// An operation called on the receiver (what it returns) and the equations it adds.
struct Operation { const char *name; std::function<LayoutConstraint *(QWidget *, QWidget *)> call; QList<Expected> made; };

// An operation on the receiver alone.
template <LayoutConstraint *(*operation)(QWidget *)> LayoutConstraint *alone(QWidget *receiver, QWidget *)
{
    return operation(receiver);
}

} // namespace

TEST(LayoutConstraintHelpers, EachOperationAddsItsEquationsToTheSuperviewAndReturnsIt)
{
    using A = Attribute;
    const QList<Operation> operations = {
        {"addConstraintToFillInSupperView",
         [](QWidget *v, QWidget *) -> LayoutConstraint * { addConstraintToFillInSupperView(v); return nullptr; },
         {{Receiver, A::Top, Superview, A::Top, 0}, {Receiver, A::Left, Superview, A::Left, 0},
          {Receiver, A::Right, Superview, A::Right, 0}, {Receiver, A::Bottom, Superview, A::Bottom, 0}}},
        {"addConstraintAttachSupperTop", alone<addConstraintAttachSupperTop>, {{Receiver, A::Top, Superview, A::Top, 0}}},
        {"addConstraintAttachSupperBottom", alone<addConstraintAttachSupperBottom>, {{Receiver, A::Bottom, Superview, A::Bottom, 0}}},
        {"addConstraintAttachSupperLeft", alone<addConstraintAttachSupperLeft>, {{Receiver, A::Left, Superview, A::Left, 0}}},
        {"addConstraintAttachSupperRight", alone<addConstraintAttachSupperRight>, {{Receiver, A::Right, Superview, A::Right, 0}}},
        {"addConstraintSetHeight", [](QWidget *v, QWidget *) { return addConstraintSetHeight(v, 44.0); },
         {{Receiver, A::Height, None, A::NotAnAttribute, 44.0}}},
        {"addConstraintSetWidth", [](QWidget *v, QWidget *) { return addConstraintSetWidth(v, 12.5); },
         {{Receiver, A::Width, None, A::NotAnAttribute, 12.5}}},
        {"addConstraintAttachTopTo", addConstraintAttachTopTo, {{Receiver, A::Top, Other, A::Bottom, 0}}},
        {"addConstraintAttachBottomTo", addConstraintAttachBottomTo, {{Receiver, A::Bottom, Other, A::Top, 0}}},
        {"addConstraintAttachLeftTo", addConstraintAttachLeftTo, {{Receiver, A::Left, Other, A::Right, 0}}},
        {"addConstraintAttachRightTo", addConstraintAttachRightTo, {{Receiver, A::Right, Other, A::Left, 0}}},
        {"addConstraintAttachTopToInside", addConstraintAttachTopToInside, {{Receiver, A::Top, Other, A::Top, 0}}},
        {"addConstraintAttachBottomToInside", addConstraintAttachBottomToInside, {{Other, A::Bottom, Receiver, A::Bottom, 0}}},
        {"addConstraintAttachLeftToInside", addConstraintAttachLeftToInside, {{Receiver, A::Left, Other, A::Left, 0}}},
        {"addConstraintAttachRightToInside", addConstraintAttachRightToInside, {{Receiver, A::Right, Other, A::Right, 0}}},
    };
    for (const Operation &operation : operations) {
        SCOPED_TRACE(operation.name);
        QWidget superview;
        auto *receiver = new QWidget(&superview);
        auto *other = new QWidget(&superview);
        QWidget *const item[] = {receiver, other, &superview, nullptr}; // indexed by Item

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
            EXPECT_EQ(held[i]->firstItem(), item[expected.first]);
            EXPECT_EQ(held[i]->firstAttribute(), expected.firstAttribute);
            EXPECT_EQ(held[i]->relation(), LayoutConstraint::Relation::Equal);
            EXPECT_EQ(held[i]->secondItem(), item[expected.second]);
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
    QWidget *display = nullptr, *row = nullptr, *backdrop = nullptr, *caption = nullptr;
    QPushButton *one = nullptr, *two = nullptr, *three = nullptr;
    LayoutConstraint *displayHeight = nullptr, *twoBottom = nullptr;
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
