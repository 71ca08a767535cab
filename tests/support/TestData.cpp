#include "support/TestData.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QRegularExpression>

namespace TestData {

QString directory()
{
    return QStringLiteral(ZQT_TESTDATA_DIR);
}

QList<QStringList> readCsv(const QString &path)
{
    QFile file(path);
    QList<QStringList> rows;
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return rows;
    // A field is quoted (a doubled quote inside stands for one) or runs to the next comma.
    static const QRegularExpression field(QStringLiteral(R"csv((?:^|,)(?:"((?:[^"]|"")*)"|([^,]*)))csv"));
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine()).remove(QLatin1Char('\n'));
        QStringList row;
        for (auto fields = field.globalMatch(line); fields.hasNext();) {
            const QRegularExpressionMatch match = fields.next();
            row << (match.capturedStart(1) >= 0 ? match.captured(1).replace(QStringLiteral("\"\""), QStringLiteral("\""))
                                                : match.captured(2));
        }
        rows << row;
    }
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
