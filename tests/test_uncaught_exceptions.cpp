// Platform exceptions that nothing catches reach the host's uncaught-exception handler on the
// thread that raised them, before the program ends; the capture app reports a full device that
// way instead of aborting.
#include "platform/foundation/Exception.h"
#include "support/TemporaryMainBundle.h"
#include "support/ZqtVinRun.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>
#include <thread>

TEST(UncaughtExceptionsDeathTest, ReachTheHandlerOnTheRaisingThread)
{
    const auto raiseOnAWorker = [] {
        const std::thread::id main = std::this_thread::get_id();
        ZQTPlatform::setUncaughtExceptionHandler([main](const QString &name, const QString &reason) {
            std::fprintf(stderr, "handled %s: %s on %s\n", qPrintable(name), qPrintable(reason),
                         std::this_thread::get_id() == main ? "main" : "worker");
            std::_Exit(7);
        });
        std::thread([] { throw ZQTPlatform::Exception("NotEnoughFreeSpaceException", "no room"); }).join();
    };
    EXPECT_EXIT(raiseOnAWorker(), ::testing::ExitedWithCode(7), "handled NotEnoughFreeSpaceException: no room on worker");
}

TEST(UncaughtExceptions, FullDeviceDuringABarcodeReadEndsTheCaptureAppWithItsReport)
{
    // Photos go to a documents folder that exists; the free-space query asks about a home that
    // does not, which has no room.
    const QTemporaryDir dir;
    writeTestFile(dir.filePath("config/user-dirs.dirs"),
                  "XDG_DOCUMENTS_DIR=\"" + QFile::encodeName(dir.filePath("Documents")) + "\"\n");
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("HOME", dir.filePath("no-home"));
    environment.insert("XDG_CONFIG_HOME", dir.filePath("config"));

    const ZqtVinRun run = runZqtVinCapture({"--claim", "C-1", "--source", ZQT_SAMPLE_CLIP, "--exit-on-result"}, environment);
    EXPECT_EQ(run.status, 4) << run.err.toStdString();
    const QJsonObject report = QJsonDocument::fromJson(run.out.trimmed().split('\n').last().toUtf8()).object();
    EXPECT_EQ(report.value("vin").toString(), "1HGCM82633A004352") << run.out.toStdString();
    EXPECT_EQ(report.value("error").toObject().value("name").toString(), "NotEnoughFreeSpaceException");
    EXPECT_EQ(report.value("error").toObject().value("reason").toString(), "There is not enough free space on the device.");
    EXPECT_FALSE(QDir(dir.filePath("Documents/ZQTPhotos/C-1")).entryList(QDir::Files).isEmpty())
        << "the photo is written before the exception";
}
