// The image view on the GUI thread, measured in one run:
//  1. showing a new 1920x1080 camera still in a 750x422 view (setImage and the paint that
//     follows), then the event loop until the view is idle: the longest time the GUI thread was
//     held, by the change or by one event after it, against one smooth scale of the still to the
//     view's size (goal: under 2 ms);
//  2. the same after each resize of the view to a new, smaller size inside its window, the still
//     unchanged;
//  3. the same with nothing changed (a paint of the scaled copy, then the idle event loop): what
//     the machine's other work adds to the figures above.
// Each figure is wall time, the median, best and worst over the runs: the GUI thread waits for a
// smooth scale that Qt spreads over its thread pool, so its own CPU time would say too little.
// Other work on the machine shows in the worst figures, the idle ones included.
//
// Run: bench_image_view [RUNS] (20 by default).
#include "TimedApplication.h"
#include "platform/ui/Image.h"
#include "platform/ui/ImageView.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QPainter>
#include <QTimer>

#include <algorithm>
#include <cstdio>

using namespace ZQTPlatform;

namespace {

const QSize stillSize(1920, 1080);
const QSize viewSize(750, 422);
// How long the event loop runs after a change: the scaled copy lands well within it.
constexpr int settleMs = 300;

// A still with the detail of a photo (so that no scaling short cut applies), one per run.
QImage still(int run)
{
    QImage picture(stillSize, QImage::Format_RGB32);
    QPainter painter(&picture);
    QLinearGradient gradient(0, 0, stillSize.width(), stillSize.height());
    gradient.setColorAt(0, QColor::fromHsv((run * 37) % 360, 200, 220));
    gradient.setColorAt(1, QColor::fromHsv((run * 37 + 180) % 360, 200, 60));
    painter.fillRect(picture.rect(), gradient);
    painter.setPen(Qt::white);
    for (int x = 0; x < stillSize.width(); x += 7)
        painter.drawLine(x, 0, stillSize.width() - x, stillSize.height());
    return picture;
}

// Milliseconds the work takes.
template <class Work>
double timed(Work work)
{
    QElapsedTimer wall;
    wall.start();
    work();
    return wall.nsecsElapsed() / 1e6;
}

// Runs `change` on the GUI thread with a paint of the view, then the event loop for settleMs; the
// longest of the change and each event handled after it, in milliseconds.
template <class Change>
double longestHold(TimedApplication &app, ImageView &view, Change change)
{
    const double changing = timed([&] {
        change();
        view.repaint();
    });
    app.longestMs = 0;
    app.recording = true;
    QEventLoop settling;
    QTimer::singleShot(settleMs, &settling, &QEventLoop::quit);
    settling.exec();
    app.recording = false;
    return std::max(changing, app.longestMs);
}

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void print(const char *what, const QList<double> &runs, double baseline)
{
    const auto [best, worst] = std::minmax_element(runs.begin(), runs.end());
    std::printf("%-28s median %6.2f ms (%.2fx the baseline), best %6.2f ms, worst %6.2f ms\n", what, median(runs),
                median(runs) / baseline, *best, *worst);
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    TimedApplication app(argc, argv);
    const int runs = std::max(1, app.arguments().value(1, QStringLiteral("20")).toInt());
    QList<QImage> stills;
    for (int run = 0; run < runs; ++run)
        stills.append(still(run));

    QList<double> scales;
    QImage scaled;
    for (const QImage &picture : stills)
        scales.append(timed([&] { scaled = picture.scaled(viewSize, Qt::KeepAspectRatio, Qt::SmoothTransformation); }));

    // The view inside a window of its own size, so that a resize of the view leaves the window be.
    QWidget window;
    window.resize(viewSize);
    ImageView view(&window);
    view.resize(viewSize);
    window.show();
    // The window's first paint, and a first still that sets the worker up, are not measured.
    longestHold(app, view, [&] { view.setImage(Image(still(runs))); });
    QList<double> shows;
    for (const QImage &picture : stills)
        shows.append(longestHold(app, view, [&] { view.setImage(Image(picture)); }));
    QList<double> resizes;
    for (int run = 0; run < runs; ++run) {
        const QSize size = viewSize - QSize(run % 2 ? 40 : 0, run % 2 ? 0 : 20) * (run + 1) / runs;
        resizes.append(longestHold(app, view, [&] { view.resize(size); }));
    }
    QList<double> idle;
    for (int run = 0; run < runs; ++run)
        idle.append(longestHold(app, view, [] {}));

    const double baseline = median(scales);
    std::printf("%d runs, %dx%d still, %dx%d view\n", runs, stillSize.width(), stillSize.height(), viewSize.width(),
                viewSize.height());
    print("baseline: one smooth scale", scales, baseline);
    print("new still: GUI thread held", shows, baseline);
    print("resize: GUI thread held", resizes, baseline);
    print("idle: GUI thread held", idle, baseline);
    return 0;
}
