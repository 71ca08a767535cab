#include "platform/foundation/Dispatch.h"

#include <QCoreApplication>
#include <QThread>
#include <QThreadPool>
#include <QTimer>

#include <algorithm>
#include <cmath>

namespace ZQTPlatform {

void Dispatch::mainAsync(std::function<void()> work)
{
    if (QCoreApplication *app = QCoreApplication::instance())
        QMetaObject::invokeMethod(app, std::move(work), Qt::QueuedConnection);
}

void Dispatch::onMain(std::function<void()> work)
{
    if (isMainThread())
        work();
    else
        mainAsync(std::move(work));
}

void Dispatch::mainSync(std::function<void()> work)
{
    if (isMainThread())
        work();
    else if (QCoreApplication *app = QCoreApplication::instance())
        QMetaObject::invokeMethod(app, std::move(work), Qt::BlockingQueuedConnection);
}

void Dispatch::mainAfter(double seconds, std::function<void()> work)
{
    const int msecs = int(std::lround(std::max(0.0, seconds) * 1000.0));
    // The timer is started on the GUI thread: a thread without an event loop cannot run timers.
    onMain([msecs, work = std::move(work)]() mutable {
        QTimer::singleShot(msecs, QCoreApplication::instance(), std::move(work));
    });
}

void Dispatch::globalAsync(std::function<void()> work)
{
    QThreadPool::globalInstance()->start(std::move(work));
}

bool Dispatch::isMainThread()
{
    const QCoreApplication *app = QCoreApplication::instance();
    return app && QThread::currentThread() == app->thread();
}

} // namespace ZQTPlatform
