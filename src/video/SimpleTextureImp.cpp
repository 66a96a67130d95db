#include "video/SimpleTextureImp.h"

#include "video/UnpackAlignment.h"

#include <QOpenGLFunctions_1_1>

void SimpleTextureImp::Create()
{
    m_gl->glGenTextures(1, &m_texture);
}

void SimpleTextureImp::Destroy()
{
    if (m_texture != 0)
        m_gl->glDeleteTextures(1, &m_texture);
    m_texture = 0;
}

void SimpleTextureImp::Alloc(GLenum target, GLenum internalFormat, GLsizei width, GLsizei height,
                             GLenum format, GLenum type)
{
    Upload(target, internalFormat, width, height, format, type, nullptr);
}

void SimpleTextureImp::Upload(GLenum target, GLenum internalFormat, GLsizei width, GLsizei height,
                              GLenum format, GLenum type, const void *data)
{
    const UnpackAlignment rowsOfBytes(m_gl);
    m_gl->glBindTexture(target, m_texture);
    m_gl->glTexImage2D(target, 0, GLint(internalFormat), width, height, 0, format, type, data);
    m_gl->glBindTexture(target, 0);
}

void SimpleTextureImp::WaitForUpload()
{
    m_gl->glFlush();
    m_gl->glFinish();
}
