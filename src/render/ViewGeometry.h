#pragma once

// The sizes of the view as arithmetic: viewport uniforms, layout of the eyes, size of a rendered
// snapshot. Plain values, any thread.

#include <QSize>
#include <QSizeF>
#include <QVector2D>

/// How many pictures the view holds.
enum class EyeLayout {
    Single,         ///< one eye over the whole view
    Split,          ///< two eyes side by side, each in its own shape
    SplitTelevision ///< two eyes side by side, squeezed for a television that widens them again
};

struct ViewportParameters
{
    QVector2D size;      ///< what the shader takes for one eye's view
    QVector2D sizeMin;   ///< the smaller side, twice
    QVector2D sizeRatio; ///< size / sizeMin
    QSize pixels;        ///< one eye's viewport in device pixels
};

/// @p item in device independent pixels. A view without an area gives ratios of 1.
ViewportParameters viewportParameters(const QSizeF &item, EyeLayout layout,
                                      double devicePixelRatio);

/// Scales down, never up, until both sides fit; the shape stays. A limit that is not positive is
/// no limit.
QSize limitedSize(const QSize &size, const QSize &limit);

/// The size at which the view shows each pixel of the source about once.
/// @p texture the source's size (not positive: the view's size is kept, with a warning),
/// @p view one eye's viewport, @p fov in degrees, projections as in KShaderCodeBuilder.
QSize renderSize(const QSize &texture, const QSize &view, float fov, int projectionSource,
                 int projection);
