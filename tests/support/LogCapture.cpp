#include "support/LogCapture.h"

#include <QLoggingCategory>
#include <QMutex>

namespace {
QMutex mutex;
QStringList capturedLines;
QStringList capturedSteps;
} // namespace

LogCapture::LogCapture()
{
    clear();
    QLoggingCategory::setFilterRules(QStringLiteral("zqt.vin.lifecycle.debug=true"));
    m_previous = qInstallMessageHandler(&LogCapture::handler);
}

LogCapture::~LogCapture()
{
    qInstallMessageHandler(m_previous);
    QLoggingCategory::setFilterRules(QString());
}

void LogCapture::handler(QtMsgType, const QMessageLogContext &context, const QString &message)
{
    const QLatin1String category(context.category ? context.category : "");
    QMutexLocker lock(&mutex);
    if (category == QLatin1String("zqt.vin"))
        capturedLines << message;
    else if (category == QLatin1String("zqt.vin.lifecycle"))
        capturedSteps << message;
}

QStringList LogCapture::lines() const
{
    QMutexLocker lock(&mutex);
    return capturedLines;
}

QStringList LogCapture::steps() const
{
    QMutexLocker lock(&mutex);
    return capturedSteps;
}

void LogCapture::clear()
{
    QMutexLocker lock(&mutex);
    capturedLines.clear();
    capturedSteps.clear();
}
