#pragma once

// Which OpenGL the program asks Qt for. A free function on values: Qt wants the answer before the
// application object exists, when only the store and the command line can be asked.

#include <QMap>
#include <QString>
#include <QVariant>

class KSettingsManager;

enum class OpenGLFlavour { Desktop, Embedded };

/// OpenGL ES is asked for only where nothing needs the desktop kind: headsets, frames from shared
/// memory and the backends that write into mapped desktop textures do.
OpenGLFlavour chooseOpenGLFlavour(bool hmdMode, bool forceOpenGL, const QString &videoBackend,
                                  bool sharedMemory);

/// The choice for this run, from the store and the options of the command line (see CommandLine).
OpenGLFlavour openGLFlavourOfThisRun(KSettingsManager &store,
                                     const QMap<QString, QVariant> &options);
