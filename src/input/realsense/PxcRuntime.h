#pragma once

// Where the depth camera's runtime library lies. Plain functions; the registry is read elsewhere.

#include <QString>
#include <QStringList>

namespace PxcRuntime {

/// Below the machine's root key, in the order in which they are asked, and the value in them.
QStringList registryKeys();
QString registryValue();

/// The library's path from such a value, which names the library or the folder of the runtime;
/// empty for an empty value.
QString libraryPath(const QString &value);

} // namespace PxcRuntime
