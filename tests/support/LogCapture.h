// Collects the lines written to the component's logging categories while it is alive.
#pragma once

#include <QStringList>
#include <QtGlobal>

class LogCapture
{
public:
    // Also turns on the lifecycle category's debug lines.
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    // Lines of the "zqt.vin" category, in order.
    QStringList lines() const;
    // Steps logged to the "zqt.vin.lifecycle" category, in order.
    QStringList steps() const;
    void clear();

private:
    static void handler(QtMsgType type, const QMessageLogContext &context, const QString &message);
    QtMessageHandler m_previous;
};
