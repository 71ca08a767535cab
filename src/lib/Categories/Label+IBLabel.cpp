#include "lib/Categories/Label+IBLabel.h"

#include "Model/ZQTVINScanComponentConstants.h"
#include "platform/ui/Font.h"
#include "platform/ui/Storyboard.h"
#include "platform/ui/View.h"

#include <QLabel>

using Constants = ZQTVINScanComponentConstants;

namespace IBLabel {

void setTextConfigKey(QLabel *label, const QString &key)
{
    if (!key.isEmpty())
        label->setText(Constants::getConfigStringForKey(key));
}

void setColorConfigKey(QLabel *label, const QString &key)
{
    if (!key.isEmpty())
        ZQTPlatform::setTextColor(label, Constants::getGlobalColorForKey(key));
}

void setFontConfigKey(QLabel *label, const QString &key)
{
    if (key.isEmpty())
        return;
    label->setFont(ZQTPlatform::Font::labelFontWithName(Constants::getConfigStringForKey(key), label->font()));
}

namespace {

// Scenes name the attributes as dynamic properties of their labels.
const bool registeredWithScenes = [] {
    using ZQTPlatform::Storyboard;
    const auto attribute = [](const char *name, void (*setter)(QLabel *, const QString &)) {
        Storyboard::registerWidgetAttribute("QLabel", QString::fromLatin1(name), [setter](QWidget *widget, const QString &value) {
            setter(static_cast<QLabel *>(widget), value);
        });
    };
    attribute("TextConfigKey", setTextConfigKey);
    attribute("ColorConfigKey", setColorConfigKey);
    attribute("FontConfigKey", setFontConfigKey);
    return true;
}();

} // namespace

} // namespace IBLabel
