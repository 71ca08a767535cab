// Button and label styling of ZQTVINScanComponentConstants.
#include "Model/ZQTVINScanComponentConstants.h"

#include "platform/ButtonStyle.h"
#include "platform/Font.h"

#include <QLabel>
#include <QPushButton>

using ZQTPlatform::ButtonStyle;

void ZQTVINScanComponentConstants::configButton(QPushButton *button, const QColor &defaultColor,
                                                const QString &buttonText, const QColor &highlighedColor,
                                                float cornerRadius, const QColor &borderColor, float borderWidth,
                                                const QFont &font, const QColor &fontColor)
{
    ButtonStyle::setBorder(button, borderWidth, borderColor.isValid() ? borderColor : QColor(Qt::transparent));
    ButtonStyle::setCornerRadius(button, cornerRadius);
    button->setFont(font);
    button->setText(buttonText);
    ButtonStyle::setTitleColor(button, fontColor, ButtonStyle::State::Normal);
    ButtonStyle::setTitleColor(button, fontColor, ButtonStyle::State::Highlighted);
    ButtonStyle::setBackgroundColor(button, defaultColor, ButtonStyle::State::Normal);
    ButtonStyle::setBackgroundColor(button, highlighedColor, ButtonStyle::State::Highlighted);
    ButtonStyle::setClipsToBounds(button, true);
}

void ZQTVINScanComponentConstants::configLabel(QLabel *label, const QColor &color, const QString &fontName)
{
    const QFont current = label->font();
    const qreal size = current.pointSizeF() > 0 ? current.pointSizeF() : current.pixelSize();
    if (const std::optional<QFont> font = ZQTPlatform::Font::fontWithName(fontName, size))
        label->setFont(*font);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, color);
    label->setPalette(palette);
}
