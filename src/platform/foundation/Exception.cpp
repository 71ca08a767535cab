#include "platform/foundation/Exception.h"

#include <QMutex>

#include <mutex>

namespace ZQTPlatform {

namespace {

QMutex handlerMutex;
UncaughtExceptionHandler installedHandler; // guarded by handlerMutex
std::terminate_handler previousTerminate = nullptr;

// std::terminate runs on the thread whose exception found no catch, with that exception current.
[[noreturn]] void onTerminate()
{
    UncaughtExceptionHandler handler;
    {
        QMutexLocker lock(&handlerMutex);
        handler = installedHandler;
    }
    if (handler && std::current_exception()) {
        try {
            std::rethrow_exception(std::current_exception());
        } catch (const Exception &exception) {
            handler(exception.name(), exception.reason());
        } catch (...) {
            // Not a platform exception: the program ends as it would have.
        }
    }
    if (previousTerminate)
        previousTerminate();
    std::abort();
}

} // namespace

Exception::Exception(const QString &name, const QString &reason)
    : m_name(name), m_reason(reason), m_what((name + QStringLiteral(": ") + reason).toStdString())
{
}

void setUncaughtExceptionHandler(UncaughtExceptionHandler handler)
{
    static std::once_flag hooked;
    std::call_once(hooked, [] { previousTerminate = std::set_terminate(onTerminate); });
    QMutexLocker lock(&handlerMutex);
    installedHandler = std::move(handler);
}

} // namespace ZQTPlatform
