#include "KImage/CameraProperties.h"
#include "KImage/LensIDProperties.h"
#include "foundation/KException.h"
#include "support/Files.h"

#include <gtest/gtest.h>

#include <QTextStream>

namespace {

QList<CameraProperties::Entry> cameras(QString text)
{
    QTextStream stream(&text);
    return CameraProperties::parse(stream);
}

} // namespace

TEST(Tables, LinesThatAreNoEntriesAreLeftOut)
{
    const QList<CameraProperties::Entry> entries =
        cameras("# Canon;A;1\n\nCanon;A400;6.5 # small;sensor\nCanon;A40\nCanon;A40;5.4;9\n"
                "Canon;A40;wide\nCanon;A40; 5.4\nNikon;;");
    ASSERT_EQ(entries.size(), 2);
    EXPECT_EQ(entries.at(0).model, "A400");
    EXPECT_EQ(entries.at(0).scale, 6.5);
    EXPECT_EQ(entries.at(1).scale, 5.4);

    QString text("8 8 74 3.6 1.4;NIKON;Fish;1\n24 24 1 2 2;NIKON;Plain\n24 24 1 2 2;NIKON;x;3\n"
                 "24 24 1 2 2;NIKON\n24 24 1 2 2;N;T;2#c\n24;a;b;0;c");
    QTextStream stream(&text);
    const QList<LensIDProperties::Entry> lenses = LensIDProperties::parse(stream);
    ASSERT_EQ(lenses.size(), 3);
    EXPECT_EQ(lenses.at(0).type, LensType::Fisheye);
    EXPECT_EQ(lenses.at(1).type, LensType::Standard);
    EXPECT_EQ(lenses.at(2).type, LensType::TiltShift);
}

TEST(Tables, CamerasOfTheProgramAreFound)
{
    CameraProperties *table = CameraProperties::instance();
    // 0: unknown.
    const std::tuple<const char *, const char *, double> rows[] = {
        {"NIKON CORPORATION", "NIKON D750", 1.0},
        {"NIKON CORPORATION", "NIKON D7500", 1.534},
        {"Canon", "Canon EOS 5D Mark II", 1.0},
        {"Canon", "Canon EOS 350D DIGITAL", 1.62},
        {"SONY", "ILCE-6000", 1.534},
        {"FUJIFILM", "X-T1", 1.529},
        {"Canon", "Canon PowerShot A400", 7.69},
        {"Canon", "Canon EOS 0000", 0},
        {"", "", 0},
    };
    for (const auto &[make, model, expected] : rows) {
        double scale = -1;
        EXPECT_EQ(table->getSensorScale(make, model, scale), expected > 0) << model;
        EXPECT_NEAR(scale, expected > 0 ? expected : -1, 0.01) << model;
    }
}

TEST(Tables, NoNameHidesALongerOneThatFollows)
{
    const QList<CameraProperties::Entry> entries =
        cameras(QString::fromUtf8(test::readFile("Data:cameras.txt")));
    EXPECT_GT(entries.size(), 2000);
    for (int i = 0; i < entries.size(); ++i) {
        for (int j = i + 1; j < entries.size() && entries.at(j).brand == entries.at(i).brand; ++j)
            EXPECT_FALSE(entries.at(j).model.contains(entries.at(i).model))
                << entries.at(i).model.toStdString() << " hides "
                << entries.at(j).model.toStdString();
    }
}

TEST(Tables, LensesOfTheProgramAreFound)
{
    LensIDProperties *table = LensIDProperties::instance();
    const QList<LensIDProperties::Entry> fish = table->getLens("8 8 74 3.6 1.4", "nikon");
    ASSERT_EQ(fish.size(), 1);
    EXPECT_EQ(fish.first().type, LensType::Fisheye);
    EXPECT_TRUE(fish.first().name.contains("8mm"));
    EXPECT_TRUE(table->getLens("8 8 74 3.6 1.4", "Canon").isEmpty());
    EXPECT_TRUE(table->getLens("", "Canon").isEmpty());
    EXPECT_GT(table->getLens("24 70", "CANON").size(), 1);
    EXPECT_GT(table->getLens("50 50", "").size(), table->getLens("50 50", "Canon").size());
}

TEST(Tables, MissingFileIsAnException)
{
    double scale = 0;
    try {
        CameraProperties("Data:none.txt").getSensorScale("Canon", "Canon", scale);
        FAIL();
    } catch (const KException &error) {
        EXPECT_EQ(error.message, "Can't open Data:none.txt");
    }
    EXPECT_THROW(LensIDProperties("Data:none.txt").getLens("8", "Canon"), KException);
}
