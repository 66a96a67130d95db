#include "app/MediaChoice.h"

#include "render/KShaderCodeBuilder.h"

#include <QFileInfo>

namespace MediaChoice {

namespace {

/// Projection codes of the metadata.
enum MetadataProjection { StandardPicture = 0, Equirectangular = 1, Cubemap = 256 };
/// Stereo codes of the metadata.
enum MetadataStereo { Mono = 0, SideBySide = 1, OverUnder = 2 };

} // namespace

QString suffix(const QUrl &url)
{
    return QFileInfo(url.toString()).suffix().toLower();
}

QUrl urlFromText(const QString &text)
{
    static const QStringList kKept{QStringLiteral("http"), QStringLiteral("https"),
                                   QStringLiteral("rtsp"), QStringLiteral("udp"),
                                   QStringLiteral("file")};
    const QUrl url(text, QUrl::TolerantMode);
    return kKept.contains(url.scheme()) ? url : QUrl::fromLocalFile(text);
}

QStringList videoSuffixes()
{
    return {QStringLiteral("3gp"),  QStringLiteral("aif"),   QStringLiteral("asf"),
            QStringLiteral("avi"),  QStringLiteral("divx"),  QStringLiteral("dvx"),
            QStringLiteral("flv"),  QStringLiteral("h264"),  QStringLiteral("h265"),
            QStringLiteral("m3u8"), QStringLiteral("m4v"),   QStringLiteral("mkv"),
            QStringLiteral("mov"),  QStringLiteral("movie"), QStringLiteral("mp4"),
            QStringLiteral("mp4v"), QStringLiteral("mpe"),   QStringLiteral("mpeg"),
            QStringLiteral("mpg"),  QStringLiteral("ogg"),   QStringLiteral("swf"),
            QStringLiteral("ts"),   QStringLiteral("vivo"),  QStringLiteral("webm"),
            QStringLiteral("wmv")};
}

std::optional<int> stereoMode(const QString &playListText, const QVariantMap &metadata)
{
    QString text = playListText;
    const QVariant code = metadata.value(QStringLiteral("Stereoscopy"));
    if (text.isEmpty() && code.isValid()) {
        switch (code.toInt()) {
        case Mono:
            text = QStringLiteral("None");
            break;
        case SideBySide:
            text = QStringLiteral("SideBySide");
            break;
        case OverUnder:
            text = QStringLiteral("OverUnder");
            break;
        default:
            break;
        }
    }
    if (text.isEmpty() || text == QLatin1String("None"))
        return KShaderCodeBuilder::STEREO_2D;
    if (text == QLatin1String("OverUnder"))
        return KShaderCodeBuilder::STEREO_3D_OVERUNDER;
    if (text == QLatin1String("SideBySide"))
        return KShaderCodeBuilder::STEREO_3D_SIDEBYSIDE;
    if (text == QLatin1String("OverUnder_I"))
        return KShaderCodeBuilder::STEREO_3D_OVERUNDER_INVERTED;
    if (text == QLatin1String("SideBySide_I"))
        return KShaderCodeBuilder::STEREO_3D_SIDEBYSIDE_INVERTED;
    return std::nullopt;
}

int inputProjection(const QVariantMap &metadata)
{
    const QVariant code = metadata.value(QStringLiteral("Projection"));
    if (code.isValid()) {
        switch (code.toInt()) {
        case StandardPicture:
            return KShaderCodeBuilder::STANDARD;
        case Cubemap:
            return KShaderCodeBuilder::CUBEMAP;
        default:
            break;
        }
    }
    return KShaderCodeBuilder::EQUIRECTANGULAR;
}

QString report(const QVariant &url, const QVariantMap &metadata)
{
    const auto projectionName = [](const QVariant &code) {
        switch (code.toInt()) {
        case StandardPicture:
            return QStringLiteral("Standard");
        case Equirectangular:
            return QStringLiteral("Equirectangular");
        case Cubemap:
            return QStringLiteral("Cubemap");
        default:
            return QStringLiteral("Unknown");
        }
    };
    const auto stereoName = [](const QVariant &code) {
        switch (code.toInt()) {
        case Mono:
            return QStringLiteral("None");
        case SideBySide:
            return QStringLiteral("Side by side");
        case OverUnder:
            return QStringLiteral("Over under");
        default:
            return QStringLiteral("Unknown");
        }
    };
    const auto plain = [](const QVariant &value) { return value.toString(); };
    struct Line
    {
        const char *key;
        const char *text;
        QString (*value)(const QVariant &);
    };
    const Line lines[] = {{"Frame width", "Frame width : %1 \n", plain},
                          {"Frame height", "Frame height : %1 \n", plain},
                          {"Video frame rate", "Video frame rate : %1 \n", plain},
                          {"Projection", "Projection : %1 \n", projectionName},
                          {"Stereoscopy", "Stereoscopy : %1 \n", stereoName},
                          {"Writing Tool", "Writing Tool : %1 \n", plain}};

    QString text = QStringLiteral("Media : %1 \n").arg(url.toString());
    for (const Line &line : lines) {
        const auto found = metadata.constFind(QLatin1String(line.key));
        if (found != metadata.constEnd())
            text += QString::fromLatin1(line.text).arg(line.value(*found));
    }
    return text;
}

} // namespace MediaChoice
