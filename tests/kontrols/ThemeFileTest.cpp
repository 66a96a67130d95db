#include "kontrols/theme/ThemeFile.h"

#include <gtest/gtest.h>

using namespace theme;

namespace {

std::optional<ThemeFile> parse(const QByteArray &text)
{
    QString error;
    const std::optional<ThemeFile> file = parseThemeFile(text, &error);
    EXPECT_EQ(file.has_value(), error.isEmpty()) << error.toStdString();
    return file;
}

} // namespace

TEST(ThemeFile, refusesWhatIsNoThemeAndSaysWhy)
{
    const QByteArray deep = "{\"title\":" + QByteArray(5000, '[') + QByteArray(5000, ']') + "}";
    const std::tuple<QByteArray, const char *> cases[] = {
        {"", "illegal value"},
        {"not json", "illegal value"},
        {"[]", "not a JSON object"},
        {"{\"title\": \"A\",", "unterminated"},
        {deep, "too deeply nested"},
        {"{}", "no title"},
        {"{\"title\": \"\"}", "no title"},
        {"{\"title\": 7}", "no title"},
        {QByteArray((1 << 20) + 1, ' '), "larger than"}};
    for (const auto &[text, reason] : cases) {
        QString error;
        EXPECT_FALSE(parseThemeFile(text, &error)) << text.left(40).toStdString();
        EXPECT_TRUE(error.contains(QLatin1String(reason))) << error.toStdString();
    }
}

TEST(ThemeFile, readsEveryKey)
{
    const auto file = parse(R"({"title": "A", "extends": "B",
        "global": {"colors": {"foreground": "white", "background": "#231F20"},
                   "fonts": {"fontFactor": 0.5,
                             "main": {"family": "F", "pointSize": 14, "weight": "Light",
                                      "capitalization": "AllUppercase", "letterSpacing": 1.1}},
                   "radius": 3},
        "combobox": {"colors": {"background": "#FFF"}}})");
    ASSERT_TRUE(file);
    EXPECT_EQ(file->title, QLatin1String("A"));
    EXPECT_EQ(file->extends, QLatin1String("B"));
    EXPECT_EQ(file->global.colors.value(ColorRole::Foreground), QColor(Qt::white));
    EXPECT_EQ(file->global.colors.value(ColorRole::Background), QColor(0x23, 0x1F, 0x20));
    EXPECT_EQ(file->global.radius, 3.0);
    EXPECT_EQ(file->global.fontFactor, 0.5);
    const FontChoice main = file->global.fonts.value(FontRole::Main);
    EXPECT_EQ(main.family, QStringLiteral("F"));
    EXPECT_EQ(main.pointSize, 14.0);
    EXPECT_EQ(main.weight, QFont::Light);
    EXPECT_EQ(main.capitalization, QFont::AllUppercase);
    EXPECT_EQ(main.letterSpacing, 1.1);
    EXPECT_EQ(file->controls.value(QStringLiteral("combobox")).colors.value(ColorRole::Background),
              QColor(Qt::white));
}

TEST(ThemeFile, countsAValueOutsideItsRangeOrTypeAsNotGiven)
{
    const char *const values[] = {"-1",   "0",    "1e9",  "1e308", "\"14\"",
                                  "true", "null", "[14]", "{}"};
    for (const char *value : values) {
        const auto file = parse(QByteArray(R"({"title": "A", "global": {"fonts": {"fontFactor": V,
                "main": {"pointSize": V, "weight": V, "capitalization": V, "family": V}}}})")
                                    .replace("V", value)
                                    .replace("\"family\": \"14\"", "\"family\": 1"));
        ASSERT_TRUE(file) << value;
        const FontChoice main = file->global.fonts.value(FontRole::Main);
        EXPECT_FALSE(main.pointSize) << value;
        EXPECT_FALSE(main.weight) << value;
        EXPECT_FALSE(main.capitalization) << value;
        EXPECT_FALSE(main.family) << value;
        EXPECT_FALSE(file->global.fontFactor) << value;
    }
    const auto file = parse(R"({"title": "A", "global": {"radius": 1e7, "colors": {
        "foreground": "no colour", "background": 7, "selection": ""},
        "fonts": {"main": {"letterSpacing": -1e5}, "h1": 3}}, "button": 4})");
    ASSERT_TRUE(file);
    EXPECT_FALSE(file->global.radius);
    EXPECT_TRUE(file->global.colors.isEmpty());
    EXPECT_FALSE(file->global.fonts.value(FontRole::Main).letterSpacing);
    EXPECT_FALSE(file->global.fonts.contains(FontRole::H1));
    EXPECT_TRUE(file->controls.isEmpty());
}
