#pragma once

// The program's names and version texts, the one place from which all others take them.

#include <QString>

namespace KVersion {

/// Product name as shown to people.
QString productName();

/// Maker word: organisation of the settings store and of the window system's names.
QString makerName();

/// All four numbers, "major.minor.patch.build".
QString fullText();

/// The first two dot-separated numbers of @p versionText; a shorter text comes back unchanged.
/// Names and titles carry only these two, so that a patch release keeps its settings store.
QString majorMinor(const QString &versionText);

/// Product name, a blank, and majorMinor(fullText()): the name of the settings store.
QString applicationName();

} // namespace KVersion
