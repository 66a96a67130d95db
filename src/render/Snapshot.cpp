#include "render/Snapshot.h"

#include <QDir>
#include <QSaveFile>
#include <QStandardPaths>
#include <QUrl>

QString snapshotFileName(SnapshotKind kind, const QDateTime &time)
{
    QString name =
        QStringLiteral("ORBLP_%1_%2_%3")
            .arg(kind == SnapshotKind::Render ? QStringLiteral("render") : QStringLiteral("snap"),
                 time.toString(Qt::ISODate).replace(QLatin1Char('T'), QLatin1Char('_')),
                 QString::number(time.time().msec()));
    return name.replace(QLatin1Char(':'), QLatin1Char('_')) + QLatin1String(".png");
}

QString snapshotFolder(const QString &setting)
{
    QString folder = QUrl(setting).toLocalFile();
    if (!folder.isEmpty())
        return folder;
    if (QDir::isAbsolutePath(setting))
        return setting;
    const QString desktop = QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
    return desktop.isEmpty() ? QDir::homePath() : desktop;
}

bool saveSnapshot(QImage image, SnapshotKind kind, const QString &folder,
                  const QMap<QString, QString> &texts)
{
    for (auto text = texts.begin(); text != texts.end(); ++text)
        image.setText(text.key(), text.value());
    QDir().mkpath(folder);
    // The name appears with the whole picture behind it, or not at all.
    QSaveFile file(folder + QLatin1Char('/') +
                   snapshotFileName(kind, QDateTime::currentDateTime()));
    return file.open(QIODevice::WriteOnly) && image.save(&file, "PNG") && file.commit();
}
