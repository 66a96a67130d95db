#pragma once

// The table of lenses: name and type by a composed lens identifier. One shared instance, which
// lives as long as the process; any thread may ask.

#include <QList>
#include <QMutex>
#include <QObject>
#include <QString>

class QTextStream;

enum class LensType { Standard = 0, Fisheye = 1, TiltShift = 2 };

class LensIDProperties : public QObject
{
    Q_OBJECT

public:
    struct Entry
    {
        /// Shortest and longest focal length, lens code, two apertures: "8 8 74 3.6 1.4".
        QString identifier;
        QString brand;
        QString name;
        LensType type = LensType::Standard;
    };

    /// @p fileName is read on the first question; others than the program's own are for tests.
    explicit LensIDProperties(const QString &fileName);

    static LensIDProperties *instance();

    /// Entries whose identifier contains @p lensId and whose brand contains @p make, in any case
    /// and in the order of the file; none for an empty identifier. Throws a KException when the
    /// table cannot be opened.
    QList<Entry> getLens(const QString &lensId, const QString &make);

    static QList<Entry> parse(QTextStream &stream);

private:
    void load();

    QString m_fileName;
    QList<Entry> m_entries;
    bool m_loaded = false;
    QMutex m_mutex; ///< held while loading and looking up
};
