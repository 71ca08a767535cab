// Every text, colour, font name, image name and switch of the component is read here by key:
// first from the host's "Default_Settings.plist" in the main bundle, then from the framework's
// own "ZQTConfig.plist". Missing keys give neutral values (the text "(null)", opaque black,
// 0.0, false, empty collections). The one shared instance also carries the location work.
#pragma once

#include "ZQTGlobal.h"
#include "platform/Bundle.h"
#include "platform/Image.h"

#include <QColor>
#include <QFont>
#include <QString>
#include <QVariant>

class QLabel;
class QPushButton;

class ZQT_EXPORT ZQTVINScanComponentConstants
{
public:
    // The one instance, made on first call under a once-only guard.
    static ZQTVINScanComponentConstants *sharedInstance();

    // Raw value of a key in one bundle's file ("ZQTConfig.plist" in the framework bundle,
    // "Default_Settings.plist" in any other), searching top-level groups one level deep.
    // Invalid QVariant when the file or the key is missing.
    static QVariant getGlobalValueForKey(const QString &key, const ZQTPlatform::Bundle &fromBundle);
    // The dictionary's value for the key, or an invalid QVariant.
    static QVariant getObjectFrom(const QVariantMap &dictionary, const QString &forKey);
    // The host's value when it has one (even an empty one), else the framework's.
    static QVariant getConfigurableValueForKey(const QString &key);

    static QString getConfigStringForKey(const QString &key);
    // Throws ZQTPlatform::Exception (after one log line) when the value is not an array.
    static QVariantList getConfigArrayForKey(const QString &key);
    // Throws ZQTPlatform::Exception (after one log line) when the value is not a dictionary.
    static QVariantMap getGlobalDictionaryForKey(const QString &key);
    static float getGlobalFloatForKey(const QString &key);
    static bool getGlobalBoolForKey(const QString &key);
    // The image named by the value: host images first, then the framework bundle.
    static ZQTPlatform::Image getGlobalImageForKey(const QString &key);
    // Font names: the configured name when such a font exists, else "Helvetica-Bold" / "Helvetica".
    static QString getGlobalFontBold();
    static QString getGlobalFontRegular();
    // Help page value; throws ZQTPlatform::Exception (after one log line) for an index outside
    // the "overlays" array. Invalid QVariant when the page lacks the key.
    static QVariant getConfigHelpOverlayValueForKey(const QString &key, qint64 atIndex);

    // Colour text "#RRGGBB" (marker skipped, optional 0x, overflow to all bits set); always
    // opaque. Throws ZQTPlatform::Exception ("NSRangeException") for an empty text.
    static QColor getColorWithHexString(const QString &hexString);
    // Colour of a key: clear for an empty text, opaque black for a missing key.
    static QColor getGlobalColorForKey(const QString &key);

    // Styles a button in one call: border, font, title, title colour for the normal and
    // highlighted states, per-state background colours, clipping. An invalid borderColor means none.
    static void configButton(QPushButton *button, const QColor &defaultColor, const QString &buttonText,
                             const QColor &highlighedColor, float cornerRadius, const QColor &borderColor,
                             float borderWidth, const QFont &font, const QColor &fontColor);
    // Gives the label the named font at its current size (when such a font exists) and the colour.
    static void configLabel(QLabel *label, const QColor &color, const QString &fontName);

private:
    ZQTVINScanComponentConstants() = default;
};
