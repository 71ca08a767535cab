// The worker thread of an output that reads frames (barcodes, printed text): its reads run there
// one at a time, below the GUI thread's priority, and what a read found is handed back to the
// output on the GUI thread. What becomes of frames that arrive while a read is in flight is the
// output's choice.
#pragma once

#include <QObject>
#include <QString>
#include <QThread>

#include <functional>

namespace ZQTPlatform {

class ReadWorker
{
public:
    // What a read hands back: runs on the owner's (GUI) thread once the worker is idle again. It
    // may destroy the owner, and with it the worker.
    using Delivery = std::function<void()>;
    // A read: runs on the worker thread and sees nothing but what it captured.
    using Read = std::function<Delivery()>;

    // A started thread of the given name; deliveries go to owner, which holds the worker.
    ReadWorker(const QString &threadName, QObject *owner);
    // Waits for the read in flight; deliveries not yet made are dropped.
    ~ReadWorker();
    ReadWorker(const ReadWorker &) = delete;
    ReadWorker &operator=(const ReadWorker &) = delete;

    // True from start() until the read's delivery has begun (GUI thread).
    bool isBusy() const { return m_busy; }
    // Starts the read on the worker thread (GUI thread; the worker should be idle).
    void start(Read read);
    // Runs work on the worker thread ahead of later reads, without a delivery and without making
    // the worker busy: loading what the reads need before the first frame comes.
    void prepare(std::function<void()> work);

private:
    QObject *m_owner;
    bool m_busy = false;
    QThread m_thread;
    QObject m_context; // lives on m_thread; the reads are queued to it
};

} // namespace ZQTPlatform
