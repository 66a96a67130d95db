#include "kontrols/theme/ThemeBook.h"
#include "support/Files.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

using namespace theme;

namespace {

struct ThemeBookTest : ::testing::Test
{
    void write(const QString &name, const QByteArray &text)
    {
        test::writeFile(m_folder.filePath(name), text);
    }

    QString folder(const QString &name = {}) const { return m_folder.filePath(name); }

    static QColor color(const MergedTheme &theme, ColorRole role, const QString &control = {})
    {
        return theme.valuesFor(control).colors.value(role);
    }

    QTemporaryDir m_folder;
    ThemeBook m_book;
};

} // namespace

TEST_F(ThemeBookTest, takesWhatIsMissingFromTheThemesItExtends)
{
    write("a.thm", R"({"title": "Grandparent", "global": {"radius": 5,
        "colors": {"foreground": "red", "background": "red", "selection": "red"},
        "fonts": {"main": {"family": "F", "pointSize": 10, "weight": "Bold"}}},
        "combobox": {"colors": {"background": "blue"}}})");
    write("b.thm", R"({"title": "Parent", "extends": "Grandparent", "global": {
        "colors": {"foreground": "lime", "background": "lime"},
        "fonts": {"main": {"pointSize": 20}}}})");
    write("c.thm", R"({"title": "Child", "extends": "Parent", "global": {
        "colors": {"foreground": "blue"}}})");
    EXPECT_TRUE(m_book.readFolder(folder()).isEmpty());

    const std::optional<MergedTheme> child = m_book.merged(QStringLiteral("Child"));
    ASSERT_TRUE(child);
    EXPECT_EQ(color(*child, ColorRole::Foreground), QColor(Qt::blue));
    EXPECT_EQ(color(*child, ColorRole::Background), QColor(Qt::green));
    EXPECT_EQ(color(*child, ColorRole::Selection), QColor(Qt::red));
    const Section values = child->valuesFor({});
    EXPECT_EQ(values.radius, 5.0);
    EXPECT_EQ(values.fonts.value(FontRole::Main).pointSize, 20.0);
    EXPECT_EQ(values.fonts.value(FontRole::Main).weight, QFont::Bold);
    EXPECT_EQ(values.fonts.value(FontRole::H1).family, QStringLiteral("F"))
        << "a heading without a family is set in the main one";
    // What an ancestor says of one control stands above what the child says of all.
    EXPECT_EQ(color(*child, ColorRole::Background, "combobox"), QColor(Qt::blue));
    EXPECT_EQ(color(*child, ColorRole::Foreground, "combobox"), QColor(Qt::blue));
    EXPECT_EQ(color(*child, ColorRole::Background, "button"), QColor(Qt::green));
}

TEST_F(ThemeBookTest, endsAChainThatLeadsNowhereOrInACircle)
{
    write("a.thm", R"({"title": "Self", "extends": "Self", "global": {"radius": 1}})");
    write("b.thm", R"({"title": "Left", "extends": "Right", "global": {"radius": 2}})");
    write("c.thm", R"({"title": "Right", "extends": "Left", "global": {"radius": 3}})");
    write("d.thm", R"({"title": "Orphan", "extends": "Nobody", "global": {"radius": 4}})");
    m_book.readFolder(folder());
    const std::tuple<const char *, qreal> cases[] = {
        {"Self", 1}, {"Left", 2}, {"Right", 3}, {"Orphan", 4}};
    for (const auto &[title, radius] : cases) {
        const auto theme = m_book.merged(QLatin1String(title));
        ASSERT_TRUE(theme) << title;
        EXPECT_EQ(theme->valuesFor({}).radius, radius) << title;
        EXPECT_EQ(color(*theme, ColorRole::Selection), color(MergedTheme(), ColorRole::Selection))
            << title << ": what no theme of the chain gives is built in";
    }
    EXPECT_FALSE(m_book.merged(QStringLiteral("Nobody")));
    EXPECT_FALSE(m_book.merged({}));
}

TEST_F(ThemeBookTest, keepsGoodThemesBesideBrokenOnesAndOverSeveralFolders)
{
    write("one/base.thm", R"({"title": "Base", "global": {"radius": 1}})");
    write("one/broken.thm", "{");
    write("one/other.json", R"({"title": "Other"})");
    write("two/child.thm", R"({"title": "Child", "extends": "Base"})");
    const QStringList faults = m_book.readFolder(folder("one"));
    ASSERT_EQ(faults.size(), 1);
    EXPECT_TRUE(faults.first().contains(QLatin1String("broken.thm")));
    EXPECT_TRUE(m_book.readFolder(folder("two")).isEmpty());
    EXPECT_TRUE(m_book.readFolder(folder("missing")).isEmpty());
    EXPECT_FALSE(m_book.merged(QStringLiteral("Other")));
    ASSERT_TRUE(m_book.merged(QStringLiteral("Child")));
    EXPECT_EQ(m_book.merged(QStringLiteral("Child"))->valuesFor({}).radius, 1.0);

    write("two/base.thm", R"({"title": "Base", "global": {"radius": 9}})");
    m_book.readFolder(folder("two"));
    EXPECT_EQ(m_book.merged(QStringLiteral("Child"))->valuesFor({}).radius, 9.0)
        << "a title read again replaces the first";
}

TEST_F(ThemeBookTest, choosesAStyleByClassNameThenByNearness)
{
    write("base/base.thm", R"({"title": "Base"})");
    for (const char *style : {"ButtonStyle", "ButtonStyle_imageonly", "TextFieldStyle"})
        write(QStringLiteral("base/styles/%1.qml").arg(QLatin1String(style)), "x");
    write("child/child.thm", R"({"title": "Child", "extends": "Base"})");
    write("child/styles/ButtonStyle.qml", "x");
    write("bare/bare.thm", R"({"title": "Bare", "extends": "Child"})");
    for (const char *name : {"base", "child", "bare"})
        m_book.readFolder(folder(QLatin1String(name)));

    const std::tuple<const char *, const char *, QStringList, const char *> cases[] = {
        {"Base", "ButtonStyle", {}, "base/styles/ButtonStyle.qml"},
        {"Base", "ButtonStyle", {"imageonly"}, "base/styles/ButtonStyle_imageonly.qml"},
        {"Base", "ButtonStyle", {"unknown"}, "base/styles/ButtonStyle.qml"},
        {"Base", "ButtonStyle", {"unknown", "imageonly"}, "base/styles/ButtonStyle_imageonly.qml"},
        {"Base", "ComboBoxStyle", {"light"}, ""},
        {"Child", "ButtonStyle", {}, "child/styles/ButtonStyle.qml"},
        {"Child", "ButtonStyle", {"imageonly"}, "base/styles/ButtonStyle_imageonly.qml"},
        {"Bare", "ButtonStyle", {}, "child/styles/ButtonStyle.qml"},
        {"Bare", "TextFieldStyle", {}, "base/styles/TextFieldStyle.qml"},
        {"Base", "../styles/ButtonStyle", {}, ""},
        {"Base", "ButtonStyle", {"../ButtonStyle"}, "base/styles/ButtonStyle.qml"},
    };
    for (const auto &[title, type, classNames, file] : cases) {
        const auto theme = m_book.merged(QLatin1String(title));
        ASSERT_TRUE(theme);
        const QUrl expected = *file ? QUrl::fromLocalFile(folder(QLatin1String(file))) : QUrl();
        EXPECT_EQ(theme->styleFile(QLatin1String(type), classNames), expected)
            << title << ' ' << type << ' ' << classNames.join(' ').toStdString();
    }
}
