// The view category that pins views by their edges, and the superview laying its children out
// by the constraints it holds: every pinning operation is used in the keyboard below, so a wrong
// equation shows as a wrong frame.
#include "lib/Categories/View+ZQTExtend.h"
#include "platform/ui/View.h"

#include <gtest/gtest.h>

#include <QPushButton>
#include <QTest>
#include <QWidget>

#include <memory>

using namespace ZQTExtend;
using ZQTPlatform::translatesAutoresizingMaskIntoConstraints;

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

// A digit keyboard: a display strip with a badge at its right end, over a row of three keys. The
// outer keys have fixed widths and the middle key spans the room between them; a backdrop fills
// the row.
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
        badge = new QWidget(&keyboard);
        addConstraintAttachRightToInside(badge, display);
        addConstraintAttachTopToInside(badge, display);
        addConstraintSetWidth(badge, 30);
        addConstraintSetHeight(badge, 10);
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
        addConstraintAttachLeftToInside(caption, row);
        addConstraintSetWidth(caption, 100);
        addConstraintSetHeight(caption, 20);

        keyboard.resize(320, 240);
        keyboard.show();
    }

    QWidget keyboard;
    QWidget *display = nullptr, *badge = nullptr, *row = nullptr, *backdrop = nullptr, *caption = nullptr;
    QPushButton *one = nullptr, *two = nullptr, *three = nullptr;
    LayoutConstraint *displayHeight = nullptr, *twoBottom = nullptr;
};

TEST_F(KeyboardLayout, ChildrenFollowTheirConstraintsWhenTheSuperviewResizesOrAConstantChanges)
{
    keyboard.resize(400, 300);
    EXPECT_EQ(display->geometry(), QRect(0, 0, 400, 40));
    EXPECT_EQ(badge->geometry(), QRect(370, 0, 30, 10));
    EXPECT_EQ(row->geometry(), QRect(0, 40, 400, 260));
    EXPECT_EQ(backdrop->geometry(), QRect(0, 0, 400, 260));
    EXPECT_EQ(one->geometry(), QRect(0, 0, 80, 260));
    EXPECT_EQ(two->geometry(), QRect(80, 0, 240, 260));
    EXPECT_EQ(three->geometry(), QRect(320, 0, 80, 260));
    EXPECT_EQ(caption->geometry(), QRect(0, 20, 100, 20));

    keyboard.resize(200, 100);
    EXPECT_EQ(row->geometry(), QRect(0, 40, 200, 60));
    EXPECT_EQ(two->geometry(), QRect(80, 0, 40, 60));

    // Changing a constant lays out again.
    keyboard.resize(320, 240);
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
