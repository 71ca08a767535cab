// The platform log: one line per call, in the "zqt.vin" logging category.
// The texts handed to log() are the system's own and are written word for word.
#pragma once

#include "ZQTGlobal.h"

#include <QLoggingCategory>
#include <QString>

namespace ZQTPlatform {

// "zqt.vin": diagnostics of the component (enabled at info level by default).
ZQT_EXPORT const QLoggingCategory &logCategory();
// "zqt.vin.lifecycle": one debug line per step of a screen's start-up and tear-down.
// Off by default; enable with QT_LOGGING_RULES="zqt.vin.lifecycle.debug=true".
ZQT_EXPORT const QLoggingCategory &lifecycleCategory();

// Writes one line to the platform log.
ZQT_EXPORT void log(const QString &line);
// Writes the name of a lifecycle step to the lifecycle category.
ZQT_EXPORT void logStep(const char *step);

} // namespace ZQTPlatform
