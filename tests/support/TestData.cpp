#include "support/TestData.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QFile>

namespace TestData {

QString directory()
{
    return QStringLiteral(ZQT_TESTDATA_DIR);
}

QList<QStringList> readCsv(const QString &path)
{
    QFile file(path);
    QList<QStringList> rows;
    if (!file.open(QIODevice::ReadOnly))
        return rows;
    const QString text = QString::fromUtf8(file.readAll());
    QStringList row;
    QString field;
    bool quoted = false;
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (quoted) {
            if (c == QLatin1Char('"') && i + 1 < text.size() && text.at(i + 1) == QLatin1Char('"')) {
                field += c;
                ++i;
            } else if (c == QLatin1Char('"')) {
                quoted = false;
            } else {
                field += c;
            }
        } else if (c == QLatin1Char('"')) {
            quoted = true;
        } else if (c == QLatin1Char(',')) {
            row << field;
            field.clear();
        } else if (c == QLatin1Char('\n')) {
            row << field;
            rows << row;
            row.clear();
            field.clear();
        } else if (c != QLatin1Char('\r')) {
            field += c;
        }
    }
    if (!field.isEmpty() || !row.isEmpty())
        rows << (row << field);
    return rows;
}

QString artifactPath(const QString &fileName)
{
    QDir folder(QCoreApplication::applicationDirPath() + QStringLiteral("/../test-artifacts"));
    folder.mkpath(QStringLiteral("."));
    return folder.filePath(fileName);
}

QImage filled(int width, int height, const QColor &colour)
{
    QImage picture(width, height, QImage::Format_RGB32);
    picture.fill(colour);
    return picture;
}

QByteArray encoded(const QImage &picture, const char *format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, format);
    return bytes;
}

} // namespace TestData
