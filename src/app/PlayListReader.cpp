#include "app/PlayListReader.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace PlayListReader {

namespace {

QString translated(const char *text)
{
    return QCoreApplication::translate("KGlobalObject", text);
}

PlayListContents failed(const QString &error)
{
    PlayListContents contents;
    contents.error = error;
    return contents;
}

} // namespace

PlayListContents readFile(const QString &path)
{
    QFile file(path);
    // A pipe would keep the player waiting, and a device would never end.
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return failed(translated("Error : cannot open file .orpl"));
    return parse(file.readAll(), QFileInfo(path).absolutePath());
}

PlayListContents parse(const QByteArray &json, const QString &directory)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (document.isNull())
        return failed(translated("Error : cannot parse json"));
    if (!document.isArray())
        return failed(translated("Error : json is not an array"));
    const QJsonArray entries = document.array();
    if (entries.isEmpty())
        return failed(translated("Error : json is empty"));

    const QDir folder(directory);
    const auto urlOf = [&folder](const QJsonObject &entry, const char *key) {
        const QString path = entry.value(QLatin1String(key)).toString();
        return QUrl::fromLocalFile(QDir::toNativeSeparators(folder.absoluteFilePath(path)));
    };
    PlayListContents contents;
    for (const QJsonValue &value : entries) {
        const QJsonObject entry = value.toObject();
        const QUrl medium = urlOf(entry, "media");
        contents.media.append(medium);
        // A picture that is not named leaves room for the one that lies beside the medium.
        if (!entry.value(QLatin1String("logo")).toString().isEmpty())
            contents.logos.insert(medium, urlOf(entry, "logo"));
        if (!entry.value(QLatin1String("thumb")).toString().isEmpty())
            contents.thumbs.insert(medium, urlOf(entry, "thumb"));
        contents.stereoTexts.insert(medium, entry.value(QLatin1String("stereo")).toString());
    }
    return contents;
}

PlayListContents readDirectory(const QString &path)
{
    const QDir folder(path);
    const QStringList names = folder.entryList(QDir::Files | QDir::NoSymLinks, QDir::Time);
    if (names.isEmpty())
        return failed(translated("Error : Directory is empty"));
    if (names.size() >= kDirectoryLimit) {
        return failed(translated("Error : Cannot load more than %1 files in a directory")
                          .arg(kDirectoryLimit));
    }
    PlayListContents contents;
    for (const QString &name : names)
        contents.media.append(QUrl::fromLocalFile(folder.absoluteFilePath(name)));
    return contents;
}

} // namespace PlayListReader
