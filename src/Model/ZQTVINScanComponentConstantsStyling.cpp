// Styling of ZQTVINScanComponentConstants: colours from text and keys, colour images, tinted
// icons, button and label set-up, label height.
#include "Model/ZQTVINScanComponentConstants.h"

#include "Model/ConfigurationError_p.h"
#include "lib/Categories/Label+IBLabel.h"
#include "platform/ui/ButtonStyle.h"
#include "platform/ui/Font.h"
#include "platform/ui/ImageContext.h"
#include "platform/ui/View.h"
#include "platform/foundation/StringScanner_p.h"

#include <QFontMetricsF>
#include <QLabel>
#include <QPushButton>

#include <cmath>

using ZQTPlatform::ButtonStyle;
using ZQTPlatform::Font;
using ZQTPlatform::Image;
using ZQTPlatform::ImageContext;

QColor ZQTVINScanComponentConstants::getColorWithHexString(const QString &hexString)
{
    if (hexString.isEmpty())
        ConfigurationError::raiseOutOfRange(QStringLiteral("colour text is empty: cannot read from index 1"));
    // The first character is a marker ("#") and is skipped whatever it is.
    const quint32 value = ZQTPlatform::StringScanner::scanHexInt(QStringView(hexString).mid(1));
    return QColor(int((value >> 16) & 0xFF), int((value >> 8) & 0xFF), int(value & 0xFF));
}

QColor ZQTVINScanComponentConstants::getGlobalColorForKey(const QString &key)
{
    const QString text = getConfigStringForKey(key);
    if (text.isEmpty())
        return QColor(0, 0, 0, 0); // the clear colour
    return getColorWithHexString(text);
}

Image ZQTVINScanComponentConstants::imageFromColor(const QColor &color)
{
    ImageContext context(QSizeF(1.0, 1.0), false, 1.0);
    context.painter().fillRect(QRectF(0.0, 0.0, 1.0, 1.0), color);
    return context.takeImage();
}

Image ZQTVINScanComponentConstants::getGlobalImageWithName(const QString &name, const QColor &withColor)
{
    Image image = Image::imageNamed(name);
    if (image.isNull())
        image = Image::imageNamed(name, ZQTPlatform::Bundle::frameworkBundle());
    return getGlobalImageFrom(image, withColor);
}

Image ZQTVINScanComponentConstants::getGlobalImageFrom(const Image &image, const QColor &withColor)
{
    return templateImage(image, withColor);
}

void ZQTVINScanComponentConstants::configButton(QPushButton *button, const QColor &defaultColor,
                                                const QString &buttonText, const QColor &highlighedColor,
                                                float cornerRadius, const QColor &borderColor, float borderWidth,
                                                const QFont &font, const QColor &fontColor)
{
    ButtonStyle::setBorderWidth(button, borderWidth);
    ButtonStyle::setCornerRadius(button, cornerRadius);
    ButtonStyle::setBorderColor(button, borderColor.isValid() ? borderColor : QColor(Qt::transparent));
    button->setFont(font);
    button->setText(buttonText);
    ButtonStyle::setTitleColor(button, fontColor, ButtonStyle::State::Normal);
    ButtonStyle::setTitleColor(button, fontColor, ButtonStyle::State::Highlighted);
    ButtonStyle::setBackgroundImage(button, imageFromColor(defaultColor), ButtonStyle::State::Normal);
    ButtonStyle::setBackgroundImage(button, imageFromColor(highlighedColor), ButtonStyle::State::Highlighted);
    ButtonStyle::setClipsToBounds(button, true);
}

void ZQTVINScanComponentConstants::configLabel(QLabel *label, const QColor &color, const QString &fontName)
{
    label->setFont(Font::labelFontWithName(fontName, label->font()));
    ZQTPlatform::setTextColor(label, color);
}

double ZQTVINScanComponentConstants::getHeightOfLabel(const QLabel *label)
{
    const QFontMetricsF metrics(label->font());
    const QSizeF oneLine = metrics.size(Qt::TextSingleLine, label->text());
    const double area = oneLine.width() * oneLine.height();
    const float rows = std::round(float(area / label->width())); // halves away from zero
    const double lineHeight = metrics.lineSpacing();
    const float lines = std::ceil(float(rows / lineHeight));
    return lineHeight * lines;
}

namespace {

// Labels drawn in scenes name configuration keys; their values come from here.
const bool labelAttributesLookUpConfiguration = [] {
    IBLabel::setConfigLookup({&ZQTVINScanComponentConstants::getConfigStringForKey,
                              &ZQTVINScanComponentConstants::getGlobalColorForKey});
    return true;
}();

} // namespace
