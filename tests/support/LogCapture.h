// Collects the lines written to the component's logging categories while it is alive.
#pragma once

#include <QLoggingCategory>
#include <QMutex>
#include <QStringList>
#include <QtGlobal>

class LogCapture
{
public:
    // Also turns on the lifecycle category's debug lines.
    LogCapture()
    {
        clear();
        QLoggingCategory::setFilterRules(QStringLiteral("zqt.vin.lifecycle.debug=true"));
        m_previous = qInstallMessageHandler(&LogCapture::handler);
    }
    ~LogCapture()
    {
        qInstallMessageHandler(m_previous);
        QLoggingCategory::setFilterRules(QString());
    }
    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    // Lines of the "zqt.vin" category, in order.
    QStringList lines() const
    {
        const QMutexLocker lock(&captured().mutex);
        return captured().lines;
    }
    // Steps logged to the "zqt.vin.lifecycle" category, in order.
    QStringList steps() const
    {
        const QMutexLocker lock(&captured().mutex);
        return captured().steps;
    }
    void clear()
    {
        const QMutexLocker lock(&captured().mutex);
        captured().lines.clear();
        captured().steps.clear();
    }

private:
    struct Captured
    {
        QMutex mutex;
        QStringList lines, steps;
    };
    static Captured &captured()
    {
        static Captured instance;
        return instance;
    }
    static void handler(QtMsgType, const QMessageLogContext &context, const QString &message)
    {
        const QLatin1String category(context.category ? context.category : "");
        const QMutexLocker lock(&captured().mutex);
        if (category == QLatin1String("zqt.vin"))
            captured().lines << message;
        else if (category == QLatin1String("zqt.vin.lifecycle"))
            captured().steps << message;
    }

    QtMessageHandler m_previous = nullptr;
};
