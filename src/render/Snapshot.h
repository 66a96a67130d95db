#pragma once

// Where a snapshot of the view goes and how it is written; plain functions, any thread.

#include <QDateTime>
#include <QImage>
#include <QMap>
#include <QString>

enum class SnapshotKind {
    None = 0,
    Snap = 1,  ///< the view as it is on screen
    Render = 2 ///< the view at the resolution of its source
};

/// "ORBLP_", the kind, date, time and milliseconds, ".png"; fit for every file system.
QString snapshotFileName(SnapshotKind kind, const QDateTime &time);

/// The local folder that @p setting (a folder URL) names; the desktop folder, else the home folder,
/// while the setting names none.
QString snapshotFolder(const QString &setting);

/// Writes @p image with the text chunks @p texts into @p folder, which is made when it is not
/// there, under the name of the present moment. False when it could not be written.
[[nodiscard]] bool saveSnapshot(QImage image, SnapshotKind kind, const QString &folder,
                                const QMap<QString, QString> &texts);
