#pragma once

// The program's own folder for temporary files, removed with all it holds at the end. KFoundation
// owns the singleton; any thread asks.

#include <QString>
#include <QTemporaryDir>

class KTemporaryFolder
{
public:
    /// A new folder below @p parent, or below the system's temporary folder for an empty text.
    explicit KTemporaryFolder(const QString &parent = QString());

    /// Null before KFoundation::Initialize() and after KFoundation::Shutdown().
    static KTemporaryFolder *Instance();
    static void CreateInstance();
    static void DestroyInstance();

    /// False when no folder could be made; every request for space then fails.
    bool IsValid() const { return m_folder.isValid(); }
    QString Path() const { return m_folder.path(); }
    QString FilePath(const QString &name) const { return m_folder.filePath(name); }

    /// Throws a KException unless @p bytes fit and leave some room to the rest of the system. A
    /// drive that does not tell its free space is trusted.
    void RequireSpace(quint64 bytes) const;

private:
    QTemporaryDir m_folder;
};
