// The capture screen follows its window on the X server: resized from outside (xdotool) to
// portrait and landscape shapes larger and smaller than the phone, the camera area, the preview,
// the guide, the prompt and the photo panel are laid out again for the new size, lie inside the
// window, and reach the screen as drawn; the guide keeps its proportions. Each size is saved as
// <build>/test-artifacts/window_resized_<W>x<H>.png.
#include "platform/capture/VideoPreviewLayer.h"
#include "platform/ui/ViewAnimation.h"
#include "support/TestData.h"
#include "window/WindowTestSupport.h"
#include "window/XScreen.h"

#include <QLabel>
#include <QPushButton>

using namespace ZQTPlatform;

namespace {

// The orange of the guide's corner brackets; they frame its clear window, 258 x 106 units of
// the 300 x 300 picture, stroke included.
const QColor bracketColour(0xF2, 0xA5, 0x41);
constexpr double bracketsAspect = 258.0 / 106.0;
const QColor leftHalf = RealWindow::cameraLeftHalf;
const QColor rightHalf = RealWindow::cameraRightHalf;

// Width over height of the box around the guide's bracket pixels.
double bracketsAspectIn(const QPixmap &guide)
{
    const QImage image = guide.toImage().convertToFormat(QImage::Format_ARGB32);
    QRect box; // around the opaque pixels of the brackets' colour
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) > 200 && XScreen::near(image.pixel(x, y), bracketColour.rgb(), 24))
                box |= QRect(x, y, 1, 1);
        }
    }
    return box.isEmpty() ? 0.0 : double(box.width()) / box.height();
}

} // namespace

TEST_F(RealWindow, ResizingTheWindowLaysTheScreenOutAgainForEverySize)
{
    show(ZQTVINCaptureVC::createVinScannerManualOptionViewWithDelegate(&delegate, "CLM-RESIZE"));
    // The help card that comes up by itself is closed first.
    ASSERT_TRUE(QTest::qWaitFor([&] { return screen->overlayView2() && alpha(screen->overlayView2()) == 1.0; }, 5000));
    screen->overlayViewTapped(nullptr);
    ASSERT_TRUE(QTest::qWaitFor([&] { return screen->overlayView2() == nullptr; }, 3000));

    auto *area = screen->findChild<QWidget *>("scanOverlayView");
    auto *panel = screen->findChild<QWidget *>("controlPanel");
    auto *manualButton = screen->findChild<QPushButton *>("manuallyEnterVINBtn");
    const QString window = QString::number(host.window.winId());
    for (const QSize size : {QSize(414, 896), QSize(320, 640), QSize(896, 414), QSize(700, 360), QSize(1100, 800)}) {
        const QString name = QString("window_resized_%1x%2.png").arg(size.width()).arg(size.height());
        SCOPED_TRACE(name.toStdString());
        ASSERT_TRUE(XScreen::xdotool({"windowsize", window, QString::number(size.width()), QString::number(size.height())}));
        ASSERT_TRUE(QTest::qWaitFor([&] { return host.window.size() == size; }, 3000));
        // The scene's layout settles in posted layout passes: the panel goes below the camera
        // area in portrait and beside it in landscape, everything inside the window, and the
        // camera area's views follow.
        const bool landscape = size.width() > size.height();
        QWidget *camera = screen->findChild<QWidget *>("cameraImageView");
        const auto inside = [&](const QWidget *part) { return host.window.rect().contains(XScreen::rectInWindow(part)); };
        const bool settled = QTest::qWaitFor([&] {
            const bool arranged = landscape ? panel->geometry().left() == area->geometry().right() + 1
                                            : panel->geometry().top() == area->geometry().bottom() + 1;
            return arranged && inside(area) && inside(panel) && inside(manualButton) && camera->geometry() == area->rect();
        }, 3000);
        EXPECT_TRUE(settled) << "camera area " << XScreen::rectInWindow(area).width() << "x" << area->height()
                             << ", panel at " << XScreen::rectInWindow(panel).x() << "," << XScreen::rectInWindow(panel).y()
                             << " " << panel->width() << "x" << panel->height();

        VideoPreviewLayer *preview = screen->prevLayer();
        EXPECT_EQ(preview->frame(), QRectF(camera->rect())) << "the preview covers the camera area";
        // The picture is drawn for the new size on a worker, filling the layer and centred: the
        // camera's left and right halves meet in the layer's middle.
        EXPECT_TRUE(QTest::qWaitFor([&] {
            const QImage picture = preview->currentPicture();
            const QPoint middle = picture.rect().center();
            return !picture.isNull() && XScreen::pixelsNear(picture, QRect(middle - QPoint(3, 0), QSize(1, 1)), leftHalf) == 1
                && XScreen::pixelsNear(picture, QRect(middle + QPoint(3, 0), QSize(1, 1)), rightHalf) == 1;
        }, 3000)) << "the preview's picture is drawn at the new size";
        QLabel *guide = screen->cameraOverlayImage();
        EXPECT_EQ(guide->geometry(), camera->geometry());
        EXPECT_EQ(guide->pixmap().size(), camera->size()) << "the guide is drawn at the area's size";
        EXPECT_NEAR(bracketsAspectIn(guide->pixmap()), bracketsAspect, 0.08) << "the guide's corners keep their shape";
        QLabel *prompt = screen->scanResultLbl();
        EXPECT_EQ(prompt->width(), guide->width());
        EXPECT_EQ(screen->centerLine()->geometry().center().y(), camera->geometry().center().y());

        const XScreen::Comparison seen = XScreen::settledComparison(&host.window, 0.99);
        EXPECT_GE(seen.sameShare(), 0.99) << "the resized screen reaches the X server as drawn";
        EXPECT_TRUE(seen.onScreen.save(TestData::artifactPath(name)));
    }
}
