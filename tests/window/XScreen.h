// Reading back what the X server shows, and driving the server from outside the application
// (xdotool), for the real-window tests.
#pragma once

#include <QColor>
#include <QImage>
#include <QRect>
#include <QStringList>

class QWidget;

namespace XScreen {

// Delivers the pending paints of every window, so that the server holds what the widgets drew.
void flushPaints();
// The pixels the X server shows now where the widget lies (read from the root window, so other
// windows and unpainted areas show as they are).
QImage shot(const QWidget *widget);
// flushPaints(), then the widget's window as the server shows it and as its widgets draw it on
// request, taken with no event handled in between.
struct Comparison
{
    QImage onScreen;
    QImage drawn;
    // Share (0..1) of the pixels that differ by at most a few levels per channel.
    double sameShare() const;
};
Comparison compareWindow(const QWidget *widget);
// compareWindow until the screen matches the drawing at least by the share (pictures that arrive
// from worker threads may still be on their way), at most for the timeout; the last comparison.
Comparison settledComparison(const QWidget *widget, double share, int timeoutMs = 3000);

// Pixels inside the rectangle that are within the tolerance of the colour on each channel.
int pixelsNear(const QImage &image, const QRect &rect, const QColor &color, int tolerance = 24);
// The widget's rectangle in the coordinates of its window.
QRect rectInWindow(const QWidget *widget);

// Runs xdotool with the arguments against the application's display and waits for it; true when
// it succeeded.
bool xdotool(const QStringList &arguments);

} // namespace XScreen
