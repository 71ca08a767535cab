// Reading back what the X server shows, and driving the server from outside the application
// (xdotool), for the real-window tests.
#pragma once

#include <QColor>
#include <QCoreApplication>
#include <QImage>
#include <QPixmap>
#include <QProcess>
#include <QRect>
#include <QScreen>
#include <QStringList>
#include <QTest>
#include <QWidget>

#include <cstdlib>

namespace XScreen {

// Whether the colours differ by at most the tolerance on each channel.
inline bool near(QRgb a, QRgb b, int tolerance)
{
    return std::abs(qRed(a) - qRed(b)) <= tolerance && std::abs(qGreen(a) - qGreen(b)) <= tolerance
        && std::abs(qBlue(a) - qBlue(b)) <= tolerance;
}

// The widget's window as the X server shows it now (read from the root window, so other windows
// and unpainted areas show as they are) and as its widgets draw it on request, taken after the
// pending paints are delivered and with no event handled in between.
struct Comparison
{
    QImage onScreen;
    QImage drawn;
    // Share (0..1) of the pixels that differ by at most a few levels per channel.
    double sameShare() const
    {
        if (onScreen.size() != drawn.size() || onScreen.isNull())
            return 0.0;
        qint64 same = 0;
        for (int y = 0; y < onScreen.height(); ++y) {
            const auto *a = reinterpret_cast<const QRgb *>(onScreen.constScanLine(y));
            const auto *b = reinterpret_cast<const QRgb *>(drawn.constScanLine(y));
            for (int x = 0; x < onScreen.width(); ++x)
                same += near(a[x], b[x], 6) ? 1 : 0;
        }
        return double(same) / (qint64(onScreen.width()) * onScreen.height());
    }
};

inline Comparison compareWindow(const QWidget *widget)
{
    QWidget *window = widget->window();
    // Widgets ask for their paints with posted update requests, also while the events posted
    // before are delivered (a picture from a worker thread that arrives): a second pass paints those.
    QCoreApplication::sendPostedEvents();
    QCoreApplication::sendPostedEvents();
    const QRect area(window->mapToGlobal(QPoint(0, 0)), window->size());
    Comparison comparison;
    comparison.onScreen = window->screen()->grabWindow(0, area.x(), area.y(), area.width(), area.height())
                              .toImage().convertToFormat(QImage::Format_RGB32);
    comparison.drawn = window->grab().toImage().convertToFormat(QImage::Format_RGB32);
    return comparison;
}

// compareWindow until the screen matches the drawing at least by the share (pictures that arrive
// from worker threads may still be on their way), at most for the timeout; the last comparison.
inline Comparison settledComparison(const QWidget *widget, double share, int timeoutMs = 3000)
{
    Comparison comparison;
    // The caller judges the comparison it gets, settled or not.
    (void)QTest::qWaitFor([&] {
        comparison = compareWindow(widget);
        return comparison.sameShare() >= share;
    }, timeoutMs);
    return comparison;
}

// Pixels inside the rectangle that are within the tolerance of the colour on each channel.
inline int pixelsNear(const QImage &image, const QRect &rect, const QColor &color, int tolerance = 24)
{
    const QRect inside = rect & image.rect();
    int count = 0;
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        for (int x = inside.left(); x <= inside.right(); ++x)
            count += near(image.pixel(x, y), color.rgb(), tolerance) ? 1 : 0;
    }
    return count;
}

// The widget's rectangle in the coordinates of its window.
inline QRect rectInWindow(const QWidget *widget)
{
    return QRect(widget->mapTo(widget->window(), QPoint(0, 0)), widget->size());
}

// Runs xdotool with the arguments against the application's display and waits for it; true when
// it succeeded.
inline bool xdotool(const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QStringLiteral("xdotool"), arguments);
    return process.waitForFinished(10000) && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

} // namespace XScreen
