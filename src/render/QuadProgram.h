#pragma once

// A linked GL program that draws the unit square; owned by whoever draws, used on its render
// thread only, with the same context (or one of its share group) current.

#include <QMatrix4x4>
#include <QOpenGLShaderProgram>
#include <QSize>

#include <memory>

class QOpenGLFunctions;

/// Lets a GL object go from any thread: at once on its own, else by its event loop.
struct DeleteOnOwnThread
{
    void operator()(QObject *object) const;
};

class QuadProgram
{
public:
    QuadProgram() = default;
    ~QuadProgram();
    QuadProgram(QuadProgram &&) = default;
    QuadProgram &operator=(QuadProgram &&) = default;

    /// Lets the old program go and makes a new one. The texts take the square's corners from the
    /// attributes @p vertexName and @p textureName and place them by `matrix`. False when they do
    /// not compile or link; the object is then empty.
    bool build(const QString &vertexText, const QString &fragmentText,
               const char *vertexName = "vertex", const char *textureName = "texture");

    /// Lets the program go.
    void reset();

    explicit operator bool() const { return m_program != nullptr; }

    /// Of the linked program; -1 for a uniform that its text does not use.
    int uniformLocation(const char *name) const { return m_program->uniformLocation(name); }

    void bind() { m_program->bind(); }

    /// Sets a uniform of the bound program.
    template <class Value>
    void set(int location, const Value &value)
    {
        m_program->setUniformValue(location, value);
    }

    /// Draws the square with the bound program into the current viewport, then unbinds it. The
    /// corners (0,0) to (1,1) are vertices and texture coordinates alike.
    void draw(QOpenGLFunctions *functions, const QMatrix4x4 &matrix);

    /// Stretches the square over the whole viewport, its texture's first row at the bottom.
    static const QMatrix4x4 &fullViewport();

private:
    std::unique_ptr<QOpenGLShaderProgram, DeleteOnOwnThread> m_program;
    int m_matrix = -1;
};
