#include "lib/Categories/Label+IBLabel.h"

#include "platform/ui/Font.h"
#include "platform/ui/Storyboard.h"
#include "platform/ui/View.h"

#include <QLabel>

namespace IBLabel {

namespace {

ConfigLookup &installedLookup()
{
    static ConfigLookup lookup;
    return lookup;
}

bool canLookUp(const QString &key)
{
    const ConfigLookup &lookup = installedLookup();
    return !key.isEmpty() && lookup.text && lookup.color;
}

} // namespace

void setConfigLookup(ConfigLookup lookup)
{
    installedLookup() = lookup;
}

void setTextConfigKey(QLabel *label, const QString &key)
{
    if (canLookUp(key))
        label->setText(installedLookup().text(key));
}

void setColorConfigKey(QLabel *label, const QString &key)
{
    if (canLookUp(key))
        ZQTPlatform::setTextColor(label, installedLookup().color(key));
}

void setFontConfigKey(QLabel *label, const QString &key)
{
    if (canLookUp(key))
        label->setFont(ZQTPlatform::Font::labelFontWithName(installedLookup().text(key), label->font()));
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
