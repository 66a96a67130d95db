#include "foundation/KException.h"
#include "foundation/KSimpleChronometer.h"
#include "foundation/KSystemInfo.h"
#include "foundation/KVersion.h"

#include <gtest/gtest.h>

#include <QDir>

TEST(Texts, Durations)
{
    // Exactly one of a unit still counts in the smaller one; decimals are cut, but not those of ns.
    // clang-format off
    const std::tuple<qint64, qint64, const char *> rows[] = {
        {1500, 1000, "1.5 s"}, {500, 1000, "500 ms"}, {90, 1, "1 min:30 s"},
        {3700, 1, "1 h:1 min:40 s"}, {363541, 1, "100 h:59 min:1 s"},
        {36001, 10, "1 h:0 min:0.1 s"}, {1, 1, "1000 ms"}, {60, 1, "60 s"},
        {3600, 1, "60 min:0 s"}, {1, 1000, "1000 us"}, {1, 1000000, "1000 ns"},
        {19999, 10000, "1.999 s"}, {19999, 10000000, "1.999 ms"},
        {19999, 10000000000, "1.999 us"}, {3, 40000000000, "0.075 ns"}, {0, 1, "0 ns"},
        {5, 0, "0 ns"}};
    // clang-format on
    for (const auto &[ticks, frequency, expected] : rows)
        EXPECT_EQ(KSimpleChronometer::ToText(ticks, frequency).toStdString(), expected);

    const double inUnits[] = {5400, 1.5, 90, 5400, 5.4e6, 5.4e9, 5.4e12, 5400};
    for (int unit = -1; unit < 7; ++unit)
        EXPECT_DOUBLE_EQ(KSimpleChronometer::ToUnit(54000, 10, unit), inUnits[unit + 1]) << unit;
}

TEST(Texts, ByteCounts)
{
    const quint64 tera = quint64(1) << 40;
    // clang-format off
    const std::pair<quint64, const char *> rows[] = {
        {0, "0 Bytes"}, {1023, "1023 Bytes"}, {1024, "1 KB"}, {1536, "1.5 KB"},
        {123456, "120 KB"}, {10000, "9.76 KB"}, {tera - 1, "1 TB"}, {tera / 1024, "1 GB"},
        {tera, "1 TB"}, {tera * 12345, "1234 TB"}, {~quint64(0), "1.67 TB"}};
    // clang-format on
    for (const auto &[count, expected] : rows)
        EXPECT_EQ(KSystemInfo::BytesToText(count).toStdString(), expected);
}

TEST(Version, NamesCarryTheFirstTwoNumbersOnly)
{
    const std::pair<const char *, const char *> rows[] = {
        {"2.3.1.400", "2.3"}, {"10.0", "10.0"}, {"7", "7"}, {"", ""}, {"1.2.", "1.2"}};
    for (const auto &[text, expected] : rows)
        EXPECT_EQ(KVersion::majorMinor(QString::fromLatin1(text)).toStdString(), expected);
    EXPECT_EQ(KVersion::applicationName().toStdString(), "Orbilens Player 2.3");
}

TEST(Exceptions, CarryTheMessageAndThePlaceOfTheThrow)
{
    const int line = __LINE__ + 2;
    try {
        K_THROW(KException::FileNotFound("gone.jpg"));
    } catch (const KException &error) {
        const QString path = QDir::current().absoluteFilePath("gone.jpg");
        EXPECT_EQ(error.message, "File \"" + path + "\" is not found\n");
        EXPECT_EQ(error.location, QString("File: \"FoundationTextsTest\" Line: %1").arg(line));
    }
    EXPECT_STREQ(KException::LocationText(".\\KPool.cpp", 42).data(), "File: \"KPool\" Line: 42");
    EXPECT_STREQ(KException::LocationText("/a.b/c_d", 2147483647).data(),
                 "File: \"c_d\" Line: 2147483647");
}
