#include "video/IntelMapTextureImp.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions_3_0>

#include <utility>

namespace {
// GL_INTEL_map_texture; not in every system's headers.
constexpr GLenum kTextureMemoryLayout = 0x83FF;
constexpr GLint kLayoutLinear = 1;
constexpr GLbitfield kMapWrite = 2;
} // namespace

IntelMapTextureImp::IntelMapTextureImp(QOpenGLFunctions_3_0 *functions, Resolver resolver)
    : m_gl(functions)
    , m_resolver(std::move(resolver))
{
    if (!m_resolver)
        m_resolver = [](const char *name) {
            return QOpenGLContext::currentContext()->getProcAddress(name);
        };
}

void IntelMapTextureImp::Create()
{
    m_syncTexture = reinterpret_cast<SyncTexture>(m_resolver("glSyncTextureINTEL"));
    m_unmapTexture2D = reinterpret_cast<UnmapTexture2D>(m_resolver("glUnmapTexture2DINTEL"));
    m_mapTexture2D = reinterpret_cast<MapTexture2D>(m_resolver("glMapTexture2DINTEL"));
    // A driver that names the extension without its functions gets no texture: not valid.
    if (m_syncTexture && m_unmapTexture2D && m_mapTexture2D)
        m_gl->glGenTextures(1, &m_texture);
}

void IntelMapTextureImp::Destroy()
{
    if (m_texture != 0)
        m_gl->glDeleteTextures(1, &m_texture);
}

void IntelMapTextureImp::Alloc(GLenum, GLenum, GLsizei width, GLsizei height, GLenum format,
                               GLenum type)
{
    m_gl->glBindTexture(GL_TEXTURE_2D, m_texture);
    // Before any storage exists: mapping needs the linear layout.
    m_gl->glTexParameteri(GL_TEXTURE_2D, kTextureMemoryLayout, kLayoutLinear);
    m_gl->glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, width, height, 0, format, type, nullptr);
    m_gl->glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GLfloat(GL_LINEAR));
    m_gl->glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GLfloat(GL_LINEAR));
    m_gl->glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GLfloat(GL_CLAMP_TO_EDGE));
    m_gl->glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GLfloat(GL_CLAMP_TO_EDGE));
    m_gl->glBindTexture(GL_TEXTURE_2D, 0);
}

void *IntelMapTextureImp::Map()
{
    if (m_texture == 0)
        return nullptr;
    GLint stride = 0;
    GLenum layout = 0;
    return m_mapTexture2D(m_texture, 0, kMapWrite, &stride, &layout);
}

void IntelMapTextureImp::Unmap()
{
    if (m_texture != 0)
        m_unmapTexture2D(m_texture, 0);
}

void IntelMapTextureImp::Upload(GLenum, GLenum, GLsizei, GLsizei, GLenum, GLenum, const void *)
{
    if (m_texture != 0)
        m_syncTexture(m_texture);
}
