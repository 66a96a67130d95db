#pragma once

// Where the Oculus runtime's library may lie, and whether a file that lies there may be loaded.
// Free functions for OvrRuntime; any thread. What differs by system stands in OvrLibrary_linux.cpp
// and OvrLibrary_windows.cpp.

#include <QString>
#include <QStringList>

namespace OvrLibrary {

enum class CodeSignature {
    Trusted,
    Untrusted,
    NotKnownHere ///< the system signs no libraries; who may write to its folders decides
};

/// Printf format of the file name: directory (UTF-16, empty or ending with a separator), word size,
/// major version.
const char *fileNameFormat();

/// The system's standard locations, in the order of search. An empty entry leaves the search to
/// the system's loader.
QStringList standardDirectories();

/// Of the existing file @p path; a name without a directory is what the system's loader finds.
CodeSignature codeSignature(const QString &path);

/// All files to try, best first: in @p ownDirectory when it is not empty, then in @p directories.
QStringList candidates(const QString &ownDirectory, const QStringList &directories,
                       const char *format);

} // namespace OvrLibrary
