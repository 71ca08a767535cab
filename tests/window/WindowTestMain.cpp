// Test entry point of the real-window tests: each process starts its own X server (Xvfb) on a free
// display and runs Qt's xcb platform on it, so that what the tests read back is what the X server
// shows, not what the widgets would draw on request. Listing the tests needs no server.
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QByteArray>
#include <QTemporaryDir>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// Large enough for every window size the tests use.
constexpr int screenWidth = 1280;
constexpr int screenHeight = 1024;
// The server writes its display number and a newline to its pipe once it listens.
constexpr int startSeconds = 20;

// A private X server (Xvfb) for the process: started on a free display before the application
// object exists, and stopped when the process ends, also when it dies.
class XvfbServer
{
public:
    // Starts "Xvfb -displayfd" with one screen of the size and 24-bit colour, and waits until it
    // accepts connections. display() is ":N" when it came up, error() says why not.
    XvfbServer(int width, int height)
    {
        int ready[2];
        if (pipe2(ready, O_CLOEXEC) != 0) {
            m_error = QString::fromLocal8Bit(std::strerror(errno));
            return;
        }
        const QByteArray screen = QByteArray::number(width) + 'x' + QByteArray::number(height) + "x24";
        const QByteArray fd = QByteArray::number(ready[1]);
        const pid_t parent = getpid();
        m_pid = fork();
        if (m_pid == 0) {
            // The server goes with the test process, however that ends.
            prctl(PR_SET_PDEATHSIG, SIGTERM);
            if (getppid() != parent)
                _exit(1);
            fcntl(ready[1], F_SETFD, 0); // the server inherits the write end
            const int null = open("/dev/null", O_WRONLY);
            if (null >= 0) {
                dup2(null, STDOUT_FILENO);
                dup2(null, STDERR_FILENO);
            }
            execlp("Xvfb", "Xvfb", "-displayfd", fd.constData(), "-screen", "0", screen.constData(), "-nolisten",
                   "tcp", "-noreset", static_cast<char *>(nullptr));
            _exit(127);
        }
        close(ready[1]);
        if (m_pid < 0) {
            m_error = QString::fromLocal8Bit(std::strerror(errno));
            close(ready[0]);
            return;
        }
        QByteArray number;
        pollfd wait{ready[0], POLLIN, 0};
        while (!number.endsWith('\n') && poll(&wait, 1, startSeconds * 1000) > 0) {
            char c;
            if (read(ready[0], &c, 1) != 1)
                break;
            number += c;
        }
        close(ready[0]);
        if (number.endsWith('\n')) {
            m_display = QLatin1Char(':') + QString::fromLatin1(number.trimmed());
            return;
        }
        int status = 0;
        if (waitpid(m_pid, &status, WNOHANG) == m_pid && WIFEXITED(status) && WEXITSTATUS(status) == 127)
            m_error = QStringLiteral("Xvfb is not installed (scripts/install-deps.sh installs it)");
        else
            m_error = QStringLiteral("Xvfb did not report a display within %1 s").arg(startSeconds);
    }
    ~XvfbServer()
    {
        if (m_pid <= 0)
            return;
        kill(m_pid, SIGTERM);
        waitpid(m_pid, nullptr, 0);
    }
    XvfbServer(const XvfbServer &) = delete;
    XvfbServer &operator=(const XvfbServer &) = delete;

    QString display() const { return m_display; }
    QString error() const { return m_error; }

private:
    pid_t m_pid = -1;
    QString m_display;
    QString m_error;
};

} // namespace

int main(int argc, char **argv)
{
    QTemporaryDir home;
    if (!TestEnvironment::useThrowawayHome(home))
        return 3;
    ::testing::InitGoogleTest(&argc, argv);
    if (::testing::GTEST_FLAG(list_tests))
        return RUN_ALL_TESTS();

    const XvfbServer server(screenWidth, screenHeight);
    if (server.display().isEmpty()) {
        std::fprintf(stderr, "no X server: %s\n", qPrintable(server.error()));
        return 4;
    }
    qputenv("DISPLAY", server.display().toLatin1());
    qputenv("QT_QPA_PLATFORM", "xcb");
    qunsetenv("WAYLAND_DISPLAY");
    qunsetenv("XAUTHORITY");

    QApplication app(argc, argv);
    TestEnvironment::cleanUpAfterEachTest();
    return RUN_ALL_TESTS();
}
