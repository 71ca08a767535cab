// What every fuzz target needs: a Qt application on the offscreen platform (fonts, colours and
// timers need one), the component's log lines silenced (a line per input would dominate the
// run), the input bytes as text, and the input written as a file the component reads.
#pragma once

#include <QByteArray>
#include <QFile>
#include <QGuiApplication>
#include <QLoggingCategory>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace Fuzz {

inline void startApplication()
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QLoggingCategory::setFilterRules(QStringLiteral("zqt.*=false\nqt.*=false"));
    static int argc = 1;
    static char name[] = "fuzz";
    static char *argv[] = {name, nullptr};
    static QGuiApplication application(argc, argv);
}

inline QByteArray bytesOf(const uint8_t *data, size_t size)
{
    return QByteArray(reinterpret_cast<const char *>(data), qsizetype(size));
}

inline QString textOf(const uint8_t *data, size_t size)
{
    return QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
}

// Makes the bytes the whole file at the path; a file that cannot be written ends the run.
inline void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        std::abort();
    file.write(bytes);
}

} // namespace Fuzz
