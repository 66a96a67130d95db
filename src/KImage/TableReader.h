#pragma once

// The lines of the camera and lens tables. Free functions, any thread.

#include <QString>
#include <QStringList>

#include <functional>

class QTextStream;

namespace TableReader {

/// Calls @p entry with the cells of each line between semicolons; text from a "#" on and empty
/// lines are left out.
void read(QTextStream &stream, const std::function<void(const QStringList &cells)> &entry);

/// The same for a file; throws a KException, "Can't open", when it cannot be read.
void readFile(const QString &fileName, const std::function<void(const QStringList &cells)> &entry);

} // namespace TableReader
