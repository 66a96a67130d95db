#include "soak/Footprint.h"
#include "support/Files.h"

#include <QOpenGLContext>
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
bool isLetterTable(QOpenGLFunctions *gl, GLuint name)
{
    const auto levelParameter =
        reinterpret_cast<void(QOPENGLF_APIENTRYP)(GLenum, GLint, GLenum, GLint *)>(
            QOpenGLContext::currentContext()->getProcAddress("glGetTexLevelParameteriv"));
    constexpr GLenum kInternalFormat = 0x1003;
    GLint format = 0;
    gl->glBindTexture(GL_TEXTURE_2D, name);
    // A texture of another kind cannot be bound there, which says enough.
    if (gl->glGetError() == GL_NO_ERROR)
        levelParameter(GL_TEXTURE_2D, 0, kInternalFormat, &format);
    gl->glBindTexture(GL_TEXTURE_2D, 0);
    return format == GL_ALPHA;
}

} // namespace

Footprint takeFootprint(QOpenGLContext *context, QSurface *surface)
{
    Footprint now{{"KiB", residentKibibytes()},
                  {"threads", entries("/proc/self/task")},
                  {"handles", entries("/proc/self/fd")}};
    if (context->makeCurrent(surface)) {
        QOpenGLFunctions *gl = context->functions();
        // Drivers give names from 1 upwards and use those of deleted objects again.
        constexpr GLuint kLargestName = 16384;
        for (GLuint name = 1; name <= kLargestName; ++name) {
            if (gl->glIsTexture(name))
                ++now[isLetterTable(gl, name) ? "tables of letters" : "textures"];
            now["buffers"] += gl->glIsBuffer(name);
            now["renderbuffers"] += gl->glIsRenderbuffer(name);
            now["shaders"] += gl->glIsShader(name);
            now["programs"] += gl->glIsProgram(name);
        }
        context->doneCurrent();
    }
    return now;
}

} // namespace test
