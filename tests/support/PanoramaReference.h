#pragma once

// The panorama's mapping written down a second time, in double precision and in terms of geometry
// instead of shader text, to compare rendered pixels with.

#include "render/CameraMath.h"
#include "render/PanoramaProgram.h"
#include "render/ShaderText.h"

#include <QImage>
#include <QPointF>

#include <optional>

namespace test {

struct PanoramaReference
{
    shader::ShaderKey key;
    PanoramaUniforms uniforms;

    /// Where the picture is sampled at (x, y), 0 to 1 over one eye's view with y up; in the whole
    /// picture, before an eye's half is taken. Nothing where the clear colour stays.
    std::optional<QPointF> pictureAt(double x, double y) const;

    /// The same inside the texture: within this eye's half.
    QPointF inTexture(QPointF picture) const;

    /// Named rule of exclusion: an edge of the mapping (the border of the picture, the wrap, a
    /// cube's face, a pole) passes through the pixel of @p size around (x, y), so that the last bit
    /// of a float decides which side is shown.
    bool onEdge(double x, double y, const QSizeF &size) const;
};

/// A whole sphere in one view of @p view pixels with this field of view, in degrees.
PanoramaUniforms uniformsFor(const QSize &view, float fov, const CameraAngles &angles);

/// What of @p image, one eye's view, does not show what @p reference samples from @p picture with
/// linear filtering, or @p background where nothing is drawn. A channel may be 3 levels of 255 off:
/// rounding of source and result takes 1, the 8 fractional bits by which a driver may weigh texels
/// up to 1 more, and drivers approximate inverse trigonometry to 1e-4 radians. Empty when all is
/// right and at most an eighth of the pixels lies on edges.
QString pixelFaults(const QImage &image, const PanoramaReference &reference, const QImage &picture,
                    QRgb background);

/// A picture in which each small step of either coordinate shows, whose halves differ, and which
/// is alike at its left and right ends.
QImage directionPattern(const QSize &size);

} // namespace test
