#pragma once

// The table of cameras: how large a camera's sensor is. One shared instance, which lives as long as
// the process; any thread may ask.

#include <QList>
#include <QMutex>
#include <QObject>
#include <QString>

class QTextStream;

class CameraProperties : public QObject
{
    Q_OBJECT

public:
    struct Entry
    {
        QString brand;
        QString model;
        double scale = 1.0; ///< of the sensor to the full frame of 36 by 24 mm
    };

    /// @p fileName is read on the first question; others than the program's own are for tests.
    explicit CameraProperties(const QString &fileName);

    static CameraProperties *instance();

    /// The first entry whose brand occurs in @p make and whose model occurs in @p model, in the
    /// case as written; false and @p scale untouched when there is none. Throws a KException when
    /// the table cannot be opened.
    bool getSensorScale(const QString &make, const QString &model, double &scale);

    static QList<Entry> parse(QTextStream &stream);

private:
    void load();

    QString m_fileName;
    QList<Entry> m_entries;
    bool m_loaded = false;
    QMutex m_mutex; ///< held while loading and looking up
};
