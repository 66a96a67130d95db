#pragma once

// Named time totals for finding where time goes, process-wide; every thread measures into entries
// of its own, so threads never wait for each other.

#include <QString>

namespace KAccumulators {

/// Starts this thread's measurement of @p name; a measurement under way goes on.
void Begin(const QString &name);

/// Ends it and adds it to this thread's total of @p name; does nothing without a Begin.
void End(const QString &name);

/// One line for each name and thread, sorted: " name@thread : count, total time\r\n".
QString Report();

} // namespace KAccumulators
