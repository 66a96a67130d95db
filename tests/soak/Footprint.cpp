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
    return QStringLiteral("%1 KiB, %2 threads, %3 handles, GL: %4 textures, %5 buffers, "
                          "%6 renderbuffers, %7 shaders, %8 programs")
        .arg(memory)
        .arg(threads)
        .arg(handles)
        .arg(textures)
        .arg(buffers)
        .arg(renderbuffers)
        .arg(shaders)
        .arg(programs);
}

} // namespace test
