#include "foundation/KVersion.h"

#include <gtest/gtest.h>

TEST(Version, NamesCarryTheFirstTwoNumbersOnly)
{
    const struct
    {
        const char *text;
        const char *expected;
    } rows[] = {{"2.3.1.400", "2.3"}, {"10.0", "10.0"}, {"7", "7"}, {"", ""}, {"1.2.", "1.2"}};
    for (const auto &row : rows)
        EXPECT_EQ(KVersion::majorMinor(QString::fromLatin1(row.text)).toStdString(), row.expected);
    EXPECT_EQ(KVersion::applicationName().toStdString(), "Orbilens Player 2.3");
}
