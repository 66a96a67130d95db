#pragma once

// The fragment programs of YuvConverter, one for each layout of samples, put together by text
// insertion; owned by YuvConverter, used on its thread.

#include <QOpenGLShaderProgram>
#include <QString>

class YuvConverter;

/// Which arithmetic turns the three samples into colour.
enum class YuvColours {
    FixedPoint, ///< integer arithmetic, for stitched files
    Direct,     ///< samples taken as they are
    Compressed  ///< samples first squeezed into the studio range, then as Direct
};

/// A stitched file takes the fixed-point arithmetic whatever its range.
constexpr YuvColours yuvColours(bool fullRange, bool stitched)
{
    if (stitched)
        return YuvColours::FixedPoint;
    return fullRange ? YuvColours::Direct : YuvColours::Compressed;
}

class YuvConverterImp : public QOpenGLShaderProgram
{
public:
    struct Locations
    {
        int vertex = -1;
        int matrix = -1;
        int yuv = -1;
        int width = -1;
        int height = -1;
    };

    /// Compiles and links at the first call; false when that failed, then nothing can be drawn.
    [[nodiscard]] bool prepare();
    const Locations &locations() const { return m_locations; }
    const QString &fragmentSource() const { return m_fragmentSource; }
    YuvConverter *owner() const { return m_owner; }

protected:
    /// @p sampling is the text that reads y, u and v at gl_FragCoord.
    YuvConverterImp(YuvConverter *owner, const char *sampling, YuvColours colours);

private:
    /// Puts @p text on a line before @p marker, which stays for later insertions.
    void insertBefore(const char *marker, const QString &text);
    void addUniform(const char *type, const char *name);
    void addLocal(const char *type, const char *names);

    QString m_fragmentSource;
    YuvConverter *m_owner;
    Locations m_locations;
    bool m_prepared = false;
};

class NV12_RGB_Converter final : public YuvConverterImp
{
public:
    NV12_RGB_Converter(YuvConverter *owner, YuvColours colours);
};

class YUYV_RGB_Converter final : public YuvConverterImp
{
public:
    YUYV_RGB_Converter(YuvConverter *owner, YuvColours colours);
};

class UYVY_RGB_Converter final : public YuvConverterImp
{
public:
    UYVY_RGB_Converter(YuvConverter *owner, YuvColours colours);
};

class I420_RGB_Converter final : public YuvConverterImp
{
public:
    I420_RGB_Converter(YuvConverter *owner, YuvColours colours);
};

class YV12_RGB_Converter final : public YuvConverterImp
{
public:
    YV12_RGB_Converter(YuvConverter *owner, YuvColours colours);
};
