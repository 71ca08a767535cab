// Lets work on another thread (a capture completion) reach an object only while the object lives.
// The work holds the lock while it touches the object and does nothing once the gate is closed;
// the object closes the gate first thing in its destructor, which waits for work holding the lock.
#pragma once

#include <QMutex>

namespace ZQTPlatform {

struct CompletionGate
{
    QMutex lock;
    bool open = true;

    void close()
    {
        QMutexLocker locker(&lock);
        open = false;
    }
};

} // namespace ZQTPlatform
