// A preferences file the process cannot read is not a damaged one: it stays where it is, the
// reason is logged, and nothing is written over it.
#include "platform/foundation/UserDefaults.h"
#include "support/LogCapture.h"
#include "support/TemporaryMainBundle.h"
#include "support/TemporarySettingsStore.h"
#include "support/ZqtVinRun.h"

#include <gtest/gtest.h>

#include <unistd.h>

using ZQTPlatform::UserDefaults;

namespace {

struct Unreadable
{
    const char *name;
    // Makes the file at the path unreadable; false when this process could read it anyway.
    bool (*make)(const QString &path);
};

const Unreadable kUnreadable[] = {
    {"ModeZero",
     [](const QString &path) {
         writeTestFile(path, "<plist><dict/></plist>");
         QFile::setPermissions(path, QFileDevice::Permissions());
         return ::geteuid() != 0; // the superuser reads it all the same
     }},
    {"FolderInItsPlace", [](const QString &path) { return QDir().mkpath(path); }},
};

class UnreadableSettings : public ::testing::TestWithParam<Unreadable>
{
protected:
    void SetUp() override
    {
        if (!GetParam().make(store.path()))
            GTEST_SKIP() << "this process can read the file";
    }

    // The file's folder, which must still hold exactly the file.
    QStringList folderEntries() const { return QDir(store.folder()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot); }

    TemporarySettingsStore store;
};

} // namespace

TEST_P(UnreadableSettings, StaysInPlaceAndIsNotWrittenOver)
{
    LogCapture log;
    EXPECT_TRUE(UserDefaults::standardUserDefaults().dictionaryRepresentation().isEmpty());
    ASSERT_EQ(log.lines().size(), 1);
    EXPECT_TRUE(log.lines().front().contains("cannot be read")) << log.lines().front().toStdString();
    EXPECT_TRUE(UserDefaults::standardUserDefaults().setObject("value", "key"));
    EXPECT_FALSE(UserDefaults::standardUserDefaults().synchronize());
    EXPECT_EQ(folderEntries(), QStringList{"app.plist"});

    // The tool says so in its status, and reading leaves the file alone too.
    EXPECT_EQ(runZqtVin({"settings", "get", "--store", store.path()}).status, 0);
    EXPECT_EQ(runZqtVin({"settings", "set", "--store", store.path(), "key", "value"}).status, 3);
    EXPECT_EQ(folderEntries(), QStringList{"app.plist"});
}

INSTANTIATE_TEST_SUITE_P(Files, UnreadableSettings, ::testing::ValuesIn(kUnreadable),
                         [](const ::testing::TestParamInfo<Unreadable> &info) { return std::string(info.param.name); });
