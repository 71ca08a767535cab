// A private X server (Xvfb) for one test process: started on a free display before the
// application object exists, and stopped when the process ends, also when it dies.
#pragma once

#include <QString>

#include <sys/types.h>

class XvfbServer
{
public:
    // Starts "Xvfb -displayfd" with one screen of the size and 24-bit colour, and waits until it
    // accepts connections. isRunning() tells whether it came up.
    XvfbServer(int width, int height);
    ~XvfbServer();
    XvfbServer(const XvfbServer &) = delete;
    XvfbServer &operator=(const XvfbServer &) = delete;

    bool isRunning() const;
    // ":N", or empty when the server did not start.
    QString display() const;
    // Why the server did not start.
    QString error() const;

private:
    pid_t m_pid = -1;
    QString m_display;
    QString m_error;
};
