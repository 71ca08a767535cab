// The help card of the capture screen: a passive holder of the header, the animated picture, the
// title, the description and the tap-to-close hint, made from the scene "ZQTVINCaptureOverlayVC"
// (or "ZQTVINCaptureOverlayVCLandscape") of the storyboard "ZQTVINScanComponent". The capture
// screen fills and styles it. Laid over another view, it keeps to that view's bounds.
#pragma once

#include "ZQTGlobal.h"
#include "platform/ui/ViewController.h"

#include <QPointer>

class QLabel;

namespace ZQTPlatform {
class ImageView;
}

class ZQT_EXPORT ZQTVINCaptureOverlayVC : public ZQTPlatform::ViewController
{
    Q_OBJECT

public:
    // Made by the storyboard.
    ZQTVINCaptureOverlayVC();
    ~ZQTVINCaptureOverlayVC() override;

    // Outlets of the scene (nullptr when the scene lacks one).
    QLabel *headerLbl() const;
    ZQTPlatform::ImageView *imageView() const;
    QLabel *titleLbl() const;
    QLabel *descrLbl() const;
    QLabel *lblTapAnyWhere() const;

    // Finds the outlets by object name.
    void awakeFromNib() override;
    // Hides the application's status bar.
    void viewDidLoad() override;
    void didReceiveMemoryWarning() override;
    bool prefersStatusBarHidden() const override;     // true
    int preferredStatusBarStyle() const override;     // light content

private:
    QPointer<QLabel> m_headerLbl;
    QPointer<ZQTPlatform::ImageView> m_imageView;
    QPointer<QLabel> m_titleLbl;
    QPointer<QLabel> m_descrLbl;
    QPointer<QLabel> m_lblTapAnyWhere;
};
