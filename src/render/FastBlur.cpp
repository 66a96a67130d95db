#include "render/FastBlur.h"

#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>

namespace {

#define BLUR_VERTEX(SIDE, OFFSET_BEGIN, OFFSET_END)                                                \
    "attribute vec4 a_position;\n"                                                                 \
    "attribute vec2 a_texCoord;\n"                                                                 \
    "uniform mat4 matrix;\n"                                                                       \
    "uniform float " SIDE ";\n"                                                                    \
    "varying vec2 v_texCoord;\n"                                                                   \
    "varying vec2 v_blurTexCoords[14];\n"                                                          \
    "void main(){\n"                                                                               \
    "gl_Position = matrix * a_position;\n"                                                         \
    "v_texCoord = a_texCoord;\n"                                                                   \
    "float d = 1.0/" SIDE ";\n"                                                                    \
    "d *= 2.0;\n"                                                                                  \
    "for (int i = 0; i < 7; ++i) {\n"                                                              \
    "v_blurTexCoords[i] = a_texCoord + vec2(" OFFSET_BEGIN "float(i - 7) * d" OFFSET_END ");\n"    \
    "v_blurTexCoords[i + 7] = a_texCoord + vec2(" OFFSET_BEGIN "float(i + 1) * d" OFFSET_END       \
    ");\n"                                                                                         \
    "}\n}\n"

constexpr char kHorizontalVertex[] = BLUR_VERTEX("width", "", ", 0.0");
constexpr char kVerticalVertex[] = BLUR_VERTEX("height", "0.0, ", "");

#undef BLUR_VERTEX

// Taps 0 to 6 lie at -7d to -1d, taps 7 to 13 at 1d to 7d.
constexpr char kBlurFragment[] = R"(#ifdef GL_ES
precision mediump float;
#endif
uniform sampler2D s_texture;
varying vec2 v_texCoord;
varying vec2 v_blurTexCoords[14];
vec4 pair(in vec2 left, in vec2 right){
return texture2D(s_texture, left) + texture2D(s_texture, right);}
void main(){
vec4 sum = texture2D(s_texture, v_texCoord) * 0.159576912161;
sum += pair(v_blurTexCoords[6], v_blurTexCoords[7]) * 0.147308056121;
sum += pair(v_blurTexCoords[5], v_blurTexCoords[8]) * 0.115876621105;
sum += pair(v_blurTexCoords[4], v_blurTexCoords[9]) * 0.0776744219933;
sum += pair(v_blurTexCoords[3], v_blurTexCoords[10]) * 0.0443683338718;
sum += pair(v_blurTexCoords[2], v_blurTexCoords[11]) * 0.0215963866053;
sum += pair(v_blurTexCoords[1], v_blurTexCoords[12]) * 0.00895781211794;
sum += pair(v_blurTexCoords[0], v_blurTexCoords[13]) * 0.0044299121055113265;
gl_FragColor = sum;
}
)";

// Brings the second buffer to the target: that may be any framebuffer, multisampled ones included.
constexpr char kCopyVertex[] = R"(attribute vec4 a_position;
attribute vec2 a_texCoord;
uniform mat4 matrix;
varying vec2 v_texCoord;
void main(){
gl_Position = matrix * a_position;
v_texCoord = a_texCoord;
}
)";
constexpr char kCopyFragment[] = R"(#ifdef GL_ES
precision mediump float;
#endif
uniform sampler2D s_texture;
varying vec2 v_texCoord;
void main(){
gl_FragColor = texture2D(s_texture, v_texCoord);
}
)";

const QMatrix4x4 &unitSquare()
{
    static const QMatrix4x4 matrix = [] {
        QMatrix4x4 result;
        result.ortho(0.0f, 1.0f, 0.0f, 1.0f, -1.0f, 1.0f);
        return result;
    }();
    return matrix;
}

} // namespace

FastBlur::FastBlur() = default;
FastBlur::~FastBlur() = default;

void FastBlur::reset()
{
    for (Pass *pass : {&m_horizontal, &m_vertical, &m_copy})
        pass->program.reset();
    m_first.reset();
    m_second.reset();
}

bool FastBlur::buildPass(Pass &pass, const char *vertexText, const char *fragmentText)
{
    if (!pass.program.build(QLatin1String(vertexText), QLatin1String(fragmentText), "a_position",
                            "a_texCoord"))
        return false;
    pass.width = pass.program.uniformLocation("width");
    pass.height = pass.program.uniformLocation("height");
    pass.sampler = pass.program.uniformLocation("s_texture");
    return true;
}

bool FastBlur::prepare(const QSize &size)
{
    if (!m_copy.program && !(buildPass(m_horizontal, kHorizontalVertex, kBlurFragment) &&
                             buildPass(m_vertical, kVerticalVertex, kBlurFragment) &&
                             buildPass(m_copy, kCopyVertex, kCopyFragment)))
        return false;
    for (auto *buffer : {&m_first, &m_second}) {
        if (!*buffer || (*buffer)->size() != size)
            *buffer = std::make_unique<QOpenGLFramebufferObject>(
                size, QOpenGLFramebufferObject::NoAttachment, GL_TEXTURE_2D);
        if (!(*buffer)->isValid())
            return false;
    }
    return true;
}

void FastBlur::drawPass(Pass &pass, QOpenGLFunctions *functions, GLuint texture, const QSize &size)
{
    pass.program.bind();
    pass.program.set(pass.width, float(size.width()));
    pass.program.set(pass.height, float(size.height()));
    pass.program.set(pass.sampler, 0);
    functions->glActiveTexture(GL_TEXTURE0);
    functions->glBindTexture(GL_TEXTURE_2D, texture);
    pass.program.draw(functions, unitSquare());
}

bool FastBlur::draw(QOpenGLFunctions *functions, GLuint texture, const QSize &size, GLuint target,
                    const QRect &viewport)
{
    if (!prepare(size))
        return false;
    functions->glViewport(0, 0, size.width(), size.height());
    m_first->bind();
    drawPass(m_horizontal, functions, texture, size);
    m_second->bind();
    drawPass(m_vertical, functions, m_first->texture(), size);

    functions->glBindFramebuffer(GL_FRAMEBUFFER, target);
    functions->glViewport(viewport.x(), viewport.y(), viewport.width(), viewport.height());
    drawPass(m_copy, functions, m_second->texture(), size);
    return true;
}
