#include "soak/Footprint.h"

#include <QDir>
#include <QFile>
#include <QOpenGLContext>
#include <QOpenGLFunctions>

#include <malloc.h>
#include <unistd.h>

namespace test {

namespace {

// Drivers give names from 1 upwards and use those of deleted objects again.
constexpr GLuint kLargestName = 16384;

template <class IsObject>
int countNames(IsObject isObject)
{
    int count = 0;
    for (GLuint name = 1; name <= kLargestName; ++name)
        count += isObject(name) ? 1 : 0;
    return count;
}

qint64 residentKibibytes()
{
    malloc_trim(0);
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE) / 1024;
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

Footprint Footprint::take(QOpenGLContext *context, QSurface *surface)
{
    Footprint now;
    now.memory = residentKibibytes();
    now.threads = entries("/proc/self/task");
    now.handles = entries("/proc/self/fd");
    if (context->makeCurrent(surface)) {
        QOpenGLFunctions *gl = context->functions();
        now.textures = countNames([gl](GLuint name) { return gl->glIsTexture(name); });
        now.letterTables = countNames(
            [gl](GLuint name) { return gl->glIsTexture(name) && isLetterTable(gl, name); });
        now.textures -= now.letterTables;
        now.buffers = countNames([gl](GLuint name) { return gl->glIsBuffer(name); });
        now.renderbuffers = countNames([gl](GLuint name) { return gl->glIsRenderbuffer(name); });
        now.shaders = countNames([gl](GLuint name) { return gl->glIsShader(name); });
        now.programs = countNames([gl](GLuint name) { return gl->glIsProgram(name); });
        context->doneCurrent();
    }
    return now;
}

QString Footprint::text() const
{
    return QStringLiteral("%1 KiB, %2 threads, %3 handles, GL: %4 textures, "
                          "%5 tables of letters, %6 buffers, %7 renderbuffers, %8 shaders, "
                          "%9 programs")
        .arg(memory)
        .arg(threads)
        .arg(handles)
        .arg(textures)
        .arg(letterTables)
        .arg(buffers)
        .arg(renderbuffers)
        .arg(shaders)
        .arg(programs);
}

} // namespace test
