// Configuration lookup: the host file before the framework file, groups one level deep,
// neutral values, the platform's number and boolean readings of text, font fallbacks, help
// pages, and configuration errors that end the program after one log line.
#include "Model/ZQTVINScanComponentConstants.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/Exception.h"
#include "platform/ui/Font.h"
#include "platform/foundation/PropertyList.h"
#include "support/LogCapture.h"
#include "support/TemporaryMainBundle.h"

#include <gtest/gtest.h>

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

// Writes the values as the keys K0, K1, ... of a group of a host file and reads each back.
template <class T, class Read>
void expectGroupValues(const QList<std::pair<QByteArray, T>> &cases, Read read)
{
    TemporaryMainBundle host;
    QByteArray entries;
    for (int i = 0; i < cases.size(); ++i)
        entries += "<key>K" + QByteArray::number(i) + "</key>" + cases[i].first;
    host.writeSettings("<key>Values</key><dict>" + entries + "</dict>");
    for (int i = 0; i < cases.size(); ++i)
        EXPECT_EQ(read(QStringLiteral("K%1").arg(i)), cases[i].second) << cases[i].first.toStdString();
}

} // namespace

// Groups are searched one level deep, after the top level.
TEST(ConfigurationLookupOrder, HostValuesWinEvenWhenEmptyOtherKeysComeFromTheFrameworkMissingOnesAreNeutralChangedFilesAreReadAgainAndTheBundleChoosesTheFile)
{
    TemporaryMainBundle host;
    host.writeSettings("<key>TextTitle</key><string>Host title</string>"
                       "<key>ScanningLabelText</key><string></string>"
                       "<key>Label</key><string>top</string>"
                       "<key>Colours</key><dict><key>VINScanNavigationBarColor</key><string>#123abc</string>"
                       "  <key>Label</key><string>group</string>"
                       "  <key>Inner</key><dict><key>TwoDeep</key><string>hidden</string></dict></dict>");
    EXPECT_EQ(C::getConfigStringForKey("TextTitle"), "Host title");
    EXPECT_EQ(C::getConfigStringForKey("Label"), "top");
    EXPECT_EQ(C::getConfigStringForKey("TwoDeep"), "(null)");
    EXPECT_FALSE(C::getGlobalValueForKey("TwoDeep", Bundle::mainBundle()).isValid());
    EXPECT_EQ(C::getConfigStringForKey("ScanningLabelText"), "");
    EXPECT_TRUE(C::getConfigurableValueForKey("ScanningLabelText").isValid());
    EXPECT_EQ(C::getGlobalColorForKey("VINScanNavigationBarColor").rgba(), qRgb(0x12, 0x3A, 0xBC));
    EXPECT_FALSE(frameworkString("ManualVINButtonText").isEmpty());
    EXPECT_EQ(C::getConfigStringForKey("ManualVINButtonText"), frameworkString("ManualVINButtonText"));

    // Keys in neither file give neutral values.
    const QString key = "NoSuchKeyAnywhere";
    EXPECT_FALSE(C::getConfigurableValueForKey(key).isValid());
    EXPECT_EQ(C::getConfigStringForKey(key), "(null)");
    EXPECT_EQ(C::getGlobalFloatForKey(key), 0.0f);
    EXPECT_FALSE(C::getGlobalBoolForKey(key));
    EXPECT_TRUE(C::getConfigArrayForKey(key).isEmpty());
    EXPECT_TRUE(C::getGlobalDictionaryForKey(key).isEmpty());

    // A file changed on disk is read again.
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

    // A host bundle is read through Default_Settings.plist only, never through ZQTConfig.plist.
    QFile::remove(host.settingsPath());
    host.writeFile("ZQTConfig.plist", plistWithEntries("<key>TextTitle</key><string>Wrong file</string>"));
    EXPECT_FALSE(C::getGlobalValueForKey("TextTitle", Bundle::mainBundle()).isValid());
    EXPECT_EQ(C::getConfigStringForKey("TextTitle"), "Scan VIN");

    // When the main bundle is the framework's own bundle, both searches read ZQTConfig.plist.
    Bundle::setMainBundlePath(Bundle::frameworkBundle().bundlePath());
    EXPECT_EQ(C::getGlobalValueForKey("TextTitle", Bundle::mainBundle()).toString(), "Scan VIN");
}

TEST(ConfigurationTypedValues, TextFloatAndBooleanReadingsOfEveryKindOfValue)
{
    expectGroupValues<QString>({{"<integer>7</integer>", "7"}, {"<real>12.5</real>", "12.5"}, {"<real>2</real>", "2"},
                                {"<true/>", "1"},
                                {"<array><string>Off</string><string>On air</string></array>",
                                 "(\n    Off,\n    \"On air\"\n)"},
                                {"<dict><key>title</key><string>VIN</string>"
                                 "<key>frames</key><array><integer>1</integer></array></dict>",
                                 "{\n    frames = (\n        1\n    );\n    title = VIN;\n}"}},
                               C::getConfigStringForKey);
    expectGroupValues<QVariantList>({{"<array><string>Off</string><string>On</string></array>", {"Off", "On"}}},
                                    C::getConfigArrayForKey);
    // Floats take the leading number of text.
    expectGroupValues<float>({{"<string>  12.5abc</string>", 12.5f}, {"<string>abc</string>", 0.0f},
                              {"<string>-3e2x</string>", -300.0f}, {"<string>1.2.3</string>", 1.2f},
                              {"<integer>3</integer>", 3.0f}, {"<true/>", 1.0f}},
                             C::getGlobalFloatForKey);
    // Booleans follow the platform's reading of text and numbers.
    expectGroupValues<bool>({{"<string>  y</string>", true}, {"<string>TRUE</string>", true},
                             {"<string>007</string>", true}, {"<string>000</string>", false},
                             {"<string>no</string>", false}, {"<string></string>", false},
                             {"<integer>0</integer>", false}, {"<real>0.5</real>", true}, {"<false/>", false}},
                            C::getGlobalBoolForKey);
}

TEST(ConfigurationErrors, WrongKindsAndHelpPagesOutsideTheListThrowAfterOneLineNamingKeyAndFileAndDamagedFilesCountAsMissing)
{
    TemporaryMainBundle host;
    host.writeSettings("<key>TextFlashButtonArray</key><string>Off</string>"
                       "<key>HelpOverlayDetailsDictionary</key><string>none</string>"
                       "<key>Group</key><dict><key>ManualVINButtonBorderWidth</key>"
                       "<array><string>1</string></array></dict>");
    const QString file = host.settingsPath();
    expectConfigurationError([] { C::getConfigArrayForKey("TextFlashButtonArray"); }, "NSInvalidArgumentException",
                             {"\"TextFlashButtonArray\"", file, "is a string, expected an array"});
    expectConfigurationError([] { C::getGlobalDictionaryForKey("HelpOverlayDetailsDictionary"); },
                             "NSInvalidArgumentException",
                             {"\"HelpOverlayDetailsDictionary\"", file, "expected a dictionary"});
    expectConfigurationError([] { C::getGlobalFloatForKey("ManualVINButtonBorderWidth"); },
                             "NSInvalidArgumentException", {"\"ManualVINButtonBorderWidth\"", file, "is an array"});

    // A top-level value that is neither text nor a group ends the group search.
    host.writeSettings("<key>CornerRadius</key><real>4</real>"
                       "<key>Theme</key><dict><key>TextTitle</key><string>Host</string></dict>");
    EXPECT_FLOAT_EQ(C::getGlobalFloatForKey("CornerRadius"), 4.0f) << "found before the group search starts";
    expectConfigurationError([] { C::getConfigStringForKey("TextTitle"); }, "NSInvalidArgumentException",
                             {"\"CornerRadius\"", host.settingsPath(), "is a number", "\"TextTitle\""});

    // A malformed or non-dictionary host file counts as missing, with one log line.
    const QByteArray whole = plistWithEntries("<key>TextTitle</key><string>Host title</string>");
    for (const QByteArray &bytes : {whole.left(whole.lastIndexOf("</plist>")),
                                    ZQTPlatform::PropertyList::toData(QVariantList{"TextTitle", "Host title"})}) {
        host.writeFile("Default_Settings.plist", bytes);
        LogCapture log;
        EXPECT_EQ(C::getConfigStringForKey("TextTitle"), "Scan VIN");
        EXPECT_EQ(C::getConfigStringForKey("ManualVINButtonText"), frameworkString("ManualVINButtonText"));
        ASSERT_EQ(log.lines().size(), 1) << log.lines().join('\n').toStdString();
        EXPECT_TRUE(log.lines().first().contains(host.settingsPath()));
    }

    // A help page index outside the pages throws after one log line; no page list gives nothing.
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

    host.writeSettings("<key>HelpOverlayDetailsDictionary</key><dict><key>pages</key><array/></dict>");
    EXPECT_FALSE(C::getConfigHelpOverlayValueForKey("title", 5).isValid());
}

TEST(ConfigurationFonts, InstalledNamesAsConfiguredUnknownNearMissOrEmptyOnesFallBackToHelvetica)
{
    TemporaryMainBundle host;
    for (const auto &[bold, regular, expectedBold, expectedRegular] : QList<std::tuple<QByteArray, QByteArray, QString, QString>>{
             {"DejaVuSans-Bold", "LiberationSans", "DejaVuSans-Bold", "LiberationSans"},
             {"NoSuchFont-Bold", "DejaVuSans-Regula", "Helvetica-Bold", "Helvetica"},
             {"", "", "Helvetica-Bold", "Helvetica"}}) {
        host.writeSettings("<key>ApplicationBoldStyleFontName</key><string>" + bold + "</string>"
                           "<key>ApplicationRegularStyleFontName</key><string>" + regular + "</string>");
        EXPECT_EQ(C::getGlobalFontBold(), expectedBold);
        EXPECT_EQ(C::getGlobalFontRegular(), expectedRegular);
    }
}

TEST(ShippedTheme, GroupsOnlyUniqueKeysAndValuesOfTheKindTheirNamesSay)
{
    const QVariantMap top = ZQTPlatform::PropertyList::readFile(
        Bundle::frameworkBundle().pathForResource("ZQTConfig", "plist")).toMap();
    ASSERT_FALSE(top.isEmpty());
    const QRegularExpression colourText("^#[0-9A-F]{6}$");
    const QRegularExpression fontKey("(FontName|FontType|FrontType|Font)$");
    // The office number and the copy address are the host's to give: shipped empty on purpose.
    const QSet<QString> hostOnly{"AdjusterInfoPhoneNumber", "AdjusterInfoGenericInboxEmail"};
    QSet<QString> keys;
    for (auto group = top.cbegin(); group != top.cend(); ++group) {
        ASSERT_EQ(group.value().typeId(), QMetaType::QVariantMap) << group.key().toStdString();
        const QVariantMap values = group.value().toMap();
        for (auto entry = values.cbegin(); entry != values.cend(); ++entry) {
            const QString key = entry.key(), text = entry.value().toString();
            EXPECT_FALSE(keys.contains(key)) << key.toStdString() << " is in two groups";
            keys.insert(key);
            if (entry.value().typeId() == QMetaType::QString) {
                EXPECT_EQ(text.isEmpty(), hostOnly.contains(key)) << key.toStdString();
            }
            if (key.endsWith("Color")) {
                EXPECT_TRUE(colourText.match(text).hasMatch()) << key.toStdString();
            }
            if (fontKey.match(key).hasMatch()) {
                EXPECT_TRUE(ZQTPlatform::Font::fontWithName(text, 12.0)) << key.toStdString();
            }
        }
    }
}
