#include "settings/KSettingsManager.h"

#include "settings/StoreFile.h"
#include "support/Files.h"

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
    const QVariantMap values{
        {"general/last_update_check", QDateTime(QDate(1970, 1, 1), QTime(0, 0))},
        {"x/list", QStringList({"a", "b,c"})},
        {"x/colour", QColor(1, 2, 3, 4)},
        {"x/bytes", QByteArray("\0@\"x", 4)},
        {"x/rect", QRect(1, 2, 3, 4)},
        {"x/text", QString::fromUtf8("@Variant(\\0 \xC3\xA9")}};
    const test::StoreFile file;
    {
        KSettingsManager store = file.open();
        for (auto entry = values.cbegin(); entry != values.cend(); ++entry)
            store.Set(entry.key(), entry.value());
        store.Set("general/gone", 1);
        store.Remove("general/gone");
        EXPECT_EQ(store.GetDateTime("general/last_update_check").date().year(), 1970);
        EXPECT_TRUE(store.Flush());
    }
    KSettingsManager store = file.open();
    EXPECT_FALSE(QFile::exists(file.path + ".damaged"));
    EXPECT_EQ(store.GetInt("general/gone", 7), 7);
    EXPECT_EQ(store.GetColor("x/colour"), QColor(1, 2, 3, 4));
    EXPECT_EQ(store.GetRect("x/rect", QRect()), QRect(1, 2, 3, 4));
    EXPECT_EQ(store.GetStringList("x/list").size(), 2);
    EXPECT_EQ(store.GetByteArray("x/bytes").size(), 4);
    for (auto entry = values.cbegin(); entry != values.cend(); ++entry)
        EXPECT_EQ(store.GetVariant(entry.key(), 7), entry.value()) << entry.key().toStdString();
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
    // A list of texts that claims to have two thousand million entries.
    const QByteArray huge("(\\0\\0\\0\\v\\x7f\\xff\\xff\\xff)\n");
    const QByteArray nested = QByteArray("\\0\\0\\0\\t\\0\\0\\0\\x1").repeated(50000);
    // The later ones are written so that only the INI reader sees the word.
    // clang-format off
    const QByteArray hostile[] = {
        "@Variant" + huge, "@DateTime" + huge, "@Variant(" + nested + ")\n",
        "\\x40Variant" + huge, "\\100Variant" + huge, "@Va\"\" riant" + huge,
        "@Va\\\r\nriant" + huge, "@Va\\zriant" + huge, "@Va\\xriant" + huge, "\\@@Variant" + huge,
        QByteArray("x\0\nw=@Variant", 13) + huge, "@Va\"\"\xEF\xBB\xBFriant" + huge};
    const QByteArray damaged[] = {
        "@Rect(1 2\n=\n[]\n\xff\xfe", QByteArray("\0\1[\0]\n=\0", 8), "\\x", "abc\n",
        "@@Variant" + huge};
    // clang-format on
    const auto expectDefault = [](const QByteArray &value, bool setAside) {
        const QByteArray text = "[s]\nv=" + value;
        SCOPED_TRACE(text.left(40).toStdString());
        const test::StoreFile file;
        file.write(text);
        KSettingsManager store = file.open();
        EXPECT_EQ(store.GetInt("s/v", 7), 7);
        const QString aside = file.path + ".damaged";
        EXPECT_EQ(QFile::exists(aside), setAside);
        EXPECT_EQ(setAside ? test::readFile(aside) : file.text(), text);
    };
    for (const QByteArray &value : hostile)
        expectDefault(value, true);
    for (const QByteArray &value : damaged)
        expectDefault(value, false);
}
