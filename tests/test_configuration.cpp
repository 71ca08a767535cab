// Configuration lookup: the host file before the framework file, groups one level deep,
// neutral values, the platform's number and boolean readings of text, font fallbacks, help
// pages, colour text, and configuration errors that end the program after one log line.
#include "Model/ZQTVINScanComponentConstants.h"
#include "platform/Bundle.h"
#include "platform/Exception.h"
#include "platform/Font.h"
#include "platform/PropertyList.h"
#include "support/LogCapture.h"
#include "support/TemporaryMainBundle.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>

#include <functional>

using C = ZQTVINScanComponentConstants;
using ZQTPlatform::Bundle;

namespace {

QString frameworkString(const QString &key)
{
    return C::getGlobalValueForKey(key, Bundle::frameworkBundle()).toString();
}

// Runs a call that must fail as a configuration error: the exception's name, and exactly one
// log line holding every one of the expected fragments.
void expectConfigurationError(const std::function<void()> &call, const QString &exceptionName,
                              const QStringList &fragments)
{
    LogCapture log;
    try {
        call();
        ADD_FAILURE() << "no exception";
    } catch (const ZQTPlatform::Exception &e) {
        EXPECT_EQ(e.name(), exceptionName);
    }
    const QStringList lines = log.lines();
    ASSERT_EQ(lines.size(), 1) << lines.join('\n').toStdString();
    for (const QString &fragment : fragments)
        EXPECT_TRUE(lines.first().contains(fragment)) << lines.first().toStdString() << " lacks " << fragment.toStdString();
}

void expectRgba(const QColor &color, int r, int g, int b, int a = 255)
{
    EXPECT_EQ(color.red(), r);
    EXPECT_EQ(color.green(), g);
    EXPECT_EQ(color.blue(), b);
    EXPECT_EQ(color.alpha(), a);
}

} // namespace

// --- where values come from ---------------------------------------------------------------

TEST(ConfigurationLookupOrder, HostValueWinsAndOtherKeysComeFromTheFramework)
{
    TemporaryMainBundle host;
    host.writeSettings("<key>TextTitle</key><string>Host title</string>");
    EXPECT_EQ(C::getConfigStringForKey("TextTitle"), "Host title");
    EXPECT_EQ(C::getConfigStringForKey("ScanningLabelText"), frameworkString("ScanningLabelText"));
    EXPECT_FALSE(frameworkString("ScanningLabelText").isEmpty());
}

TEST(ConfigurationLookupOrder, AnEmptyHostValueWinsAndReadsAsTheClearColour)
{
    TemporaryMainBundle host;
    host.writeSettings("<key>ManualVINButtonBorderColor</key><string></string>"
                       "<key>TextTitle</key><string></string>");
    EXPECT_EQ(C::getConfigStringForKey("TextTitle"), "");
    EXPECT_TRUE(C::getConfigurableValueForKey("TextTitle").isValid());
    expectRgba(C::getGlobalColorForKey("ManualVINButtonBorderColor"), 0, 0, 0, 0);
}

TEST(ConfigurationLookupOrder, WithNoHostFileEveryValueComesFromTheFramework)
{
    TemporaryMainBundle host; // holds no Default_Settings.plist
    EXPECT_FALSE(C::getGlobalValueForKey("TextTitle", Bundle::mainBundle()).isValid());
    EXPECT_EQ(C::getConfigStringForKey("TextTitle"), "Scan VIN");
    EXPECT_EQ(C::getConfigArrayForKey("TextFlashButtonArray"), (QVariantList{"Off", "On"}));
}

TEST(ConfigurationLookupOrder, TheSearchedBundleChoosesTheFileName)
{
    TemporaryMainBundle host;
    // A host bundle is read through Default_Settings.plist only, never through ZQTConfig.plist.
    host.writeFile("ZQTConfig.plist", plistWithEntries("<key>TextTitle</key><string>Wrong file</string>"));
    EXPECT_FALSE(C::getGlobalValueForKey("TextTitle", Bundle::mainBundle()).isValid());
    EXPECT_EQ(C::getConfigStringForKey("TextTitle"), "Scan VIN");

    // When the main bundle is the framework's own bundle, both searches read ZQTConfig.plist.
    Bundle::setMainBundlePath(Bundle::frameworkBundle().bundlePath());
    EXPECT_EQ(C::getGlobalValueForKey("TextTitle", Bundle::mainBundle()).toString(), "Scan VIN");
}

TEST(ConfigurationLookupOrder, GroupsAreSearchedOneLevelDeepAfterTheTopLevel)
{
    TemporaryMainBundle host;
    host.writeSettings("<key>Label</key><string>top</string>"
                       "<key>Theme</key><dict>"
                       "  <key>Label</key><string>group</string>"
                       "  <key>OnlyInGroup</key><string>found</string>"
                       "  <key>Inner</key><dict><key>TwoDeep</key><string>hidden</string></dict>"
                       "</dict>");
    EXPECT_EQ(C::getConfigStringForKey("OnlyInGroup"), "found");
    EXPECT_EQ(C::getConfigStringForKey("Label"), "top");
    EXPECT_EQ(C::getConfigStringForKey("TwoDeep"), "(null)");
    EXPECT_FALSE(C::getGlobalValueForKey("TwoDeep", Bundle::mainBundle()).isValid());
}

TEST(ConfigurationLookupOrder, StringGetterFormatsNumbersAndBooleansAsThePlatformDoes)
{
    TemporaryMainBundle host;
    host.writeSettings("<key>Values</key><dict>"
                       "<key>Count</key><integer>7</integer><key>Ratio</key><real>12.5</real>"
                       "<key>Whole</key><real>2</real><key>Flag</key><true/>"
                       "<key>Modes</key><array><string>Off</string><string>On air</string></array>"
                       "<key>Page</key><dict><key>title</key><string>VIN</string>"
                       "<key>frames</key><array><integer>1</integer></array></dict>"
                       "</dict>");
    EXPECT_EQ(C::getConfigStringForKey("Count"), "7");
    EXPECT_EQ(C::getConfigStringForKey("Ratio"), "12.5");
    EXPECT_EQ(C::getConfigStringForKey("Whole"), "2");
    EXPECT_EQ(C::getConfigStringForKey("Flag"), "1");
    EXPECT_EQ(C::getConfigStringForKey("Modes"), "(\n    Off,\n    \"On air\"\n)");
    EXPECT_EQ(C::getConfigStringForKey("Page"), "{\n    frames = (\n        1\n    );\n    title = VIN;\n}");
}

TEST(ConfigurationLookupOrder, MissingKeysGiveNeutralValues)
{
    TemporaryMainBundle host;
    host.writeSettings("<key>Other</key><string>x</string>");
    const QString key = "NoSuchKeyAnywhere";
    EXPECT_FALSE(C::getConfigurableValueForKey(key).isValid());
    EXPECT_EQ(C::getConfigStringForKey(key), "(null)");
    expectRgba(C::getGlobalColorForKey(key), 0, 0, 0, 255);
    EXPECT_EQ(C::getGlobalFloatForKey(key), 0.0f);
    EXPECT_FALSE(C::getGlobalBoolForKey(key));
    EXPECT_TRUE(C::getConfigArrayForKey(key).isEmpty());
    EXPECT_TRUE(C::getGlobalDictionaryForKey(key).isEmpty());
    EXPECT_TRUE(C::getGlobalImageForKey(key).isNull());
}

// --- typed values ---------------------------------------------------------------------------

TEST(ConfigurationTypedValues, FloatsTakeTheLeadingNumberOfText)
{
    TemporaryMainBundle host;
    host.writeSettings("<key>Numbers</key><dict>"
                       "<key>Padded</key><string>  12.5abc</string>"
                       "<key>Word</key><string>abc</string>"
                       "<key>Exponent</key><string>-3e2x</string>"
                       "<key>Fraction</key><string>.5</string>"
                       "<key>Dots</key><string>1.2.3</string>"
                       "<key>Real</key><real>2.25</real>"
                       "<key>Integer</key><integer>3</integer>"
                       "<key>Yes</key><true/>"
                       "</dict>");
    EXPECT_FLOAT_EQ(C::getGlobalFloatForKey("Padded"), 12.5f);
    EXPECT_FLOAT_EQ(C::getGlobalFloatForKey("Word"), 0.0f);
    EXPECT_FLOAT_EQ(C::getGlobalFloatForKey("Exponent"), -300.0f);
    EXPECT_FLOAT_EQ(C::getGlobalFloatForKey("Fraction"), 0.5f);
    EXPECT_FLOAT_EQ(C::getGlobalFloatForKey("Dots"), 1.2f);
    EXPECT_FLOAT_EQ(C::getGlobalFloatForKey("Real"), 2.25f);
    EXPECT_FLOAT_EQ(C::getGlobalFloatForKey("Integer"), 3.0f);
    EXPECT_FLOAT_EQ(C::getGlobalFloatForKey("Yes"), 1.0f);
}

TEST(ConfigurationTypedValues, BooleansFollowThePlatformReadingOfTextAndNumbers)
{
    TemporaryMainBundle host;
    const QList<std::pair<QByteArray, bool>> cases = {
        {"<string>yes</string>", true}, {"<string>TRUE</string>", true}, {"<string>007</string>", true},
        {"<string>  y</string>", true}, {"<string>2x</string>", true}, {"<string>0</string>", false},
        {"<string>000</string>", false}, {"<string>no</string>", false}, {"<string>false</string>", false},
        {"<string></string>", false}, {"<integer>0</integer>", false}, {"<integer>5</integer>", true},
        {"<real>0.5</real>", true}, {"<true/>", true}, {"<false/>", false}};
    QByteArray entries;
    for (int i = 0; i < cases.size(); ++i)
        entries += "<key>B" + QByteArray::number(i) + "</key>" + cases[i].first;
    host.writeSettings("<key>Switches</key><dict>" + entries + "</dict>");
    for (int i = 0; i < cases.size(); ++i)
        EXPECT_EQ(C::getGlobalBoolForKey(QStringLiteral("B%1").arg(i)), cases[i].second) << cases[i].first.toStdString();
}

TEST(ConfigurationTypedValues, ArraysAndDictionariesComeBackWhole)
{
    TemporaryMainBundle host;
    host.writeSettings("<key>Lists</key><dict>"
                       "<key>TextFlashButtonArray</key><array><string>Aus</string><string>An</string></array>"
                       "<key>Details</key><dict><key>a</key><integer>1</integer></dict>"
                       "</dict>");
    EXPECT_EQ(C::getConfigArrayForKey("TextFlashButtonArray"), (QVariantList{"Aus", "An"}));
    EXPECT_EQ(C::getGlobalDictionaryForKey("Details"), (QVariantMap{{"a", qint64(1)}}));
}

// --- configuration errors -------------------------------------------------------------------

TEST(ConfigurationErrors, ValuesOfTheWrongKindThrowAfterOneLineNamingKeyAndFile)
{
    TemporaryMainBundle host;
    host.writeSettings("<key>TextFlashButtonArray</key><string>Off</string>"
                       "<key>HelpOverlayDetailsDictionary</key><string>none</string>"
                       "<key>Group</key><dict><key>ManualVINButtonBorderWidth</key>"
                       "<array><string>1</string></array></dict>");
    const QString file = host.settingsPath();
    expectConfigurationError([] { C::getConfigArrayForKey("TextFlashButtonArray"); },
                             "NSInvalidArgumentException",
                             {"\"TextFlashButtonArray\"", file, "is a string, expected an array"});
    expectConfigurationError([] { C::getGlobalDictionaryForKey("HelpOverlayDetailsDictionary"); },
                             "NSInvalidArgumentException",
                             {"\"HelpOverlayDetailsDictionary\"", file, "expected a dictionary"});
    expectConfigurationError([] { C::getGlobalFloatForKey("ManualVINButtonBorderWidth"); },
                             "NSInvalidArgumentException", {"\"ManualVINButtonBorderWidth\"", file, "is an array"});
}

TEST(ConfigurationErrors, ATopLevelValueThatIsNeitherTextNorGroupEndsTheGroupSearch)
{
    TemporaryMainBundle host;
    host.writeSettings("<key>CornerRadius</key><real>4</real>"
                       "<key>Theme</key><dict><key>TextTitle</key><string>Host</string></dict>");
    // Found at the top level before the group search starts: no error.
    EXPECT_FLOAT_EQ(C::getGlobalFloatForKey("CornerRadius"), 4.0f);
    expectConfigurationError([] { C::getConfigStringForKey("TextTitle"); }, "NSInvalidArgumentException",
                             {"\"CornerRadius\"", host.settingsPath(), "is a number", "\"TextTitle\""});
}

TEST(ConfigurationErrors, AMalformedHostFileCountsAsMissingWithOneLogLine)
{
    TemporaryMainBundle host;
    const QByteArray whole = plistWithEntries("<key>TextTitle</key><string>Host title</string>");
    host.writeFile("Default_Settings.plist", whole.left(whole.lastIndexOf("</plist>")));
    LogCapture log;
    EXPECT_EQ(C::getConfigStringForKey("TextTitle"), "Scan VIN");
    EXPECT_EQ(C::getConfigStringForKey("ManualVINButtonText"), frameworkString("ManualVINButtonText"));
    ASSERT_EQ(log.lines().size(), 1) << log.lines().join('\n').toStdString();
    EXPECT_TRUE(log.lines().first().contains(host.settingsPath()));
}

TEST(ConfigurationErrors, AHostFileWhoseTopLevelIsNotADictionaryIsIgnored)
{
    TemporaryMainBundle host;
    host.writeFile("Default_Settings.plist",
                   ZQTPlatform::PropertyList::toData(QVariantList{"TextTitle", "Host title"}));
    LogCapture log;
    EXPECT_EQ(C::getConfigStringForKey("TextTitle"), "Scan VIN");
    ASSERT_EQ(log.lines().size(), 1);
    EXPECT_TRUE(log.lines().first().contains(host.settingsPath()));
}

TEST(ConfigurationFiles, AFileChangedOnDiskIsReadAgain)
{
    TemporaryMainBundle host;
    host.writeSettings("<key>TextTitle</key><string>Alpha</string>");
    EXPECT_EQ(C::getConfigStringForKey("TextTitle"), "Alpha");

    // Same size, new content: only the file's times tell the versions apart.
    host.writeSettings("<key>TextTitle</key><string>Bravo</string>");
    QFile file(host.settingsPath());
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.setFileTime(QFileInfo(file).lastModified().addSecs(5), QFileDevice::FileModificationTime));
    file.close();
    EXPECT_EQ(C::getConfigStringForKey("TextTitle"), "Bravo");

    host.writeSettings("<key>TextTitle</key><string>Charlie, longer</string>");
    EXPECT_EQ(C::getConfigStringForKey("TextTitle"), "Charlie, longer");

    QFile::remove(host.settingsPath());
    EXPECT_EQ(C::getConfigStringForKey("TextTitle"), "Scan VIN");
}

// --- fonts ------------------------------------------------------------------------------------

TEST(ConfigurationFonts, InstalledFontNamesAreReturnedAsConfigured)
{
    TemporaryMainBundle host;
    host.writeSettings("<key>ApplicationBoldStyleFontName</key><string>DejaVuSans-Bold</string>"
                       "<key>ApplicationRegularStyleFontName</key><string>LiberationSans</string>");
    EXPECT_EQ(C::getGlobalFontBold(), "DejaVuSans-Bold");
    EXPECT_EQ(C::getGlobalFontRegular(), "LiberationSans");
}

TEST(ConfigurationFonts, UnknownOrNearMissNamesFallBackToHelvetica)
{
    TemporaryMainBundle host;
    host.writeSettings("<key>ApplicationBoldStyleFontName</key><string>NoSuchFont-Bold</string>"
                       "<key>ApplicationRegularStyleFontName</key><string>DejaVuSans-Regula</string>");
    EXPECT_EQ(C::getGlobalFontBold(), "Helvetica-Bold");
    EXPECT_EQ(C::getGlobalFontRegular(), "Helvetica");

    host.writeSettings("<key>ApplicationBoldStyleFontName</key><string></string>");
    EXPECT_EQ(C::getGlobalFontBold(), "Helvetica-Bold");
}

// --- help pages -------------------------------------------------------------------------------

TEST(ConfigurationHelpOverlay, TheFrameworkPageCarriesItsTextsFramesAndSwitch)
{
    TemporaryMainBundle host;
    EXPECT_FALSE(C::getConfigHelpOverlayValueForKey("header", 0).toString().isEmpty());
    EXPECT_FALSE(C::getConfigHelpOverlayValueForKey("title", 0).toString().isEmpty());
    EXPECT_FALSE(C::getConfigHelpOverlayValueForKey("descr", 0).toString().isEmpty());
    EXPECT_EQ(C::getConfigHelpOverlayValueForKey("imageName", 0).toList(),
              (QVariantList{"help_vin_frame_1", "help_vin_frame_2", "help_vin_frame_3", "help_vin_frame_4"}));
    EXPECT_EQ(C::getConfigHelpOverlayValueForKey("autoDisplayFirstTime", 0), QVariant(true));
    EXPECT_FALSE(C::getConfigHelpOverlayValueForKey("noSuchEntry", 0).isValid());
}

TEST(ConfigurationHelpOverlay, AnIndexOutsideThePagesThrowsAfterOneLogLine)
{
    TemporaryMainBundle host;
    host.writeSettings("<key>HelpOverlay</key><dict><key>HelpOverlayDetailsDictionary</key><dict>"
                       "<key>overlays</key><array>"
                       "<dict><key>title</key><string>First</string></dict>"
                       "<dict><key>title</key><string>Second</string></dict>"
                       "</array></dict></dict>");
    EXPECT_EQ(C::getConfigHelpOverlayValueForKey("title", 1).toString(), "Second");
    EXPECT_FALSE(C::getConfigHelpOverlayValueForKey("header", 1).isValid());
    expectConfigurationError([] { C::getConfigHelpOverlayValueForKey("title", 2); }, "NSRangeException",
                             {"\"HelpOverlayDetailsDictionary\"", host.settingsPath(), "index 2"});
    expectConfigurationError([] { C::getConfigHelpOverlayValueForKey("title", -1); }, "NSRangeException",
                             {"\"HelpOverlayDetailsDictionary\"", host.settingsPath()});
}

TEST(ConfigurationHelpOverlay, APageListThatIsMissingGivesNothing)
{
    TemporaryMainBundle host;
    host.writeSettings("<key>HelpOverlayDetailsDictionary</key><dict><key>pages</key><array/></dict>");
    EXPECT_FALSE(C::getConfigHelpOverlayValueForKey("title", 0).isValid());
    EXPECT_FALSE(C::getConfigHelpOverlayValueForKey("title", 5).isValid());
}

// --- colours --------------------------------------------------------------------------------

TEST(ConfigurationColours, ColourTextIsScannedAsThePlatformScannerDoes)
{
    expectRgba(C::getColorWithHexString("#FF8800"), 0xFF, 0x88, 0x00);
    expectRgba(C::getColorWithHexString("#000000"), 0, 0, 0);
    expectRgba(C::getColorWithHexString("#FFFFFF"), 255, 255, 255);
    expectRgba(C::getColorWithHexString("#00ff00"), 0, 255, 0);
    expectRgba(C::getColorWithHexString("FF0000"), 0x0F, 0x00, 0x00);  // first digit taken for the marker
    expectRgba(C::getColorWithHexString("#F80"), 0x00, 0x0F, 0x80);    // a number, not a short form
    expectRgba(C::getColorWithHexString("#80FF8800"), 0xFF, 0x88, 0x00); // no alpha in colour text
    expectRgba(C::getColorWithHexString("#12345678"), 0x34, 0x56, 0x78);
    expectRgba(C::getColorWithHexString("#"), 0, 0, 0);
    expectRgba(C::getColorWithHexString("#zz"), 0, 0, 0);
    expectRgba(C::getColorWithHexString("#123456789"), 255, 255, 255); // overflow sets every bit
    expectRgba(C::getColorWithHexString("#0x1A2B3C"), 0x1A, 0x2B, 0x3C);
    expectRgba(C::getColorWithHexString("# 0X0000FF"), 0, 0, 255);
    expectRgba(C::getColorWithHexString("#12G456"), 0, 0, 0x12);        // stops at the first non-digit
    expectRgba(C::getColorWithHexString("(null)"), 0, 0, 0);
}

TEST(ConfigurationColours, EmptyColourTextIsARangeError)
{
    try {
        C::getColorWithHexString(QString());
        ADD_FAILURE() << "no exception";
    } catch (const ZQTPlatform::Exception &e) {
        EXPECT_EQ(e.name(), "NSRangeException");
    }
}

TEST(ConfigurationColours, ColourByKeyReadsTheConfiguredText)
{
    TemporaryMainBundle host;
    host.writeSettings("<key>Colours</key><dict><key>VINScanNavigationBarColor</key><string>#123abc</string>"
                       "<key>Clear</key><string></string></dict>");
    expectRgba(C::getGlobalColorForKey("VINScanNavigationBarColor"), 0x12, 0x3A, 0xBC);
    expectRgba(C::getGlobalColorForKey("Clear"), 0, 0, 0, 0);
    expectRgba(C::getGlobalColorForKey("NoSuchColour"), 0, 0, 0, 255);
}

// --- the shipped theme ----------------------------------------------------------------------------

TEST(ShippedTheme, EveryKeyHasAValueOfItsKind)
{
    const QStringList colours = {
        "ApplicationBackgroundColor", "ApplicationHeaderColor", "VINScanNavigationBarColor",
        "VINScanIconTitleColor", "VINScanHeaderIconColor", "NavigationBarFlashIconTintColor",
        "ManualVINButtonColor", "ManualVINButtonHighlightedColor", "ManualVINButtonBorderColor",
        "ManualVINButtonFontColor", "ManualVINButtonHighlightedFontColor", "CarouselLabelColor",
        "HelpOverlayBackgroundColor", "HelpOverlayImageBackgroundColor", "HelpOverlayVehiclePhotoLabelColor",
        "HelpOverlayMidTitleLabelColor", "HelpOverlayMidSubTitleLabelColor", "HelpOverlayTapAnywhereLabelColor",
        "AdjusterInfoPhoneNumberColor"};
    const QStringList fonts = {
        "ApplicationBoldStyleFontName", "ApplicationRegularStyleFontName", "NavigationBarTitleFontType",
        "NavigationBarFlashLabelFontType", "ScanningLabelTextFontType", "ManualVINButtonFont",
        "CarouselLabelFrontType", "HelpOverlayVehiclePhotoLabelFontType", "HelpOverlayMidTitleLabelFontType",
        "HelpOverlayMidSubTitleLabelFontType", "HelpOverlayTapAnywhereLabelFontType"};
    const QStringList texts = {
        "VinScanControllerStatusbarType", "TextTitle", "ScanningLabelText", "ManualVINButtonText",
        "ManualEntryAlertTitle", "ManualEntryAlertCancelButtonText", "ManualEntryAlertOkButtonText",
        "TextVINImageSaveTitle", "HelpOverlayTextCloseLabel", "AdjusterInfoPhoneNumber",
        "AdjusterInfoExtentionSeperator", "AdjusterInfoEmailSubject", "AdjusterInfoGenericInboxEmail"};
    const QRegularExpression colourText("^#[0-9A-F]{6}$");
    const auto value = [](const QString &key) { return C::getGlobalValueForKey(key, Bundle::frameworkBundle()); };

    for (const QString &key : colours)
        EXPECT_TRUE(colourText.match(value(key).toString()).hasMatch()) << key.toStdString();
    for (const QString &key : fonts)
        EXPECT_TRUE(ZQTPlatform::Font::fontWithName(value(key).toString(), 12.0)) << key.toStdString();
    for (const QString &key : texts)
        EXPECT_FALSE(value(key).toString().isEmpty()) << key.toStdString();
    EXPECT_EQ(value("VinScanControllerStatusbarType").toString(), "LIGHT");
    EXPECT_EQ(value("TextFlashButtonArray").toList(), (QVariantList{"Off", "On"}));
    EXPECT_EQ(value("TextCarouselPreviewArray").toList().value(0).toString(), "VIN");
    EXPECT_GT(value("ManualVINButtonCornerRadius").toDouble(), 0.0);
    EXPECT_GT(value("ManualVINButtonBorderWidth").toDouble(), 0.0);
    EXPECT_EQ(value("AdjusterInfoEmailSubjectAppendClaim").typeId(), QMetaType::Bool);
    EXPECT_EQ(value("HelpOverlayDetailsDictionary").toMap().value("overlays").toList().size(), 1);
}

TEST(ShippedTheme, TheTopLevelHoldsOnlyGroupsAndNoKeyIsInTwoGroups)
{
    const QVariantMap top = ZQTPlatform::PropertyList::readFile(
        Bundle::frameworkBundle().pathForResource("ZQTConfig", "plist")).toMap();
    ASSERT_FALSE(top.isEmpty());
    QSet<QString> keys;
    for (auto group = top.cbegin(); group != top.cend(); ++group) {
        ASSERT_EQ(group.value().typeId(), QMetaType::QVariantMap) << group.key().toStdString();
        for (const QString &key : group.value().toMap().keys()) {
            EXPECT_FALSE(keys.contains(key)) << key.toStdString();
            keys.insert(key);
        }
    }
}
