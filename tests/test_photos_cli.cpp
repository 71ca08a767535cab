// zqt-vin photos, run as a separate process: it shares the test's home, so the tool's photos
// are the ones the store in this process sees.
#include "support/TemporaryMainBundle.h"
#include "support/ZqtVinRun.h"
#include "support/TestData.h"

#include "Utils/ZQTVINScanUtils.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

namespace {

QJsonValue json(const QString &line)
{
    return QJsonDocument::fromJson("[" + line.toUtf8() + "]").array().first();
}

} // namespace

TEST(ZqtVinPhotos, AddStoresAnyImageThroughTheSavePathThenListPathAndDeleteFindItAndBadArgumentsFail)
{
    QTemporaryDir dir;
    const QString png = dir.filePath("door.png");
    ASSERT_TRUE(TestData::filled(1600, 1200, Qt::darkRed).save(png));
    const QString path = ZQTVINScanUtils::createPhotoPathWithClaimId("CLM-7", "door");

    const ZqtVinRun added = runZqtVin({"photos", "add", "--claim", "CLM-7", "--title", "door", png});
    ASSERT_EQ(added.status, 0) << added.err.toStdString();
    const QJsonObject stored = json(added.out).toObject();
    EXPECT_EQ(stored.value("path").toString(), path);
    EXPECT_EQ(QSize(stored.value("width").toInt(), stored.value("height").toInt()), QSize(800, 600));
    EXPECT_TRUE(added.err.contains("save photo: " + path));

    const ZqtVinRun listed = runZqtVin({"photos", "list", "--claim", "CLM-7"});
    EXPECT_EQ(listed.status, 0);
    const QJsonArray photos = json(listed.out).toArray();
    ASSERT_EQ(photos.size(), 1);
    EXPECT_EQ(photos.first()["name"].toString(), "door.jpg");
    EXPECT_EQ(photos.first()["path"].toString(), path);
    EXPECT_EQ(photos.first()["bytes"].toInteger(), stored.value("bytes").toInteger());

    struct Step { QStringList args; int status; QString out; };
    const Step afterwards[] = {
        {{"path", "door.jpg"}, 0, QString(R"({"exists":true,"path":"%1"})").arg(path)},
        {{"delete", "door"}, 0, R"({"deleted":true})"},
        {{"delete", "door"}, 1, R"({"deleted":false})"},
        {{"list"}, 1, "[]"},
        {{"path", "door"}, 1, QString(R"({"exists":false,"path":"%1"})").arg(path)},
    };
    for (const Step &step : afterwards) {
        const ZqtVinRun run = runZqtVin(QStringList{"photos", step.args.first(), "--claim", "CLM-7"} + step.args.mid(1));
        EXPECT_EQ(run.status, step.status) << step.args.join(' ').toStdString();
        EXPECT_EQ(run.out.trimmed(), step.out) << step.args.join(' ').toStdString();
    }

    // Bad arguments are usage errors, unreadable images failures; neither prints anything.
    const QString notAnImage = writeTestFile(dir.filePath("notes.png"), "notes");
    struct Case { QStringList args; int status; };
    const Case cases[] = {
        {{"photos", "list", "--claim", "C", "door"}, 2},
        {{"photos", "path", "--claim", "C"}, 2},               {{"photos", "add", "--claim", "C", notAnImage}, 2},
        {{"photos", "list", "--claim", "../C"}, 2},            {{"photos", "add", "--claim", "C", "--title", "a/b", notAnImage}, 2},
        {{"photos", "add", "--claim", "C", "--title", "door", notAnImage}, 3},
    };
    for (const Case &c : cases) {
        const ZqtVinRun run = runZqtVin(c.args);
        EXPECT_EQ(run.status, c.status) << c.args.join(' ').toStdString() << "\n" << run.err.toStdString();
        EXPECT_TRUE(run.out.isEmpty()) << c.args.join(' ').toStdString();
    }
}
