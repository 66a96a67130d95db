#pragma once

// Makes a theme's font files known to the font database. GUI thread.

#include <QString>

/// Registers every font file of @p folder, each once in the life of the process, and lets the
/// free families among them stand in for the families that the themes name.
void registerThemeFonts(const QString &folder);
