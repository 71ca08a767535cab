// Access to the real-world reference data the tests carry (tests/data: barcode images, real VINs).
#pragma once

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

} // namespace TestData
