// Files the tools read that are not regular files: a FIFO with no writer, a link to a device that
// never ends. Each is refused at once, as an unreadable file, instead of hanging or eating memory.
#include "support/TemporaryMainBundle.h"
#include "support/ZqtVinRun.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QTemporaryDir>

#include <sys/stat.h>

namespace {

enum class Kind { Fifo, EndlessDevice };

// Makes the hostile file at the path.
void makeHostile(Kind kind, const QString &path)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    const QByteArray name = QFile::encodeName(path);
    if (kind == Kind::Fifo)
        ASSERT_EQ(::mkfifo(name.constData(), 0600), 0);
    else
        ASSERT_TRUE(QFile::link(QStringLiteral("/dev/zero"), path));
}

struct Reader
{
    const char *name;
    // Runs the command with the hostile file at its place, given a scratch folder.
    ZqtVinRun (*run)(Kind kind, const QTemporaryDir &dir);
    int expectedStatus;
};

const Reader kReaders[] = {
    {"ConfigurationFile",
     [](Kind kind, const QTemporaryDir &dir) {
         makeHostile(kind, dir.filePath("bundle/Default_Settings.plist"));
         return runZqtVin({"config", "get", "TextTitle", "--bundle", dir.filePath("bundle")});
     },
     0},
    {"PreferencesFile",
     [](Kind kind, const QTemporaryDir &dir) {
         makeHostile(kind, dir.filePath("app.plist"));
         return runZqtVin({"settings", "get", "--store", dir.filePath("app.plist"), "SomeKey"});
     },
     1},
    {"NmeaFile",
     [](Kind kind, const QTemporaryDir &dir) {
         makeHostile(kind, dir.filePath("fix.nmea"));
         QImage(40, 30, QImage::Format_RGB32).save(dir.filePath("in.png"));
         return runZqtVin({"stamp", dir.filePath("in.png"), dir.filePath("out.png"), "--nmea", dir.filePath("fix.nmea")});
     },
     3},
};

class NonRegularFiles : public ::testing::TestWithParam<std::tuple<Kind, Reader>> {};

} // namespace

TEST_P(NonRegularFiles, AreRefusedAtOnce)
{
    const auto &[kind, reader] = GetParam();
    const QTemporaryDir dir;
    const ZqtVinRun run = reader.run(kind, dir);
    // -1: killed after a minute, the command never finished on its own.
    EXPECT_EQ(run.status, reader.expectedStatus) << run.err.toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    Readers, NonRegularFiles,
    ::testing::Combine(::testing::Values(Kind::Fifo, Kind::EndlessDevice), ::testing::ValuesIn(kReaders)),
    [](const ::testing::TestParamInfo<std::tuple<Kind, Reader>> &info) {
        return std::string(std::get<0>(info.param) == Kind::Fifo ? "Fifo" : "EndlessDevice") + "As"
               + std::get<1>(info.param).name;
    });
