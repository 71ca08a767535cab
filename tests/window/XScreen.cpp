#include "window/XScreen.h"

#include <QCoreApplication>
#include <QPixmap>
#include <QProcess>
#include <QScreen>
#include <QTest>
#include <QWidget>

#include <cstdlib>

namespace XScreen {

namespace {

constexpr int sameTolerance = 6;

bool near(QRgb a, QRgb b, int tolerance)
{
    return std::abs(qRed(a) - qRed(b)) <= tolerance && std::abs(qGreen(a) - qGreen(b)) <= tolerance
        && std::abs(qBlue(a) - qBlue(b)) <= tolerance;
}

} // namespace

void flushPaints()
{
    // Widgets ask for their paints with posted update requests.
    QCoreApplication::sendPostedEvents();
}

QImage shot(const QWidget *widget)
{
    const QRect area(widget->mapToGlobal(QPoint(0, 0)), widget->size());
    return widget->screen()->grabWindow(0, area.x(), area.y(), area.width(), area.height())
        .toImage()
        .convertToFormat(QImage::Format_RGB32);
}

double Comparison::sameShare() const
{
    if (onScreen.size() != drawn.size() || onScreen.isNull())
        return 0.0;
    qint64 same = 0;
    for (int y = 0; y < onScreen.height(); ++y) {
        const auto *a = reinterpret_cast<const QRgb *>(onScreen.constScanLine(y));
        const auto *b = reinterpret_cast<const QRgb *>(drawn.constScanLine(y));
        for (int x = 0; x < onScreen.width(); ++x)
            same += near(a[x], b[x], sameTolerance) ? 1 : 0;
    }
    return double(same) / (qint64(onScreen.width()) * onScreen.height());
}

Comparison compareWindow(const QWidget *widget)
{
    QWidget *window = widget->window();
    flushPaints();
    Comparison comparison;
    comparison.onScreen = shot(window);
    comparison.drawn = window->grab().toImage().convertToFormat(QImage::Format_RGB32);
    return comparison;
}

Comparison settledComparison(const QWidget *widget, double share, int timeoutMs)
{
    Comparison comparison;
    // The caller judges the comparison it gets, settled or not.
    (void)QTest::qWaitFor([&] {
        comparison = compareWindow(widget);
        return comparison.sameShare() >= share;
    }, timeoutMs);
    return comparison;
}

int pixelsNear(const QImage &image, const QRect &rect, const QColor &color, int tolerance)
{
    const QRect inside = rect & image.rect();
    int count = 0;
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        for (int x = inside.left(); x <= inside.right(); ++x)
            count += near(image.pixel(x, y), color.rgb(), tolerance) ? 1 : 0;
    }
    return count;
}

QRect rectInWindow(const QWidget *widget)
{
    return QRect(widget->mapTo(widget->window(), QPoint(0, 0)), widget->size());
}

bool xdotool(const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QStringLiteral("xdotool"), arguments);
    return process.waitForFinished(10000) && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

} // namespace XScreen
