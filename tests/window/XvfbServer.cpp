#include "window/XvfbServer.h"

#include <QByteArray>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// The server writes its display number and a newline to this pipe once it listens.
constexpr int startSeconds = 20;

} // namespace

XvfbServer::XvfbServer(int width, int height)
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

XvfbServer::~XvfbServer()
{
    if (m_pid <= 0)
        return;
    kill(m_pid, SIGTERM);
    waitpid(m_pid, nullptr, 0);
}

bool XvfbServer::isRunning() const
{
    return !m_display.isEmpty();
}

QString XvfbServer::display() const
{
    return m_display;
}

QString XvfbServer::error() const
{
    return m_error;
}
