// Every text, colour, font name, image name and switch of the component is read here by key:
// first from the host's "Default_Settings.plist" in the main bundle, then from the framework's
// own "ZQTConfig.plist". Missing keys give neutral values (the text "(null)", opaque black,
// 0.0, false, empty collections). The one shared instance also carries the location work.
#pragma once

#include "ZQTGlobal.h"
#include "platform/foundation/Bundle.h"
#include "platform/ui/Image.h"
#include "platform/location/LocationManager.h"

#include <QColor>
#include <QFont>
#include <QString>
#include <QVariant>
#include <functional>

class QLabel;
class QPushButton;

namespace ZQTPlatform {
class ViewController;
}

class ZQT_EXPORT ZQTVINScanComponentConstants : public ZQTPlatform::LocationManagerDelegate
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

    // --- styling (ZQTVINScanComponentConstantsStyling.cpp); GUI thread only ---

    // Colour text "#RRGGBB" read as the platform's scanner reads a hexadecimal number: the first
    // character is skipped whatever it is, then white space, an optional "0x"/"0X" and digits of
    // either case; no digit gives 0, more than 32 bits give all bits set; bits 24-31 are ignored
    // and the colour is always opaque. An empty text is a configuration error: one log line,
    // then ZQTPlatform::Exception ("NSRangeException").
    static QColor getColorWithHexString(const QString &hexString);
    // Colour of a key: clear for an empty text, opaque black for a missing key.
    static QColor getGlobalColorForKey(const QString &key);
    // An image of 1 x 1 point at scale 1, not opaque, filled with the colour.
    static ZQTPlatform::Image imageFromColor(const QColor &color);
    // The named image (host images first, then the framework bundle) recoloured as by
    // getGlobalImageFrom; the null image when no bundle has the name.
    static ZQTPlatform::Image getGlobalImageWithName(const QString &name, const QColor &withColor);
    // The image drawn as a template: every pixel keeps its alpha and takes the colour. Same size
    // in points and same scale, orientation up; the null image for the null image.
    static ZQTPlatform::Image getGlobalImageFrom(const ZQTPlatform::Image &image, const QColor &withColor);

    // Styles a button in one call, in this order: border width, corner radius, border colour
    // (clear when borderColor is invalid), font, title, the title colour for the normal and
    // highlighted states, imageFromColor backgrounds for the normal and highlighted states,
    // clipping to bounds.
    static void configButton(QPushButton *button, const QColor &defaultColor, const QString &buttonText,
                             const QColor &highlighedColor, float cornerRadius, const QColor &borderColor,
                             float borderWidth, const QFont &font, const QColor &fontColor);
    // Gives the label the named font at its current size and the text colour; a name that no
    // font has gives the label the platform's default font at the default size.
    static void configLabel(QLabel *label, const QColor &color, const QString &fontName);
    // The height the label's text needs, estimated from its area: the one-line text's width x
    // height over the label's width, rounded, in whole lines of the font's line height. It does
    // not wrap words.
    static double getHeightOfLabel(const QLabel *label);

    // --- Location stamp (ZQTVINScanComponentConstantsLocation.cpp) ---
    // The position requests and their callbacks run on the GUI thread.

    // Runs with true and the stamp text for the position, or false and a null text.
    using LatLongDateCompletion = std::function<void(bool success, const QString &text)>;
    using OutputImageCompletion = std::function<void(const ZQTPlatform::Image &image)>;

    // The pending stamp-text request: the completion that the next position (or error) of the
    // latest manager answers; empty when none is pending. A request is answered once and then
    // cleared; a missing request is no request.
    LatLongDateCompletion requestGetLatLong() const;
    void setRequestGetLatLong(const LatLongDateCompletion &requestGetLatLong);
    // The manager of the latest request; null before the first.
    ZQTPlatform::LocationManager *locationManager() const;
    // A new manager (replacing the earlier one) with the singleton as its delegate; asks for
    // when-in-use authorisation and starts updating. Answers no request by itself.
    void enableLocationServices();
    // A one-shot request: a new manager with no distance filter and an accuracy of a hundred
    // metres; the completion runs once, with the first position's stamp text or with false on
    // an error. A later request replaces this one, which then gets no answer.
    void getTextOverlayWithLatLongDate(const LatLongDateCompletion &completion);
    // "<date> <zone>\nLat: <lat>  Long: <lon>": now as "MMM dd, yyyy  HH:mm:ss" in "en_US" in the
    // default (system) time zone, that zone's abbreviation, and each coordinate printed with
    // "%.10g" from its 32-bit float. Any thread.
    static QString getTextOverlayWithLatitude(float latitude, float longitude);
    // A copy of the image (at scale 1) with the text in white, right-aligned, on a black box in
    // the top-right corner. The bold font grows from 9 in steps of 2 until the text is wider
    // than 33 % of the image; the box is 1.05 x the text's width and 1.1 x its height. Any thread.
    static ZQTPlatform::Image getSuperImposedImage(const ZQTPlatform::Image &image, const QString &text);
    // Requests the stamp text as getTextOverlayWithLatLongDate does; then outputImage runs on the
    // GUI thread with the stamped copy (drawn on the global queue), or at once with the image
    // unchanged when no position can be had.
    void getSuperImposedImage(const ZQTPlatform::Image &image, const OutputImageCompletion &outputImage);

    // Location manager callbacks (GUI thread). Only the latest manager's calls count; with no
    // request pending they only stop the updates.
    // Takes the manager's current location (not the batch), stops updating and answers the
    // request with its stamp text.
    void locationManager(ZQTPlatform::LocationManager *manager, const QList<QGeoPositionInfo> &didUpdateLocations) override;
    // Stops updating and answers the request with false.
    void locationManager(ZQTPlatform::LocationManager *manager, const ZQTPlatform::Error &didFailWithError) override;
    using ZQTPlatform::LocationManagerDelegate::locationManager;

    // --- Alerts and phone numbers (GUI thread).
    // Runs with the pressed button's title and index: 0 the cancel button, 1 the other.
    using AlertButtonClicked = std::function<void(const QString &buttonTitle, qint64 buttonIndex)>;
    // An alert with the cancel button and, when otherButton is not empty, a second one, presented
    // by the controller without animation. Nothing happens on systems older than 8.0 or while the
    // controller already presents an alert. buttonClicked may be empty.
    static void showAlertViewWithTitle(const QString &title, const QString &message, const QString &cancelButton,
                                       const QString &otherButton, ZQTPlatform::ViewController *withController,
                                       const AlertButtonClicked &buttonClicked);
    // The phone number laid out by its count of digits (7, 10, 11 or 12); any other count gives
    // the text back as it was.
    static QString getFormatedPhoneNumber(const QString &phone);

private:
    ZQTVINScanComponentConstants() = default;
};
