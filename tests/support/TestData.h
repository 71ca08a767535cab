// Access to the real-world reference data the tests carry (tests/data: barcode images, real VINs).
#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QColor>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QList>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <functional>

namespace TestData {

// Folder of the reference data (tests/data in the source tree).
inline QString directory()
{
    return QStringLiteral(ZQT_TESTDATA_DIR);
}

// Rows of a CSV file as lists of fields: a field is quoted (a doubled quote inside stands for
// one) or runs to the next comma. The header row is the first element. Empty when the file
// cannot be read.
inline QList<QStringList> readCsv(const QString &path)
{
    QFile file(path);
    QList<QStringList> rows;
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return rows;
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

// Where a test writes a picture for people to look at: <build>/test-artifacts/<fileName> (the
// folder is made when missing).
inline QString artifactPath(const QString &fileName)
{
    QDir folder(QCoreApplication::applicationDirPath() + QStringLiteral("/../test-artifacts"));
    folder.mkpath(QStringLiteral("."));
    return folder.filePath(fileName);
}

// A picture of one colour (32-bit RGB), and the bytes of a picture in a file format ("PNG", "JPG").
inline QImage filled(int width, int height, const QColor &colour)
{
    QImage picture(width, height, QImage::Format_RGB32);
    picture.fill(colour);
    return picture;
}

// A moment in UTC.
inline QDateTime utc(int year, int month, int day, int hour, int minute, int second, int millisecond = 0)
{
    return QDateTime(QDate(year, month, day), QTime(hour, minute, second, millisecond), Qt::UTC);
}

// How many pixels of the picture pass the test.
inline int countPixels(const QImage &picture, const std::function<bool(const QColor &)> &test)
{
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            count += test(picture.pixelColor(x, y)) ? 1 : 0;
    }
    return count;
}

inline QByteArray encoded(const QImage &picture, const char *format = "PNG")
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, format);
    return bytes;
}

} // namespace TestData
