#pragma once

// Turns the raw bytes of a YUV frame, uploaded as one red texture, into RGBA in the framebuffer
// that the caller has bound; owned by the player's frame pipeline, used on the thread of the GL
// context in which it was made.

#include <QObject>
#include <QOpenGLFunctions_2_0>

#include <memory>

class Texture;
class YuvConverterImp;

class YuvConverter : public QObject, public QOpenGLFunctions_2_0
{
    Q_OBJECT

public:
    /// Needs a current context. The source is one of 'NV12', 'I420', 'YV12', 'YUYV', 'UYVY' as
    /// bigEndianFourcc() packs it, any other leaves a converter that draws nothing; the
    /// destination is 'RGBA'. @p stitched marks the output of a stitching program whose samples
    /// want the fixed-point formula.
    YuvConverter(unsigned sourceFourcc, unsigned destinationFourcc, bool fullRange, bool stitched);
    ~YuvConverter() override;

    /// Draws one frame over the whole of the bound framebuffer, whose size is @p width by
    /// @p height, the frame's. Red and blue leave exchanged: the panorama shader swaps them back.
    void convert(Texture *texture, int width, int height);

private:
    std::unique_ptr<YuvConverterImp> m_imp; ///< null for an unsupported source
};
