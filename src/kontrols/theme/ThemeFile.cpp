#include "kontrols/theme/ThemeFile.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace theme {

namespace {

constexpr int kMaximumSize = 1 << 20;
constexpr qreal kMaximumPointSize = 200;
constexpr qreal kMaximumLetterSpacing = 100;
constexpr qreal kMaximumRadius = 1000;
constexpr qreal kMaximumFactor = 10;

struct ColorKey
{
    const char *key;
    ColorRole role;
};
constexpr ColorKey kColorKeys[] = {{"foreground", ColorRole::Foreground},
                                   {"background", ColorRole::Background},
                                   {"darkerForeground", ColorRole::DarkerForeground},
                                   {"darkerBackground", ColorRole::DarkerBackground},
                                   {"lighterBackground", ColorRole::LighterBackground},
                                   {"selection", ColorRole::Selection}};

struct FontKey
{
    const char *key;
    FontRole role;
};
constexpr FontKey kFontKeys[] = {{"main", FontRole::Main}, {"alternate", FontRole::Alternate},
                                 {"h1", FontRole::H1},     {"h2", FontRole::H2},
                                 {"h3", FontRole::H3},     {"h4", FontRole::H4}};

const QHash<QString, QFont::Weight> &weights()
{
    static const QHash<QString, QFont::Weight> words = {
        {QStringLiteral("thin"), QFont::Thin},
        {QStringLiteral("extralight"), QFont::ExtraLight},
        {QStringLiteral("light"), QFont::Light},
        {QStringLiteral("regular"), QFont::Normal},
        {QStringLiteral("normal"), QFont::Normal},
        {QStringLiteral("medium"), QFont::Medium},
        {QStringLiteral("semibold"), QFont::DemiBold},
        {QStringLiteral("demibold"), QFont::DemiBold},
        {QStringLiteral("bold"), QFont::Bold},
        {QStringLiteral("extrabold"), QFont::ExtraBold},
        {QStringLiteral("black"), QFont::Black}};
    return words;
}

const QHash<QString, QFont::Capitalization> &capitalizations()
{
    static const QHash<QString, QFont::Capitalization> words = {
        {QStringLiteral("mixedcase"), QFont::MixedCase},
        {QStringLiteral("alluppercase"), QFont::AllUppercase},
        {QStringLiteral("alllowercase"), QFont::AllLowercase},
        {QStringLiteral("smallcaps"), QFont::SmallCaps},
        {QStringLiteral("capitalize"), QFont::Capitalize}};
    return words;
}

template <class Value>
std::optional<Value> word(const QJsonValue &value, const QHash<QString, Value> &words)
{
    const auto found = words.constFind(value.toString().toLower());
    return found == words.constEnd() ? std::nullopt : std::optional<Value>(*found);
}

std::optional<qreal> number(const QJsonValue &value, qreal lowest, qreal highest)
{
    if (!value.isDouble() || value.toDouble() < lowest || value.toDouble() > highest)
        return std::nullopt;
    return value.toDouble();
}

std::optional<qreal> positiveNumber(const QJsonValue &value, qreal highest)
{
    const std::optional<qreal> result = number(value, 0, highest);
    return result > 0.0 ? result : std::nullopt;
}

FontChoice readFont(const QJsonObject &object)
{
    FontChoice font;
    const QString family = object.value(QLatin1String("family")).toString();
    if (!family.isEmpty())
        font.family = family;
    font.pointSize = positiveNumber(object.value(QLatin1String("pointSize")), kMaximumPointSize);
    font.weight = word(object.value(QLatin1String("weight")), weights());
    font.capitalization = word(object.value(QLatin1String("capitalization")), capitalizations());
    font.letterSpacing = number(object.value(QLatin1String("letterSpacing")),
                                -kMaximumLetterSpacing, kMaximumLetterSpacing);
    return font;
}

Section readSection(const QJsonObject &object)
{
    Section section;
    const QJsonObject colors = object.value(QLatin1String("colors")).toObject();
    for (const ColorKey &entry : kColorKeys) {
        const QString name = colors.value(QLatin1String(entry.key)).toString();
        if (!name.isEmpty() && QColor::isValidColor(name))
            section.colors.insert(entry.role, QColor(name));
    }
    const QJsonObject fonts = object.value(QLatin1String("fonts")).toObject();
    for (const FontKey &entry : kFontKeys) {
        const QJsonValue font = fonts.value(QLatin1String(entry.key));
        if (font.isObject())
            section.fonts.insert(entry.role, readFont(font.toObject()));
    }
    section.fontFactor = positiveNumber(fonts.value(QLatin1String("fontFactor")), kMaximumFactor);
    section.radius = number(object.value(QLatin1String("radius")), 0, kMaximumRadius);
    return section;
}

template <class Value>
void completeValue(std::optional<Value> &mine, const std::optional<Value> &other)
{
    if (!mine)
        mine = other;
}

} // namespace

void FontChoice::complete(const FontChoice &other)
{
    completeValue(family, other.family);
    completeValue(pointSize, other.pointSize);
    completeValue(weight, other.weight);
    completeValue(capitalization, other.capitalization);
    completeValue(letterSpacing, other.letterSpacing);
}

void Section::complete(const Section &other)
{
    for (auto it = other.colors.begin(); it != other.colors.end(); ++it) {
        if (!colors.contains(it.key()))
            colors.insert(it.key(), it.value());
    }
    for (auto it = other.fonts.begin(); it != other.fonts.end(); ++it)
        fonts[it.key()].complete(it.value());
    completeValue(radius, other.radius);
    completeValue(fontFactor, other.fontFactor);
}

void ThemeFile::complete(const ThemeFile &parent)
{
    global.complete(parent.global);
    for (auto it = parent.controls.begin(); it != parent.controls.end(); ++it)
        controls[it.key()].complete(it.value());
}

std::optional<ThemeFile> parseThemeFile(const QByteArray &text, QString *error)
{
    if (text.size() > kMaximumSize) {
        *error = QStringLiteral("larger than %1 bytes").arg(kMaximumSize);
        return std::nullopt;
    }
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(text, &parseError);
    if (!document.isObject()) {
        *error = parseError.error == QJsonParseError::NoError ? QStringLiteral("not a JSON object")
                                                              : QStringLiteral("%1 at byte %2")
                                                                    .arg(parseError.errorString())
                                                                    .arg(parseError.offset);
        return std::nullopt;
    }

    const QJsonObject object = document.object();
    ThemeFile file;
    file.title = object.value(QLatin1String("title")).toString();
    if (file.title.isEmpty()) {
        *error = QStringLiteral("no title");
        return std::nullopt;
    }
    file.extends = object.value(QLatin1String("extends")).toString();
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (!it.value().isObject())
            continue;
        const Section section = readSection(it.value().toObject());
        if (it.key() == QLatin1String("global"))
            file.global = section;
        else
            file.controls.insert(it.key(), section);
    }
    return file;
}

} // namespace theme
