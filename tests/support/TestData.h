// Access to the real-world reference data the tests carry (tests/data: barcode images, real VINs).
#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QList>
#include <QString>
#include <QStringList>

namespace TestData {

// Folder of the reference data (tests/data in the source tree).
QString directory();

// Rows of a CSV file as lists of fields (quoted fields may hold commas and doubled quotes).
// The header row is the first element. Empty when the file cannot be read.
QList<QStringList> readCsv(const QString &path);

// Where a test writes a picture for people to look at: <build>/test-artifacts/<fileName> (the
// folder is made when missing).
QString artifactPath(const QString &fileName);

// A picture of one colour (32-bit RGB), and the bytes of a picture in a file format ("PNG", "JPG").
QImage filled(int width, int height, const QColor &colour);
QByteArray encoded(const QImage &picture, const char *format = "PNG");

} // namespace TestData
