#pragma once

// What the process holds of the system at one moment, for runs that look for leaks.

#include <QString>

class QOpenGLContext;
class QSurface;

namespace test {

struct Footprint
{
    qint64 memory = 0; ///< resident, KiB, after freed memory was given back to the system
    int threads = 0;
    int handles = 0; ///< open files, sockets and the like
    int textures = 0;
    /// Qt's tables of rendered letters; one more for each size of a font, and some sizes follow
    /// the width of the window.
    int letterTables = 0;
    int buffers = 0;
    int renderbuffers = 0;
    int shaders = 0;
    int programs = 0;

    /// Of this process. The GL objects are those that @p context shares; it is made current on
    /// @p surface.
    static Footprint take(QOpenGLContext *context, QSurface *surface);

    QString text() const;
};

} // namespace test
