#include "ViewControllers/ZQTVINCaptureOverlayVC.h"

#include "platform/ui/Application.h"
#include "platform/ui/ImageView.h"
#include "platform/ui/Storyboard.h"

#include <QLabel>

using namespace ZQTPlatform;

namespace {
const bool registeredWithStoryboards =
    Storyboard::registerViewControllerClass<ZQTVINCaptureOverlayVC>(QStringLiteral("ZQTVINCaptureOverlayVC"));
} // namespace

ZQTVINCaptureOverlayVC::ZQTVINCaptureOverlayVC()
{
    Q_UNUSED(registeredWithStoryboards);
}

ZQTVINCaptureOverlayVC::~ZQTVINCaptureOverlayVC() = default;

QLabel *ZQTVINCaptureOverlayVC::headerLbl() const { return m_headerLbl; }
ImageView *ZQTVINCaptureOverlayVC::imageView() const { return m_imageView; }
QLabel *ZQTVINCaptureOverlayVC::titleLbl() const { return m_titleLbl; }
QLabel *ZQTVINCaptureOverlayVC::descrLbl() const { return m_descrLbl; }
QLabel *ZQTVINCaptureOverlayVC::lblTapAnyWhere() const { return m_lblTapAnyWhere; }

void ZQTVINCaptureOverlayVC::awakeFromNib()
{
    m_headerLbl = findChild<QLabel *>(QStringLiteral("headerLbl"));
    m_imageView = findChild<ImageView *>(QStringLiteral("imageView"));
    m_titleLbl = findChild<QLabel *>(QStringLiteral("titleLbl"));
    m_descrLbl = findChild<QLabel *>(QStringLiteral("descrLbl"));
    m_lblTapAnyWhere = findChild<QLabel *>(QStringLiteral("lblTapAnyWhere"));
    ViewController::awakeFromNib();
}

void ZQTVINCaptureOverlayVC::viewDidLoad()
{
    ViewController::viewDidLoad();
    Application::sharedApplication()->setStatusBarHidden(true);
}

void ZQTVINCaptureOverlayVC::didReceiveMemoryWarning()
{
    ViewController::didReceiveMemoryWarning();
}

bool ZQTVINCaptureOverlayVC::prefersStatusBarHidden() const
{
    return true;
}

int ZQTVINCaptureOverlayVC::preferredStatusBarStyle() const
{
    return StatusBarStyle::LightContent;
}
