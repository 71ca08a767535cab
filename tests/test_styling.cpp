// Button and label set-up of ZQTVINScanComponentConstants and the button looks behind it.
#include "Model/ZQTVINScanComponentConstants.h"
#include "platform/ButtonStyle.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>

using ZQTPlatform::ButtonStyle;
using State = ButtonStyle::State;

TEST(ConfigButton, EachArgumentReachesItsLook)
{
    QPushButton button;
    QFont font = button.font();
    font.setPointSizeF(19.0);
    ZQTVINScanComponentConstants::configButton(&button, Qt::red, "Enter VIN", Qt::darkRed, 6.0f, Qt::blue, 2.0f,
                                               font, Qt::white);
    EXPECT_EQ(button.text(), "Enter VIN");
    EXPECT_EQ(button.font(), font);
    EXPECT_EQ(ButtonStyle::backgroundColor(&button, State::Normal), QColor(Qt::red));
    EXPECT_EQ(ButtonStyle::backgroundColor(&button, State::Highlighted), QColor(Qt::darkRed));
    EXPECT_EQ(ButtonStyle::titleColor(&button, State::Highlighted), QColor(Qt::white));
    EXPECT_DOUBLE_EQ(ButtonStyle::cornerRadius(&button), 6.0);
    EXPECT_DOUBLE_EQ(ButtonStyle::borderWidth(&button), 2.0);
    EXPECT_EQ(ButtonStyle::borderColor(&button), QColor(Qt::blue));
}

TEST(ConfigButton, DrawsTheNormalBackgroundAndTheRoundedCornersOnlyWhenClipping)
{
    QWidget container;
    container.setStyleSheet("background-color: white;");
    container.resize(120, 40);
    auto *button = new QPushButton(&container);
    button->setGeometry(0, 0, 120, 40);
    ZQTVINScanComponentConstants::configButton(button, QColor(0, 128, 0), "B", Qt::red, 12.0f, QColor(), 0.0f,
                                               button->font(), Qt::black);
    EXPECT_EQ(ButtonStyle::borderColor(button).alpha(), 0) << "no border colour gives a clear border";
    const QImage rounded = container.grab().toImage();
    EXPECT_EQ(rounded.pixelColor(60, 3), QColor(0, 128, 0));
    EXPECT_EQ(rounded.pixelColor(0, 0), QColor(Qt::white)) << "the corner is cut off";
    ButtonStyle::setClipsToBounds(button, false);
    EXPECT_EQ(container.grab().toImage().pixelColor(0, 0), QColor(0, 128, 0));
}

TEST(ConfigLabel, AKnownFontKeepsTheLabelsSizeAndAnUnknownOneLeavesTheFontAlone)
{
    QLabel label;
    QFont font = label.font();
    font.setPointSizeF(13.0);
    label.setFont(font);
    ZQTVINScanComponentConstants::configLabel(&label, Qt::cyan, "NoSuchFont-Regular");
    EXPECT_EQ(label.font(), font);
    EXPECT_EQ(label.palette().color(QPalette::WindowText), QColor(Qt::cyan));

    ZQTVINScanComponentConstants::configLabel(&label, Qt::magenta, "DejaVuSans-Bold");
    EXPECT_EQ(label.font().family(), "DejaVu Sans");
    EXPECT_TRUE(label.font().bold());
    EXPECT_DOUBLE_EQ(label.font().pointSizeF() > 0 ? label.font().pointSizeF() : label.font().pixelSize(), 13.0);
    EXPECT_EQ(label.palette().color(QPalette::WindowText), QColor(Qt::magenta));
}
