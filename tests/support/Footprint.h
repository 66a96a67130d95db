#pragma once

// What the process holds of the system at one moment, for runs that look for leaks.

#include <QMap>
#include <QString>

class QOpenGLContext;

namespace test {

/// By name: "KiB" of resident memory, after freed memory was given back to the system, "threads",
/// "handles" (open files, sockets and the like) and GL objects. "tables of letters" are Qt's
/// textures of rendered letters; one more for each size of a font, and some sizes follow the width
/// of the window.
using Footprint = QMap<QString, qint64>;

/// GL objects of the share group of @p shared, which must be current on no other thread.
Footprint glObjects(QOpenGLContext *shared);

/// All that this process holds.
Footprint takeFootprint(QOpenGLContext *shared);

} // namespace test
