// The adjuster contact panel: who handles the claim, laid over the whole key window below the
// host's bars, with call and e-mail buttons that hand "tel:" and "mailto:" requests to the
// system. Its look comes from the interface file "ZQTVINScanAdjusterInfo" of the component's
// bundle; rows with nothing to show collapse. At most one panel is up at a time.
#pragma once

#include "ZQTGlobal.h"
#include "Model/ZQTVINScanAdjuster.h"
#include "platform/ui/LayoutConstraint.h"

#include <QLabel>
#include <QPointer>
#include <QRectF>
#include <QWidget>
#include <optional>

namespace ZQTPlatform {
class ViewController;
} // namespace ZQTPlatform

class ZQT_EXPORT ZQTVINScanAdjusterInfo : public QWidget
{
    Q_OBJECT

public:
    // The view tag that marks the panel in the window.
    static constexpr int viewTag = 1231233;

    // Made by the form loader for the interface file's root; use initWithFrame.
    explicit ZQTVINScanAdjusterInfo(QWidget *parent = nullptr);

    // Shows a panel for the controller over the key window (or, when the host shows the screen
    // in a window of its own, over that window, else over any visible window), unless one is up
    // already; logs why when no window is on screen. Any thread: returns at once, the panel is
    // made later on the GUI thread.
    static void showInViewController(ZQTPlatform::ViewController *controller,
                                     const std::optional<ZQTVINScanAdjuster> &adjusterInfo);
    // A filled panel from the interface file (GUI thread); the caller owns it. nullptr when the
    // file yields no panel.
    static ZQTVINScanAdjusterInfo *initWithFrame(const QRectF &frame, ZQTPlatform::ViewController *mainView,
                                                 const std::optional<ZQTVINScanAdjuster> &adjusterInfo);
    // The panel shown in the key window or another top-level window, or nullptr (GUI thread).
    static ZQTVINScanAdjusterInfo *shownPanel();

    ZQTPlatform::ViewController *controller() const { return m_controller; }
    std::optional<ZQTVINScanAdjuster> adjusterInfo() const { return m_adjusterInfo; }
    void setAdjusterInfo(const std::optional<ZQTVINScanAdjuster> &adjusterInfo) { m_adjusterInfo = adjusterInfo; }

    // Parts of the interface file, found by object name.
    ZQTPlatform::LayoutConstraint *constraintAdjusterTop() const { return m_constraintAdjusterTop; }
    ZQTPlatform::LayoutConstraint *constraintAdjusterClaimNumberHeight() const { return m_constraintAdjusterClaimNumberHeight; }
    ZQTPlatform::LayoutConstraint *constraintAdjusterNameHeight() const { return m_constraintAdjusterNameHeight; }
    ZQTPlatform::LayoutConstraint *constraintAdjusterPhoneHeight() const { return m_constraintAdjusterPhoneHeight; }
    ZQTPlatform::LayoutConstraint *constraintAdjusterEmailHeight() const { return m_constraintAdjusterEmailHeight; }
    QWidget *viewAdjusterInfo() const { return m_viewAdjusterInfo; }
    QWidget *viewBG() const { return m_viewBG; }
    QLabel *labelClaim() const { return m_labelClaim; }
    QLabel *labelUserType() const { return m_labelUserType; }
    QLabel *lblClaimNumber() const { return m_lblClaimNumber; }
    QLabel *lblOffice() const { return m_lblOffice; }
    QLabel *lblEmail() const { return m_lblEmail; }
    QLabel *labelUserName() const { return m_labelUserName; }
    QLabel *labelofficeNumber() const { return m_labelofficeNumber; }
    QLabel *labelEmail() const { return m_labelEmail; }
    QLabel *imagePhone() const { return m_imagePhone; }
    QLabel *lblContactMsg() const { return m_lblContactMsg; }

public Q_SLOTS:
    // The close control. Returns at once; the panel is taken out of the window later on the GUI
    // thread.
    void dismissAdjusterInfo();
    // The call button (GUI thread): dials the shown number up to the configured extension
    // separator, digits only. The panel stays up.
    void callNumber();
    // The e-mail button (GUI thread): closes the panel and opens a new e-mail to the shown address,
    // with the configured subject and copy address, when the system can open the request.
    void sendEmail();

private:
    // Finds the parts by object name; false when the root is not a complete panel.
    bool findParts();
    void fill();

    QPointer<ZQTPlatform::ViewController> m_controller;
    QPointer<ZQTPlatform::LayoutConstraint> m_constraintAdjusterTop;
    QPointer<ZQTPlatform::LayoutConstraint> m_constraintAdjusterClaimNumberHeight;
    QPointer<ZQTPlatform::LayoutConstraint> m_constraintAdjusterNameHeight;
    QPointer<ZQTPlatform::LayoutConstraint> m_constraintAdjusterPhoneHeight;
    QPointer<ZQTPlatform::LayoutConstraint> m_constraintAdjusterEmailHeight;
    QPointer<QWidget> m_viewAdjusterInfo;
    QPointer<QWidget> m_viewBG;
    QPointer<QLabel> m_labelClaim;
    QPointer<QLabel> m_labelUserType;
    QPointer<QLabel> m_lblClaimNumber;
    QPointer<QLabel> m_lblOffice;
    QPointer<QLabel> m_lblEmail;
    QPointer<QLabel> m_labelUserName;
    QPointer<QLabel> m_labelofficeNumber;
    QPointer<QLabel> m_labelEmail;
    QPointer<QLabel> m_imagePhone;
    QPointer<QLabel> m_imageEmail;
    QPointer<QLabel> m_lblContactMsg;
    std::optional<ZQTVINScanAdjuster> m_adjusterInfo;
};
