#include "settings/KSettingsManager.h"

#include "settings/StoreFile.h"

#include <QCoreApplication>

TEST(Store, BelongsToTheUserTheMakerAndTheRelease)
{
    {
        KSettingsManager store = KSettingsManager::ForUser();
        store.Set("a/b", 3);
    }
    const QSettings file(QSettings::UserScope, "Orvex", "Orbilens Player 2.3");
    EXPECT_EQ(file.value("a/b").toInt(), 3);
}

TEST(Store, KeepsEveryTypeFromOneRunToTheNext)
{
    const test::StoreFile file;
    const QDateTime when(QDate(1970, 1, 1), QTime(0, 0));
    {
        KSettingsManager store = file.open();
        store.Set("general/last_update_check", when);
        store.Set("x/bool", true);
        store.Set("x/double", 0.25);
        store.Set("x/list", QStringList({"a", "b,c"}));
        store.Set("x/bytes", QByteArray("\0@\"x", 4));
        store.Set("x/colour", QColor(1, 2, 3, 4));
        store.Set("x/rect", QRect(1, 2, 3, 4));
        store.Set("x/text", "@Variant(\\0 \xC3\xA9");
        store.Set("x/gone", 1);
        store.Remove("x/gone");
        store.Set("general/gone", 1);
        store.Remove("general/gone");
        EXPECT_EQ(store.GetDateTime("general/last_update_check"), when);
        EXPECT_TRUE(store.Flush());
    }
    ASSERT_FALSE(file.text().isEmpty());
    KSettingsManager store = file.open();
    EXPECT_EQ(store.GetDateTime("general/last_update_check", QDateTime()), when);
    EXPECT_TRUE(store.GetBool("x/bool"));
    EXPECT_EQ(store.GetDouble("x/double"), 0.25);
    EXPECT_EQ(store.GetStringList("x/list"), QStringList({"a", "b,c"}));
    EXPECT_EQ(store.GetByteArray("x/bytes"), QByteArray("\0@\"x", 4));
    EXPECT_EQ(store.GetColor("x/colour"), QColor(1, 2, 3, 4));
    EXPECT_EQ(store.GetRect("x/rect"), QRect(1, 2, 3, 4));
    EXPECT_EQ(store.GetString("x/text"), QString::fromUtf8("@Variant(\\0 \xC3\xA9"));
    EXPECT_EQ(store.GetInt("x/gone", 7), 7);
    EXPECT_EQ(store.GetInt("general/gone", 7), 7);
}

TEST(Store, GettersWithAndWithoutDefault)
{
    const test::StoreFile file;
    KSettingsManager store = file.open();
    store.Set("word", "abc");
    EXPECT_EQ(store.GetInt("word", 7), 7);
    EXPECT_EQ(store.GetDouble("word", 7.5), 7.5);
    EXPECT_EQ(store.GetInt("word"), 0);
    EXPECT_FALSE(store.GetColor("word").isValid());

    store.SetDefault("word", 4);
    store.SetDefault("absent", "#ff0000");
    EXPECT_EQ(store.GetString("word"), "abc");
    EXPECT_EQ(store.GetColor("absent"), QColor(255, 0, 0));
    EXPECT_EQ(store.GetString("absent", "own"), "own");
    store.SetDefault("absent", 9);
    EXPECT_EQ(store.GetInt("absent"), 9);
    EXPECT_EQ(store.GetRect("unknown"), QRect());

    EXPECT_EQ(store.GetVariant("k", 1), QVariant(1));
    EXPECT_EQ(store.GetVariant("k", 2), QVariant(2));
    EXPECT_EQ(store.GetInt("k"), 1);
}

TEST(Store, OfDefaultsOnlyNeverAnswersWithWhatWasStored)
{
    QCoreApplication::setOrganizationName("Orvex");
    QCoreApplication::setApplicationName("defaults only");
    KSettingsManager store;
    store.Set("k", 5);
    EXPECT_EQ(store.GetInt("k"), 0);
    store.SetDefault("k", 6);
    EXPECT_EQ(store.GetInt("k"), 6);
    EXPECT_EQ(store.GetInt("k", 7), 5);
}

TEST(Store, DamagedFileGivesDefaultsAndHostileOnesAreSetAside)
{
    const struct
    {
        const char *name;
        QByteArray text;
        bool setAside;
    } rows[] = {
        {"no section end", "[s\nv=@Rect(1 2\n=\n[]\n\xff\xfe", false},
        {"binary", QByteArray("\0\x01\x02[\0]\n=\0", 9), false},
        {"unended escape", "[s]\nv=\\x", false},
        {"word for a number", "[s]\nv=abc\n", false},
        {"text of a list count", "[s]\nv=\"x @@Variant(\\0\\0\\0\\t\"\n", false},
        {"list with a huge count", "[s]\nv=@Variant(\\0\\0\\0\\t\\x7f\\xff\\xff\\xff)\n", true},
        {"texts with a huge count", "[s]\nv=@Variant(\\0\\0\\0\\v\\x7f\\xff\\xff\\xff)\n", true},
        {"nested lists",
         "[s]\nv=@Variant(" + QByteArray("\\0\\0\\0\\t\\0\\0\\0\\x1").repeated(50000), true},
        {"hidden by a hex escape", "[s]\nv=\\x40Variant(\\0\\0\\0\\v\\x7f\\xff\\xff\\xff)\n", true},
        {"hidden by an octal escape", "[s]\nv=\\100Variant(\\0\\0\\0\\v\\x7f\\xff\\xff\\xff)\n",
         true},
        {"hidden by quotes", "[s]\nv=@Va\"\"riant(\\0\\0\\0\\v\\x7f\\xff\\xff\\xff)\n", true},
        {"hidden by a line end", "[s]\nv=@Va\\\r\nriant(\\0\\0\\0\\v\\x7f\\xff\\xff\\xff)\n", true},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const test::StoreFile file;
        file.write(row.text);
        KSettingsManager store = file.open();
        EXPECT_EQ(store.GetInt("s/v", 7), 7);
        QFile aside(file.path + ".damaged");
        EXPECT_EQ(aside.open(QIODevice::ReadOnly), row.setAside);
        EXPECT_EQ((row.setAside ? aside.readAll() : file.text()).toStdString(),
                  row.text.toStdString());
    }
}
