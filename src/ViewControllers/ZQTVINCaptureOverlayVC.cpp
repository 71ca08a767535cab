#include "ViewControllers/ZQTVINCaptureOverlayVC.h"

#include "platform/Application.h"
#include "platform/ImageView.h"
#include "platform/Storyboard.h"

#include <QEvent>
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

bool ZQTVINCaptureOverlayVC::event(QEvent *event)
{
    if (event->type() == QEvent::ParentChange)
        followSuperview();
    return ViewController::event(event);
}

bool ZQTVINCaptureOverlayVC::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_superview && event->type() == QEvent::Resize)
        setGeometry(m_superview->rect());
    return ViewController::eventFilter(watched, event);
}

// The stand-in for the flexible width and height of a scene's root view.
void ZQTVINCaptureOverlayVC::followSuperview()
{
    if (m_superview)
        m_superview->removeEventFilter(this);
    m_superview = parentWidget();
    if (!m_superview)
        return;
    m_superview->installEventFilter(this);
    setGeometry(m_superview->rect());
}
