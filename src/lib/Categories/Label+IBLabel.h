// Three write-only label attributes that name configuration keys instead of fixed values, so
// that a label drawn in a scene takes its text, colour and font from configuration. A QLabel of
// a scene with a dynamic string property "TextConfigKey", "ColorConfigKey" or "FontConfigKey"
// gets it applied when the scene is loaded. GUI thread only.
//
// The values come from the lookup the configuration installs (setConfigLookup), so that this
// helper does not depend on the configuration code; until one is installed the attributes do
// nothing.
#pragma once

#include "ZQTGlobal.h"

#include <QColor>
#include <QString>

class QLabel;

namespace IBLabel {

// The configured text and colour of a key.
struct ConfigLookup
{
    QString (*text)(const QString &key) = nullptr;
    QColor (*color)(const QString &key) = nullptr;
};

// Installed once by the configuration when the library loads.
ZQT_EXPORT void setConfigLookup(ConfigLookup lookup);

// Each does nothing for an empty key.
// The label's text becomes the key's configured text.
ZQT_EXPORT void setTextConfigKey(QLabel *label, const QString &key);
// The label's text colour becomes the key's configured colour.
ZQT_EXPORT void setColorConfigKey(QLabel *label, const QString &key);
// The label's font becomes the font named by the key at the label's current size (the platform's
// default label font when no font has that name).
ZQT_EXPORT void setFontConfigKey(QLabel *label, const QString &key);

} // namespace IBLabel
