#pragma once

// Reads what becomes a playlist: an .orpl file (UTF-8 JSON: an array of objects with the texts
// "media", "logo", "thumb" and "stereo") or the files of a directory. Free functions on values.

#include <QList>
#include <QMap>
#include <QString>
#include <QUrl>

struct PlayListContents
{
    QList<QUrl> media;
    QMap<QUrl, QUrl> logos;
    QMap<QUrl, QUrl> thumbs;
    QMap<QUrl, QString> stereoTexts;
    QString error; ///< for people; empty when the rest holds
};

namespace PlayListReader {

/// Fewer files than this may stand in a directory.
constexpr int kDirectoryLimit = 1000;

/// Media of the playlist file at @p path; relative paths in it start at its own directory.
PlayListContents readFile(const QString &path);

/// The text of a playlist file that lies in @p directory.
PlayListContents parse(const QByteArray &json, const QString &directory);

/// Files of the directory at @p path, newest first.
PlayListContents readDirectory(const QString &path);

} // namespace PlayListReader
