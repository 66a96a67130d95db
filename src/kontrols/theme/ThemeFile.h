#pragma once

// What one ".thm" file says: a plain value, read from untrusted bytes. Owned by whoever parsed it,
// usable on any thread.

#include <QByteArray>
#include <QColor>
#include <QFont>
#include <QHash>
#include <QMap>
#include <QString>

#include <optional>

namespace theme {

enum class ColorRole {
    Foreground,
    Background,
    DarkerForeground,
    DarkerBackground,
    LighterBackground,
    Selection
};

enum class FontRole { Main, Alternate, H1, H2, H3, H4 };

/// The parts of a font that a theme gives; what it leaves out comes from elsewhere.
struct FontChoice
{
    std::optional<QString> family;
    std::optional<qreal> pointSize; ///< in points, above 0
    std::optional<QFont::Weight> weight;
    std::optional<QFont::Capitalization> capitalization;
    std::optional<qreal> letterSpacing; ///< in pixels, added between letters

    /// Takes from @p other what is missing here.
    void complete(const FontChoice &other);
};

/// The values of "global", or of one control.
struct Section
{
    QMap<ColorRole, QColor> colors;
    QMap<FontRole, FontChoice> fonts;
    std::optional<qreal> radius;     ///< in pixels, not negative
    std::optional<qreal> fontFactor; ///< scales every point size, above 0

    /// Takes from @p other what is missing here.
    void complete(const Section &other);
};

struct ThemeFile
{
    QString title;
    QString extends; ///< empty when the theme stands alone
    Section global;
    QHash<QString, Section> controls; ///< by the control's lower-case name

    /// Takes from @p parent what is missing here, section by section.
    void complete(const ThemeFile &parent);
};

/// Reads a theme from JSON text. A value of the wrong type or outside a sensible range counts as
/// not given. @return nothing, with the reason in @p error, for a text that is too large, is no
/// JSON object or has no title.
[[nodiscard]] std::optional<ThemeFile> parseThemeFile(const QByteArray &text, QString *error);

} // namespace theme
