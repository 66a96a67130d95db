#pragma once

// Draws a BGRA texture over the whole viewport with red and blue exchanged; made by the player's
// pipeline and by its item, each for its own context's thread.

#include <QOpenGLShaderProgram>

#include <memory>

class SwizzleBlit
{
public:
    enum class RowOrder {
        TopRowFirst, ///< the target's first row becomes the picture's top: for a texture
        Upright      ///< the target's first row is the bottom: for the screen
    };

    explicit SwizzleBlit(RowOrder order)
        : m_order(order)
    {}

    /// Needs a current context; the program is built at the first call. Draws nothing when that
    /// failed.
    void draw(GLuint texture);

private:
    bool prepare();

    RowOrder m_order;
    std::unique_ptr<QOpenGLShaderProgram> m_program;
    int m_vertex = -1;
    int m_texture = -1;
    int m_matrix = -1;
    int m_source = -1;
};
