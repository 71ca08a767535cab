#include "Utils/VINUtility.h"
#include "Utils/VINUtility_p.h"
#include "support/LogCapture.h"
#include "support/TestData.h"

#include <gtest/gtest.h>

namespace {

const char *const kIllegalLetter = "METHOD CALL \"checkVINValidity\" found illegal letter character ";
const char *const kIllegalChar = "METHOD CALL \"checkVINValidity\" found illegal character ";
const char *const kIllegalCheck = "METHOD CALL \"checkVINValidity\" found illegal check digit ";

struct Case { const char *vin; bool valid; QString expectedLog; /* empty: no log line at all */ };

} // namespace

TEST(VINCheck, JudgesLengthCharactersAndCheckDigitAndLogsTheFirstOffender)
{
    const Case cases[] = {
        {"1M8GDM9AXKP042788", true, {}},  // remainder 10, check character X
        {"1HGCM82633A004352", true, {}},
        {"1m8gdm9axkp042788", true, {}},  // upper-cased before the test
        {"1M8GDM9A-XKP042788", true, {}}, // hyphens removed before the length test
        {"1M8GDM9A1KP042788", false, {}}, // remainder 10 with a digit
        {"1HGCM82634A004352", false, {}}, // wrong digit
        {"1HGCM8263", false, {}},
        {"I1HGCM82633A004352", false, {}}, // trimming is the scanner's business
        {"", false, {}},
        {"1M8GDM9AAKP042788", false, QString(kIllegalCheck) + "A"},
        {"1M8GDM9AXKP04278Q", false, QString(kIllegalLetter) + "Q"},
        {"1HGCM826I3A004352", false, QString(kIllegalLetter) + "I"}, // a letter is judged before the check digit
        {"1HGCM8263 A004352", false, QString(kIllegalChar) + " "},
        {"1HGCM82633A00435\u00C9", false, QString(kIllegalChar) + QString::fromUtf8("\u00C9")},
        {"QHGCM82633A004352", false, QString(kIllegalLetter) + "Q"}, // the first offender, not the check digit
    };
    for (const Case &c : cases) {
        LogCapture log;
        EXPECT_EQ(VINUtility::checkVINValidity(QString::fromUtf8(c.vin)), c.valid) << c.vin;
        // The quiet form agrees, and adds no line of its own.
        EXPECT_EQ(VINCheck::verdict(QString::fromUtf8(c.vin)) == VINCheck::Verdict::Valid, c.valid) << c.vin;
        if (c.expectedLog.isEmpty())
            EXPECT_TRUE(log.lines().isEmpty()) << c.vin << ": " << log.lines().join('|').toStdString();
        else
            EXPECT_EQ(log.lines(), QStringList{c.expectedLog}) << c.vin;
    }
    LogCapture log;
    EXPECT_FALSE(VINUtility::checkVINValidity(QString()));
    EXPECT_TRUE(log.lines().isEmpty()) << "absent input is refused without a log line";
}

TEST(VINCheck, AgreesWithTheCheckDigitRuleOnRealVehicles)
{
    const auto rows = TestData::readCsv(TestData::directory() + "/vins/real-vins.csv");
    ASSERT_GT(rows.size(), 200);
    const int vinColumn = rows.first().indexOf("vin"), ruleColumn = rows.first().indexOf("rule");
    ASSERT_TRUE(vinColumn >= 0 && ruleColumn >= 0);
    int valid = 0;
    for (int i = 1; i < rows.size(); ++i) {
        ASSERT_GT(rows[i].size(), ruleColumn) << "row " << i;
        const bool expected = rows[i][ruleColumn] == QLatin1String("1");
        EXPECT_EQ(VINUtility::checkVINValidity(rows[i][vinColumn]), expected) << rows[i][vinColumn].toStdString();
        EXPECT_EQ(VINCheck::verdict(rows[i][vinColumn]) == VINCheck::Verdict::Valid, expected);
        valid += expected;
    }
    EXPECT_GT(valid, 150);
}

TEST(VINNormaliser, ReplacesOnlyIAndOInEitherCase)
{
    EXPECT_EQ(VINUtility::replaceCharactersInVIN("1hgcm82633a0o4352"), "1hgcm82633a004352");
    EXPECT_EQ(VINUtility::replaceCharactersInVIN("QIO"), "Q10");
    EXPECT_EQ(VINUtility::replaceCharactersInVIN("iIoO-q Q"), "1100-q Q");
    EXPECT_TRUE(VINUtility::replaceCharactersInVIN(QString()).isNull());
    EXPECT_EQ(VINUtility::replaceCharactersInVIN(""), "");
}
