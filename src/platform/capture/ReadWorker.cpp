#include "platform/capture/ReadWorker_p.h"

#include "platform/foundation/WorkerPriority_p.h"

namespace ZQTPlatform {

ReadWorker::ReadWorker(const QString &threadName, QObject *owner) : m_owner(owner)
{
    m_thread.setObjectName(threadName);
    // Runs on the new thread as it starts.
    QObject::connect(&m_thread, &QThread::started, [] { lowerCurrentThreadPriority(); });
    m_context.moveToThread(&m_thread);
    m_thread.start();
}

ReadWorker::~ReadWorker()
{
    m_thread.quit();
    m_thread.wait();
}

void ReadWorker::start(Read read)
{
    m_busy = true;
    QMetaObject::invokeMethod(
        &m_context,
        [this, read = std::move(read)] {
            // Worker thread. The owner outlives this worker, which it holds; a delivery still
            // queued when the owner goes is dropped with it.
            Delivery delivery = read();
            QMetaObject::invokeMethod(
                m_owner,
                [this, delivery = std::move(delivery)] {
                    m_busy = false;
                    delivery();
                },
                Qt::QueuedConnection);
        },
        Qt::QueuedConnection);
}

void ReadWorker::prepare(std::function<void()> work)
{
    QMetaObject::invokeMethod(&m_context, std::move(work), Qt::QueuedConnection);
}

} // namespace ZQTPlatform
