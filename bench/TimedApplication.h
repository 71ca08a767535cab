// An application that times each event it delivers on the GUI thread while recording: the longest
// in wall and CPU time, and the slowest few by name. For benches of the GUI thread.
#pragma once

#include "ThreadClock.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QList>
#include <QString>
#include <QThread>

#include <algorithm>

class TimedApplication : public QApplication
{
public:
    using QApplication::QApplication;
    struct Slow { double ms; double cpuMs; QString what; };
    QList<Slow> slowest;
    double longestCpuMs = 0; // the most CPU time one event took on the GUI thread
    double longestMs = 0;    // the most wall time one event took on the GUI thread
    bool recording = false;

    bool notify(QObject *receiver, QEvent *event) override
    {
        if (!recording || QThread::currentThread() != thread())
            return QApplication::notify(receiver, event);
        ++depth;
        QElapsedTimer clock;
        clock.start();
        const double cpuStart = threadCpuMs();
        const int type = event->type();
        const QString name = QString::fromLatin1(receiver->metaObject()->className()) + QLatin1Char('/') + receiver->objectName();
        const bool result = QApplication::notify(receiver, event);
        --depth;
        const double ms = clock.nsecsElapsed() / 1e6;
        const double cpuMs = threadCpuMs() - cpuStart;
        if (depth == 0) {
            longestCpuMs = std::max(longestCpuMs, cpuMs);
            longestMs = std::max(longestMs, ms);
        }
        if (ms > 1.0) {
            slowest.append({ms, cpuMs, QStringLiteral("%1 event %2").arg(name).arg(type)});
            std::sort(slowest.begin(), slowest.end(), [](const Slow &a, const Slow &b) { return a.ms > b.ms; });
            if (slowest.size() > 8)
                slowest.removeLast();
        }
        return result;
    }

private:
    int depth = 0;
};
