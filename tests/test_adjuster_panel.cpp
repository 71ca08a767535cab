// The adjuster contact panel: one panel at a time over the key window, trimmed texts and
// collapsed rows, the "tel:" and "mailto:" requests it makes, the capture screen's menu, the
// office number's layout, and the configuration keys its scene's labels name. (The one-call
// alert, which nothing in the component or the apps calls, has no test of its own.)
#include "UI/Views/ZQTVINScanAdjusterInfo.h"
#include "ZQTVINScanComponent.h"
#include "platform/capture/CaptureDevice.h"
#include "platform/foundation/Bundle.h"
#include "platform/ui/LayoutConstraint.h"
#include "platform/ui/Storyboard.h"
#include "platform/ui/View.h"
#include "platform/foundation/URLOpening.h"
#include "support/LogCapture.h"
#include "support/MarkupProbe.h"
#include "support/ScreenTestSupport.h"
#include "support/TemporaryMainBundle.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QUrl>

#include <memory>

using namespace ZQTPlatform;
using Panel = ZQTVINScanAdjusterInfo;

namespace {

// Takes the "tel:" and "mailto:" requests that would go to the phone and mail apps.
class UrlRecorder : public QObject
{
    Q_OBJECT

public:
    UrlRecorder()
    {
        QDesktopServices::setUrlHandler(QStringLiteral("tel"), this, "open");
        QDesktopServices::setUrlHandler(QStringLiteral("mailto"), this, "open");
    }
    ~UrlRecorder() override
    {
        QDesktopServices::unsetUrlHandler(QStringLiteral("tel"));
        QDesktopServices::unsetUrlHandler(QStringLiteral("mailto"));
    }
    QStringList requests;

public Q_SLOTS:
    void open(const QUrl &url) { requests << QString::fromLatin1(url.toEncoded()); }
};

ZQTVINScanAdjuster dana()
{
    ZQTVINScanAdjuster adjuster;
    adjuster.setCustClmRefID(QStringLiteral("  C-123 "));
    adjuster.setUserType(QStringLiteral("\tField adjuster"));
    adjuster.setRecipientName(QStringLiteral("Dana Reyes\n"));
    adjuster.setRecipientEmailAddress(QStringLiteral(" dana.reyes@example.com"));
    adjuster.setRecipientPhone(QStringLiteral("555-123-4567 x 89 "));
    return adjuster;
}

// Host settings for the panel's keys (one group, as the host's file keeps them); the entries
// replace the component's values.
QByteArray adjusterSettings(const QByteArray &separator, const QByteArray &subject, bool appendClaim,
                            const QByteArray &copyAddress)
{
    return "<key>AdjusterInfo</key><dict>"
           "<key>AdjusterInfoExtentionSeperator</key><string>" + separator + "</string>"
           "<key>AdjusterInfoEmailSubject</key><string>" + subject + "</string>"
           "<key>AdjusterInfoEmailSubjectAppendClaim</key>" + (appendClaim ? "<true/>" : "<false/>")
           + "<key>AdjusterInfoGenericInboxEmail</key><string>" + copyAddress + "</string>"
           "<key>AdjusterInfoPhoneNumber</key><string>5551234567</string></dict>";
}

class AdjusterPanel : public ::testing::Test
{
protected:
    void SetUp() override
    {
        phone.navigation->pushViewController(screen, false);
        phone.window.makeKeyAndVisible();
    }
    void TearDown() override { CaptureDevice::removeStandIns(); }

    // Asks for the panel and waits for the main queue to show it.
    Panel *show(const std::optional<ZQTVINScanAdjuster> &adjuster)
    {
        Panel::showInViewController(screen, adjuster);
        // The callers check the panel they get.
        (void)QTest::qWaitFor([] { return Panel::shownPanel() != nullptr; }, 2000);
        return Panel::shownPanel();
    }
    void click(Panel *panel, const char *button)
    {
        auto *widget = panel->findChild<QPushButton *>(button);
        ASSERT_NE(widget, nullptr) << button;
        QTest::mouseClick(widget, Qt::LeftButton);
    }
    // Clicks "e-mail" on a panel for the adjuster under the host settings; the requests it made,
    // joined. E-mail closes the panel in every case.
    std::string emailRequests(const QByteArray &settings, const ZQTVINScanAdjuster &adjuster)
    {
        host.writeSettings(settings);
        urls.requests.clear();
        Panel *panel = show(adjuster);
        if (!panel)
            return "(no panel)";
        click(panel, "emailButton");
        EXPECT_TRUE(QTest::qWaitFor([] { return Panel::shownPanel() == nullptr; }, 2000)) << "e-mail closes the panel";
        return urls.requests.join(' ').toStdString();
    }

    TemporaryMainBundle host;
    UrlRecorder urls;
    PhoneHost phone;
    ViewController *screen = new ViewController;
};

} // namespace

TEST_F(AdjusterPanel, OnePanelBelowTheBarsDialsTheDigitsBeforeTheExtensionTrimsBlanksCollapsesEmptyRowsAndShowsPlainText)
{
    host.writeSettings(adjusterSettings("x", "", false, ""));
    Panel::showInViewController(screen, dana());
    EXPECT_EQ(Panel::shownPanel(), nullptr) << "the panel is made later on the main queue";
    Panel *panel = show(dana());
    ASSERT_NE(panel, nullptr);
    EXPECT_EQ(phone.window.findChildren<Panel *>().size(), 1) << "the second request changes nothing";
    EXPECT_EQ(panel->parentWidget(), &phone.window);
    EXPECT_EQ(panel->geometry(), phone.window.rect());
    EXPECT_EQ(panel->constraintAdjusterTop()->constant(), 44.0 + 44.0) << "status bar and navigation bar";
    EXPECT_EQ(panel->viewAdjusterInfo()->mapTo(&phone.window, QPoint()).y(), 88);

    click(panel, "callButton");
    EXPECT_EQ(urls.requests, QStringList{"tel:5551234567"});
    QTest::qWait(50);
    EXPECT_EQ(Panel::shownPanel(), panel) << "the panel stays up while calling";
    // Without a separator the extension's digits are dialled too.
    host.writeSettings(adjusterSettings("", "", false, ""));
    click(panel, "callButton");
    EXPECT_EQ(urls.requests.value(1), "tel:555123456789");

    click(panel, "closeButton");
    EXPECT_TRUE(QTest::qWaitFor([] { return Panel::shownPanel() == nullptr; }, 2000));
    EXPECT_TRUE(phone.window.findChildren<Panel *>().isEmpty());
    EXPECT_EQ(urls.requests.size(), 2) << "closing asks for nothing";

    // Trimmed texts, collapsed rows, plain text.
    host.writeSettings(adjusterSettings("x", "", false, "")
                       + "<key>ApplicationHeaderColor</key><string>#204060</string>"
                         "<key>ApplicationBoldStyleFontName</key><string>DejaVuSans-Bold</string>");
    panel = show(dana());
    ASSERT_NE(panel, nullptr);
    EXPECT_EQ(panel->labelClaim()->text(), "C-123");
    // The scene's labels take their colour and font from the keys it names, at the scene's size.
    EXPECT_EQ(textColor(panel->labelClaim()), QColor(0x20, 0x40, 0x60));
    EXPECT_EQ(panel->labelClaim()->font().family(), "DejaVu Sans");
    EXPECT_TRUE(panel->labelClaim()->font().bold());
    EXPECT_EQ(panel->labelClaim()->font().pixelSize(), 16);
    EXPECT_FALSE(panel->labelClaim()->property("ColorConfigKey").isValid()) << "the keys are write-only";
    EXPECT_EQ(panel->labelUserType()->text(), "Field adjuster");
    EXPECT_EQ(panel->labelUserName()->text(), "Dana Reyes\n") << "line breaks are kept";
    EXPECT_EQ(panel->labelEmail()->text(), "dana.reyes@example.com");
    EXPECT_EQ(panel->labelofficeNumber()->text(), "555-123-4567 x 89") << "the contact's number is not reformatted";
    for (auto *row : {panel->constraintAdjusterClaimNumberHeight(), panel->constraintAdjusterNameHeight(),
                      panel->constraintAdjusterPhoneHeight(), panel->constraintAdjusterEmailHeight()})
        EXPECT_GT(row->firstItem()->height(), 0) << qPrintable(row->objectName());
    delete panel;

    // Nothing but blanks: the configured office number, formatted; only the phone and role rows stay.
    ZQTVINScanAdjuster blank;
    blank.setCustClmRefID(QStringLiteral(" \t "));
    blank.setUserType(QStringLiteral("Adjuster"));
    blank.setRecipientPhone(QStringLiteral("  "));
    panel = show(blank);
    ASSERT_NE(panel, nullptr);
    EXPECT_EQ(panel->labelofficeNumber()->text(), "(555)123-4567");
    EXPECT_GT(panel->constraintAdjusterPhoneHeight()->firstItem()->height(), 0);
    EXPECT_TRUE(panel->labelUserType()->isVisibleTo(panel));
    EXPECT_GT(panel->labelUserType()->height(), 0) << "the role row never collapses";
    for (auto *row : {panel->constraintAdjusterClaimNumberHeight(), panel->constraintAdjusterNameHeight(),
                      panel->constraintAdjusterEmailHeight()}) {
        EXPECT_EQ(row->constant(), 0.0) << qPrintable(row->objectName());
        EXPECT_EQ(row->firstItem()->height(), 0) << qPrintable(row->objectName());
    }
    delete panel;

    // No record at all still shows the office number.
    panel = show(std::nullopt);
    ASSERT_NE(panel, nullptr);
    EXPECT_EQ(panel->labelofficeNumber()->text(), "(555)123-4567");
    delete panel;

    // Record fields are shown as plain text.
    ZQTVINScanAdjuster marked;
    using A = ZQTVINScanAdjuster;
    for (const auto setter : {&A::setCustClmRefID, &A::setUserType, &A::setRecipientName, &A::setRecipientEmailAddress,
                              &A::setRecipientPhone})
        (marked.*setter)(greenMarkup());
    panel = show(marked);
    ASSERT_NE(panel, nullptr);
    for (QLabel *label : {panel->labelClaim(), panel->labelUserType(), panel->labelUserName(), panel->labelEmail(),
                          panel->labelofficeNumber()}) {
        SCOPED_TRACE(label->objectName().toStdString());
        EXPECT_EQ(label->text(), greenMarkup());
        EXPECT_FALSE(drawsGreen(label));
    }
}

TEST_F(AdjusterPanel, EmailRequestFollowsTheConfiguredSubjectAndCopyAndIsNotOpenedWhenItWouldGainRecipients)
{
    const struct { QByteArray subject; bool appendClaim; QByteArray copy; QString request; } cases[] = {
        {"Claim %@", true, "claims@example.com",
         "mailto:dana.reyes@example.com?subject=Claim%20C-123&cc=claims%40example.com"},
        // The subject is a format: "%%" is one percent sign; unformatted, it stays as written.
        {"Claim %@ 100%% covered", true, "", "mailto:dana.reyes@example.com?subject=Claim%20C-123%20100%25%20covered"},
        {"Claim %@ 100%% covered", false, "", "mailto:dana.reyes@example.com?subject=Claim%20%20100%25%25%20covered"},
        {"", true, "", "mailto:dana.reyes@example.com"},
        {"", false, "claims@example.com", "mailto:dana.reyes@example.com?cc=claims%40example.com"},
        // Exactly the host-allowed characters stay: ";" and "=" are kept, "/", "?", "#", "@" and
        // everything beyond ASCII are encoded as UTF-8.
        {"D\xC3\xA9p\xC3\xB4t ; co/1?#=@", false, "a+b@x.org",
         "mailto:dana.reyes@example.com?subject=D%C3%A9p%C3%B4t%20;%20co%2F1%3F%23=%40&cc=a+b%40x.org"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(emailRequests(adjusterSettings("x", c.subject, c.appendClaim, c.copy), dana()), c.request.toStdString());

    // An address that makes no URL is dropped without a word; the panel closes all the same.
    ZQTVINScanAdjuster broken = dana();
    broken.setRecipientEmailAddress(QStringLiteral("dana reyes@example.com"));
    EXPECT_EQ(emailRequests(adjusterSettings("x", "", false, ""), broken), "");
    EXPECT_FALSE(canOpenURL(QStringLiteral("mailto:a@b.org?subject=50%")));
    EXPECT_FALSE(canOpenURL(QStringLiteral("dana@example.com")));

    // One that would gain recipients or headers is not opened, and says so.
    // (One header value and one recipient: every header and every address pass one check each.)
    const struct { const char *claim, *address; } hostile[] = {
        {"x&bcc=someone@y&body=Hello", "dana.reyes@example.com"},
        {"C-123", "a@x.org?bcc=b@y.org"},
    };
    for (const auto &c : hostile) {
        SCOPED_TRACE(std::string(c.claim) + " " + c.address);
        ZQTVINScanAdjuster adjuster = dana();
        adjuster.setCustClmRefID(QString::fromLatin1(c.claim));
        adjuster.setRecipientEmailAddress(QString::fromLatin1(c.address));
        LogCapture log;
        EXPECT_EQ(emailRequests(adjusterSettings("x", "Claim %@", true, ""), adjuster), "");
        EXPECT_EQ(log.lines().filter("Not opening the e-mail request").size(), 1);
    }
}

TEST_F(AdjusterPanel, MenuButtonReportsAndShowsThePanelOverTheCaptureScreen)
{
    ASSERT_TRUE(addFlatCamera(QColor(40, 160, 200)));
    ZQTVINScanAdjuster adjuster = dana();
    adjuster.setRecipientName(QStringLiteral("Dana Reyes"));
    adjuster.setRecipientPhone(QString());
    auto *capture = ZQTVINCaptureVC::createVinScannerViewWithDelegate(nullptr, adjuster, QStringLiteral("CLM-7"));
    ASSERT_NE(capture, nullptr);
    phone.navigation->pushViewController(capture, false);
    ASSERT_TRUE(QTest::qWaitFor([&] { return capture->isVisible(); }, 3000));
    QTest::qWait(300);

    AnalyticsRecorder analytics;
    auto *menu = capture->findChild<QAbstractButton *>(QStringLiteral("menuButton"));
    ASSERT_NE(menu, nullptr) << "the bar shows the menu when the screen has an adjuster";
    QTest::mouseClick(menu, Qt::LeftButton);
    ASSERT_EQ(analytics.events.size(), 1);
    EXPECT_EQ(analytics.events[0], (QVariantMap{{"eventType", "vinScan"}, {"eventName", "hamburgerClick"}, {"content", ""}}));

    ASSERT_TRUE(QTest::qWaitFor([] { return Panel::shownPanel() != nullptr; }, 2000));
    Panel *panel = Panel::shownPanel();
    EXPECT_EQ(panel->controller(), capture);
    EXPECT_EQ(panel->labelUserName()->text(), "Dana Reyes");
    // The component ships no office number: nothing fictional to dial.
    EXPECT_TRUE(panel->labelofficeNumber()->text().isEmpty());
    EXPECT_EQ(panel->constraintAdjusterPhoneHeight()->firstItem()->height(), 0) << "the phone row collapses";
}


// A host that embeds the screen in a window of its own (not the platform's key window) still
// gets the panel, over that window; with nothing on screen the panel says in the log why it
// cannot show.
TEST(AdjusterPanelHost, ShowsOverTheHostsOwnWindowAndLogsWhenNoWindowIsOnScreen)
{
    LogCapture capture;
    ZQTVINScanAdjuster adjuster;
    adjuster.setRecipientName(QStringLiteral("Dana Reyes"));
    QWidget hostWindow;
    hostWindow.resize(375, 812);
    auto *screen = new ViewController(&hostWindow);
    screen->setGeometry(hostWindow.rect());

    Panel::showInViewController(screen, adjuster);
    QTest::qWait(100);
    EXPECT_EQ(Panel::shownPanel(), nullptr);
    EXPECT_EQ(capture.lines().filter("The adjuster panel cannot be shown").size(), 1);

    hostWindow.show();
    Panel::showInViewController(screen, adjuster);
    ASSERT_TRUE(QTest::qWaitFor([] { return Panel::shownPanel() != nullptr; }, 2000));
    EXPECT_EQ(Panel::shownPanel()->window(), &hostWindow);
    EXPECT_EQ(Panel::shownPanel()->geometry(), hostWindow.rect());
}

// A scene's label that names a text key shows the key's configured text (the host's value, else the
// component's); a key the configuration lacks shows "(null)", as every missing text does; an empty
// key leaves the scene's own text. (Colour and font keys: the panel's labels above.)
TEST(LabelAttributes, SceneLabelsShowTheTextOfTheKeyTheyName)
{
    TemporaryMainBundle host;
    host.writeSettings("<key>ManualEntryAlertTitle</key><string>Type the VIN</string>");
    const auto label = [](const char *name, const char *key) {
        return QByteArray("<widget class=\"QLabel\" name=\"") + name
            + "\"><property name=\"text\"><string>scene</string></property>"
              "<property name=\"TextConfigKey\" stdset=\"0\"><string>" + key + "</string></property></widget>";
    };
    host.writeFile("Labels.ui", "<ui version=\"4.0\"><widget class=\"QWidget\" name=\"root\">"
                                    + label("hosts", "ManualEntryAlertTitle")
                                    + label("components", "ManualEntryAlertOkButtonText")
                                    + label("missing", "NoSuchLabelText") + label("unnamed", "")
                                    + "</widget></ui>");
    const std::unique_ptr<QWidget> scene(Storyboard::loadNibNamed("Labels", Bundle::mainBundle()));
    ASSERT_NE(scene, nullptr);
    const auto text = [&scene](const char *name) { return scene->findChild<QLabel *>(name)->text(); };
    EXPECT_EQ(text("hosts"), "Type the VIN");
    EXPECT_EQ(text("components"), "OK");
    EXPECT_EQ(text("missing"), "(null)");
    EXPECT_EQ(text("unnamed"), "scene");
}

// The office number's display layout.
TEST(PhoneNumberLayout, FormatsByDigitCountAndKeepsOtherTextsAsTheyAre)
{
    const struct { QString in, out; } cases[] = {
        {"5551234", "555-1234"},
        {"5551234567", "(555)123-4567"},
        {"15551234567", "1 (555)123-4567"},
        {"445551234567", "+44 (555)123-4567"},
        {"(555) 123-4567", "(555)123-4567"},
        {"555-123.45", "555-123.45"},       // 8 digits: unchanged, separators included
        {"ext.", "ext."},
    };
    for (const auto &c : cases)
        EXPECT_EQ(ZQTVINScanComponentConstants::getFormatedPhoneNumber(c.in), c.out) << qPrintable(c.in);
}

#include "test_adjuster_panel.moc"
