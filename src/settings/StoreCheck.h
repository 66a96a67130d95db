#pragma once

// Keeps the settings library's decoder of serialised values away from files that would crash it:
// it trusts their counts and recurses as deep as they say. Plain functions, used by the store.

#include <QByteArray>
#include <QSettings>
#include <QString>

namespace StoreCheck {

/// Whether the INI @p text holds no serialised value ("@Variant(...)", "@DateTime(...)") other than
/// colours and times, the kinds that have a bounded size.
[[nodiscard]] bool isSafe(const QByteArray &text);

/// Renames each file of the user's store that is not safe to "<file>.damaged", so that the store
/// opens empty and nothing is lost. Does nothing on platforms whose store is not made of files.
void setAsideUnsafeFiles(QSettings::Scope scope, const QString &organization,
                         const QString &application);

} // namespace StoreCheck
