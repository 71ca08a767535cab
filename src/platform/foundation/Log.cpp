#include "platform/foundation/Log.h"

namespace ZQTPlatform {

Q_LOGGING_CATEGORY(lcComponent, "zqt.vin", QtInfoMsg)
Q_LOGGING_CATEGORY(lcLifecycle, "zqt.vin.lifecycle", QtInfoMsg)

const QLoggingCategory &logCategory()
{
    return lcComponent();
}

const QLoggingCategory &lifecycleCategory()
{
    return lcLifecycle();
}

void log(const QString &line)
{
    qCInfo(lcComponent).noquote() << line;
}

void logStep(const char *step)
{
    qCDebug(lcLifecycle).noquote() << step;
}

} // namespace ZQTPlatform
