#include "support/Footprint.h"
#include "support/Files.h"
#include "support/GlContext.h"

#include <QOpenGLFunctions>

#include <malloc.h>
#include <unistd.h>

namespace test {

namespace {

qint64 residentKibibytes()
{
    malloc_trim(0);
    return readFile(QStringLiteral("/proc/self/statm")).split(' ').value(1).toLongLong() *
           sysconf(_SC_PAGESIZE) / 1024;
}

int entries(const char *folder)
{
    return QDir(QLatin1String(folder))
        .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
        .size();
}

/// Whether a texture holds nothing but coverage, as letters do.
bool isLetterTable(GlContext &gl, GLuint name)
{
    GLint format = 0;
    gl->glBindTexture(GL_TEXTURE_2D, name);
    // A texture of another kind cannot be bound there, which says enough.
    if (gl->glGetError() == GL_NO_ERROR)
        gl->glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_INTERNAL_FORMAT, &format);
    gl->glBindTexture(GL_TEXTURE_2D, 0);
    return format == GL_ALPHA;
}

} // namespace

Footprint glObjects(QOpenGLContext *shared)
{
    GlContext gl(shared);
    Footprint now;
    // Drivers give names from 1 upwards and use those of deleted objects again.
    constexpr GLuint kLargestName = 20000;
    for (GLuint name = 1; name <= kLargestName; ++name) {
        if (gl->glIsTexture(name))
            ++now[isLetterTable(gl, name) ? "tables of letters" : "textures"];
        now["buffers"] += gl->glIsBuffer(name);
        now["renderbuffers"] += gl.context().functions()->glIsRenderbuffer(name);
        now["shaders"] += gl->glIsShader(name);
        now["programs"] += gl->glIsProgram(name);
    }
    return now;
}

Footprint takeFootprint(QOpenGLContext *shared)
{
    Footprint now = glObjects(shared);
    now["KiB"] = residentKibibytes();
    now["threads"] = entries("/proc/self/task");
    now["handles"] = entries("/proc/self/fd");
    return now;
}

} // namespace test
