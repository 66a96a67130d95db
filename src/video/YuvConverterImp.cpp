#include "video/YuvConverterImp.h"

namespace {

constexpr char kTemplate[] = "/*HEADER*/\n/*UNIFORMS*/\nvoid main() {\n  /*LOCALS*/\n"
                             "  /*USERCODE*/\n  /*FINALCODE*/\n}\n";

constexpr char kVertexSource[] = "attribute vec4 vertex;\nuniform mat4 matrix;\n"
                                 "void main(void)\n{\n   gl_Position = matrix * vertex;\n}\n";

constexpr char kSampleNv12[] = "   y  = texture2DRect(yuv, gl_FragCoord.xy).r;\n"
                               "   uy = float(int(gl_FragCoord.y / 2.0));\n"
                               "   ux = float(int(gl_FragCoord.x / 2.0));\n"
                               "   u  = texture2DRect(yuv, vec2(2.0*ux, height + uy)).r;\n"
                               "   v  = texture2DRect(yuv, vec2(2.0*ux + 1.0, height + uy)).r;\n";

constexpr char kSampleYuyv[] =
    "   ux = gl_FragCoord.x / 2.0;\n"
    "   uy = gl_FragCoord.y;\n"
    "   y = texture2DRect(yuv, vec2((gl_FragCoord.x - 0.5)*2.0 + 0.5, uy)).r;\n"
    "   u = texture2DRect(yuv, vec2(float(int(ux))*4.0 + 1.5, uy)).r;\n"
    "   v = texture2DRect(yuv, vec2(float(int(ux))*4.0 + 3.5, uy)).r;\n";

constexpr char kSampleUyvy[] =
    "   ux = gl_FragCoord.x / 2.0;\n"
    "   uy = gl_FragCoord.y;\n"
    "   y = texture2DRect(yuv, vec2((gl_FragCoord.x - 0.5)*2.0 + 1.5, uy)).r;\n"
    "   u = texture2DRect(yuv, vec2(float(int(ux))*4.0 + 0.5, uy)).r;\n"
    "   v = texture2DRect(yuv, vec2(float(int(ux))*4.0 + 2.5, uy)).r;\n";

// uy is whole when its fraction is taken, so only the left half of a texture row of chroma is
// read and four picture rows share one. Recorded pictures depend on this addressing: it stays.
constexpr char kSampleI420[] =
    "   y  = texture2DRect(yuv, gl_FragCoord.xy).r;\n"
    "   ux = float(int(gl_FragCoord.x / 2.0));\n"
    "   uy = float(int(gl_FragCoord.y / 4.0));\n"
    "   ux += (uy - float(int(uy)))*width;\n"
    "   u  = texture2DRect(yuv, vec2(ux, height + uy)).r;\n"
    "   v  = texture2DRect(yuv, vec2(ux, float(int(height*1.25 + 0.5)) + uy)).r;\n";

constexpr char kSampleYv12[] =
    "   y  = texture2DRect(yuv, gl_FragCoord.xy).r;\n"
    "   ux = float(int(gl_FragCoord.x / 2.0));\n"
    "   uy = float(int(gl_FragCoord.y / 4.0));\n"
    "   ux += (uy - float(int(uy)))*width;\n"
    "   v  = texture2DRect(yuv, vec2(ux, height + uy)).r;\n"
    "   u  = texture2DRect(yuv, vec2(ux, float(int(height*1.25 + 0.5)) + uy)).r;\n";

// In all three texts Cb is taken from v and Cr from u: red and blue leave exchanged, and the
// panorama shader exchanges them back. The two are right only together.
constexpr char kColoursFixedPoint[] =
    "   y = 16.0/255.0 + y * (235.0-16.0)/255.0;\n"
    "   u = 16.0/255.0 + u * (240.0-16.0)/255.0;\n"
    "   v = 16.0/255.0 + v * (240.0-16.0)/255.0;\n"
    "   float y_rgb = float(int(y*19077.0));\n"
    "   float Cb = v - 128.0/255.0;\n"
    "   float Cr = u - 128.0/255.0;\n"
    "   r = float(int(y_rgb + Cr*29369.0 - 297012.0/255.0)              / 64) / 256.0;\n"
    "   g = float(int(y_rgb - Cr*8734.0 - (Cb)*3493.0 - 297012.0/255.0) / 64) / 256.0;\n"
    "   b = float(int(y_rgb + Cb*34610.0 - 297012.0/255.0)              / 64 )/ 256.0;\n";

constexpr char kSqueeze[] = "  y = 16.0/255.0 + y * (235.0-16.0)/255.0;\n"
                            "  u = 16.0/255.0 + u * (240.0-16.0)/255.0;\n"
                            "  v = 16.0/255.0 + v * (240.0-16.0)/255.0;\n";

constexpr char kColoursDirect[] = "  float y_rgb = 1.1643 * (y - 0.0625);\n"
                                  "  float Cb = v - 0.5;\n"
                                  "  float Cr = u - 0.5;\n"
                                  "  r = y_rgb + 1.793 * Cr;\n"
                                  "  g = y_rgb - 0.2126 * Cb - 0.534 * Cr;\n"
                                  "  b = y_rgb + 2.115 * Cb;\n";

QString colourText(YuvColours colours)
{
    switch (colours) {
    case YuvColours::FixedPoint:
        return QLatin1String(kColoursFixedPoint);
    case YuvColours::Direct:
        return QLatin1String(kColoursDirect);
    case YuvColours::Compressed:
        break;
    }
    return QLatin1String(kSqueeze) + QLatin1String(kColoursDirect);
}

} // namespace

YuvConverterImp::YuvConverterImp(YuvConverter *owner, const char *sampling, YuvColours colours)
    : m_fragmentSource(QLatin1String(kTemplate))
    , m_owner(owner)
{
    addShaderFromSourceCode(QOpenGLShader::Vertex, kVertexSource);
    insertBefore("/*HEADER*/", QStringLiteral("#version 120"));
    insertBefore("/*HEADER*/", QStringLiteral("#extension GL_ARB_texture_rectangle : enable"));
    addUniform("int", "width");
    addUniform("int", "height");
    addUniform("sampler2DRect", "yuv");
    addLocal("float", "r, g, b");
    addLocal("float", "y, u, v");
    addLocal("float", "ux, uy");
    insertBefore("/*USERCODE*/", QLatin1String(sampling));
    insertBefore("/*USERCODE*/", colourText(colours));
    insertBefore("/*FINALCODE*/", QStringLiteral("  gl_FragColor = vec4(r, g, b, 255);"));
}

bool YuvConverterImp::prepare()
{
    if (m_prepared)
        return isLinked();
    m_prepared = true;
    addShaderFromSourceCode(QOpenGLShader::Fragment, m_fragmentSource);
    if (!link())
        return false;
    m_locations.vertex = attributeLocation("vertex");
    m_locations.matrix = uniformLocation("matrix");
    m_locations.yuv = uniformLocation("yuv");
    m_locations.width = uniformLocation("width");
    m_locations.height = uniformLocation("height");
    return true;
}

void YuvConverterImp::insertBefore(const char *marker, const QString &text)
{
    const QString mark = QLatin1String(marker);
    m_fragmentSource.replace(mark, QStringLiteral("%1\n%2").arg(text, mark));
}

void YuvConverterImp::addUniform(const char *type, const char *name)
{
    insertBefore("/*UNIFORMS*/",
                 QStringLiteral("uniform %1 %2;").arg(QLatin1String(type), QLatin1String(name)));
}

void YuvConverterImp::addLocal(const char *type, const char *names)
{
    insertBefore("/*LOCALS*/",
                 QStringLiteral("  %1 %2;").arg(QLatin1String(type), QLatin1String(names)));
}

NV12_RGB_Converter::NV12_RGB_Converter(YuvConverter *owner, YuvColours colours)
    : YuvConverterImp(owner, kSampleNv12, colours)
{}

YUYV_RGB_Converter::YUYV_RGB_Converter(YuvConverter *owner, YuvColours colours)
    : YuvConverterImp(owner, kSampleYuyv, colours)
{}

UYVY_RGB_Converter::UYVY_RGB_Converter(YuvConverter *owner, YuvColours colours)
    : YuvConverterImp(owner, kSampleUyvy, colours)
{}

I420_RGB_Converter::I420_RGB_Converter(YuvConverter *owner, YuvColours colours)
    : YuvConverterImp(owner, kSampleI420, colours)
{}

YV12_RGB_Converter::YV12_RGB_Converter(YuvConverter *owner, YuvColours colours)
    : YuvConverterImp(owner, kSampleYv12, colours)
{}
