// Styling: colours from text and keys, colour images and tinted icons, button and label set-up.
// (The label attributes scenes set from configuration keys: the adjuster panel's test.)
#include "Model/ZQTVINScanComponentConstants.h"
#include "platform/ui/ButtonStyle.h"
#include "platform/foundation/Exception.h"
#include "platform/ui/Font.h"
#include "platform/ui/View.h"
#include "support/LogCapture.h"
#include "support/TemporaryMainBundle.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>

using C = ZQTVINScanComponentConstants;
using ZQTPlatform::ButtonStyle;
using ZQTPlatform::Image;
using State = ButtonStyle::State;

TEST(StylingColours, ColourTextIsScannedAsThePlatformScannerDoesKeysMayBeEmptyOrMissingAndImagesAreRecolouredOrNamedFromTheHostFirst)
{
    const QList<std::pair<QString, QColor>> cases = {
        {"#FF8800", QColor(0xFF, 0x88, 0x00)},   {"#00ff00", QColor(0, 255, 0)},
        {"FF8800", QColor(0x0F, 0x88, 0x00)},    // first digit taken for the marker
        {"#F80", QColor(0, 0x0F, 0x80)},         // a number, not a short form
        {"#80FF8800", QColor(0xFF, 0x88, 0x00)}, // no alpha in colour text
        {"#", QColor(0, 0, 0)},                  {"(null)", QColor(0, 0, 0)},
        {"#123456789", QColor(255, 255, 255)},   // overflow sets every bit
        {"#12G456", QColor(0, 0, 0x12)}};        // stops at the first non-digit
    for (const auto &[text, colour] : cases)
        EXPECT_EQ(C::getColorWithHexString(text).rgba(), colour.rgba()) << text.toStdString();

    // Empty text is a range error, after one log line.
    LogCapture log;
    try {
        C::getColorWithHexString(QString());
        ADD_FAILURE() << "empty colour text must raise";
    } catch (const ZQTPlatform::Exception &e) {
        EXPECT_EQ(e.name(), "NSRangeException");
    }
    EXPECT_EQ(log.lines().size(), 1) << log.lines().join('\n').toStdString();

    // By key: an empty value is clear, a missing key opaque black.
    TemporaryMainBundle host;
    host.writeSettings("<key>ManualVINButtonBorderColor</key><string></string>"
                       "<key>Theme</key><dict><key>OwnColor</key><string>#336699</string></dict>");
    EXPECT_EQ(C::getGlobalColorForKey("ManualVINButtonBorderColor").rgba(), qRgba(0, 0, 0, 0));
    EXPECT_EQ(C::getGlobalColorForKey("NoSuchColorAnywhere").rgba(), qRgb(0, 0, 0));
    EXPECT_EQ(C::getGlobalColorForKey("OwnColor").rgba(), qRgb(0x33, 0x66, 0x99));

    // A recoloured image keeps its size, scale and alpha: columns of different colours and
    // alphas, at scale 2 and turned a quarter.
    QImage bitmap(4, 2, QImage::Format_ARGB32);
    const QColor colours[] = {QColor(255, 0, 0, 255), QColor(0, 255, 0, 200), QColor(255, 255, 255, 100), QColor(0, 0, 0, 0)};
    for (int i = 0; i < 8; ++i)
        bitmap.setPixelColor(i % 4, i / 4, colours[i % 4]);
    const Image icon(bitmap, 2.0, Image::Orientation::Right);
    const Image tinted = C::getGlobalImageFrom(icon, QColor(0x12, 0x34, 0x56));
    EXPECT_EQ(tinted.size(), icon.size());
    EXPECT_EQ(tinted.scale(), 2.0);
    EXPECT_EQ(tinted.imageOrientation(), Image::Orientation::Up);
    ASSERT_EQ(tinted.bitmap().size(), QSize(2, 4)) << "drawn as shown, upright";
    for (int y = 0; y < 4; ++y) {
        const QColor pixel = tinted.bitmap().pixelColor(0, y);
        const int alpha = colours[y].alpha(); // turned right: the first row runs down the picture
        EXPECT_NEAR(pixel.alpha(), alpha, 1) << y;
        if (alpha >= 100) {
            EXPECT_NEAR(pixel.red(), 0x12, 2) << y;
            EXPECT_NEAR(pixel.green(), 0x34, 2) << y;
            EXPECT_NEAR(pixel.blue(), 0x56, 2) << y;
        }
    }
    EXPECT_TRUE(C::getGlobalImageFrom(Image(), Qt::red).isNull());

    // Named images come from the host first, then the framework, or nowhere.
    const Image framework = C::getGlobalImageWithName("help_info_vin", Qt::blue);
    ASSERT_FALSE(framework.isNull());
    EXPECT_EQ(framework.size(), Image::imageNamed("help_info_vin", ZQTPlatform::Bundle::frameworkBundle()).size());

    QImage own(6, 3, QImage::Format_ARGB32);
    own.fill(QColor(0, 0, 0, 255));
    own.save(host.path() + "/help_info_vin.png");
    const Image hosted = C::getGlobalImageWithName("help_info_vin", Qt::blue);
    EXPECT_EQ(hosted.size(), QSizeF(6, 3));
    EXPECT_EQ(hosted.bitmap().pixelColor(5, 2), QColor(Qt::blue));

    EXPECT_TRUE(C::getGlobalImageWithName("no_such_icon", Qt::blue).isNull());
}

TEST(StylingWidgets, EachButtonArgumentReachesItsLookItsStatesBackgroundIsCutToTheCornersAndLabelsTakeKnownFonts)
{
    QPushButton button;
    QFont font = button.font();
    font.setPointSizeF(19.0);
    C::configButton(&button, Qt::red, "Enter VIN", Qt::darkRed, 6.0f, Qt::blue, 2.0f, font, Qt::white);
    EXPECT_EQ(button.text(), "Enter VIN");
    EXPECT_EQ(button.font(), font);
    for (const State state : {State::Normal, State::Highlighted})
        EXPECT_EQ(ButtonStyle::titleColor(&button, state), QColor(Qt::white)) << "both states share the title colour";
    EXPECT_DOUBLE_EQ(ButtonStyle::cornerRadius(&button), 6.0);
    EXPECT_DOUBLE_EQ(ButtonStyle::borderWidth(&button), 2.0);
    EXPECT_EQ(ButtonStyle::borderColor(&button), QColor(Qt::blue));
    EXPECT_TRUE(ButtonStyle::clipsToBounds(&button));

    // Drawn: the background of its state, cut to the corners only when clipping.
    QWidget container;
    container.setStyleSheet("background-color: white;");
    container.resize(120, 40);
    auto *drawn = new QPushButton(&container);
    drawn->setGeometry(0, 0, 120, 40);
    C::configButton(drawn, QColor(0, 128, 0), "B", Qt::red, 12.0f, QColor(), 0.0f, drawn->font(), Qt::black);
    EXPECT_EQ(ButtonStyle::borderColor(drawn).alpha(), 0) << "no border colour gives a clear border";
    const QImage rounded = container.grab().toImage();
    EXPECT_EQ(rounded.pixelColor(60, 3), QColor(0, 128, 0));
    EXPECT_EQ(rounded.pixelColor(0, 0), QColor(Qt::white)) << "the corner is cut off";

    drawn->setDown(true);
    EXPECT_EQ(container.grab().toImage().pixelColor(60, 3), QColor(Qt::red)) << "the highlighted background";
    drawn->setDown(false);

    ButtonStyle::setClipsToBounds(drawn, false);
    EXPECT_EQ(container.grab().toImage().pixelColor(0, 0), QColor(0, 128, 0));

    // A label: a known font keeps the label's size, an unknown one gives the default label font.
    QLabel label;
    label.setFont(*ZQTPlatform::Font::fontWithName("DejaVuSans", 13.0));
    C::configLabel(&label, Qt::magenta, "DejaVuSans-Bold");
    EXPECT_EQ(label.font().family(), "DejaVu Sans");
    EXPECT_TRUE(label.font().bold());
    EXPECT_EQ(label.font().pixelSize(), 13);
    EXPECT_EQ(ZQTPlatform::textColor(&label), QColor(Qt::magenta));

    C::configLabel(&label, Qt::cyan, "NoSuchFont-Regular");
    EXPECT_EQ(label.font(), ZQTPlatform::Font::systemFontOfSize(17.0));
    EXPECT_EQ(ZQTPlatform::textColor(&label), QColor(Qt::cyan));
}
