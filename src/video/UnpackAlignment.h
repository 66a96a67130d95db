#pragma once

// Rows of a frame follow each other without padding, where GL expects multiples of four bytes:
// for the lifetime of this object, on the stack of an upload, the current context reads them so.

#include <qopengl.h>

template <class Functions>
class UnpackAlignment
{
public:
    explicit UnpackAlignment(Functions *functions)
        : m_gl(functions)
    {
        m_gl->glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    }
    ~UnpackAlignment() { m_gl->glPixelStorei(GL_UNPACK_ALIGNMENT, kDefault); }
    UnpackAlignment(const UnpackAlignment &) = delete;
    UnpackAlignment &operator=(const UnpackAlignment &) = delete;

private:
    static constexpr GLint kDefault = 4;

    Functions *m_gl;
};
