#pragma once

// The panorama's mapping written down a second time, in double precision and in terms of geometry
// instead of shader text, to compare rendered pixels with.

#include "render/PanoramaProgram.h"
#include "render/ShaderText.h"

#include <QImage>
#include <QPointF>

#include <array>
#include <optional>

namespace test {

using Color = std::array<double, 3>; ///< red, green, blue, 0 to 255

class PanoramaReference
{
public:
    PanoramaReference(const shader::ShaderKey &key, const PanoramaUniforms &uniforms)
        : m_key(key)
        , m_uniforms(uniforms)
    {}

    /// Where the picture is sampled at (x, y), 0 to 1 over one eye's view with y up; in the whole
    /// picture, before an eye's half is taken. Nothing where the clear colour stays.
    std::optional<QPointF> pictureAt(double x, double y) const;

    /// The same inside the texture: within this eye's half.
    QPointF inTexture(QPointF picture) const;

    /// Named rule of exclusion: an edge of the mapping (the border of the picture, the wrap, a
    /// cube's face, a pole) passes through the pixel of @p pixelSize around (x, y), so that the
    /// last bit of a float decides which side is shown.
    bool onEdge(double x, double y, const QSizeF &pixelSize) const;

private:
    std::optional<QPointF> flat(double sx, double sy) const;
    std::optional<std::array<double, 3>> direction(double sx, double sy) const;
    QPointF project(const std::array<double, 3> &direction) const;
    QPointF ontoPanel(QPointF picture) const;

    shader::ShaderKey m_key;
    PanoramaUniforms m_uniforms;
};

/// What a comparison of rendered pixels with the reference found.
struct PixelComparison
{
    int pixels = 0;
    int onEdges = 0; ///< excluded by PanoramaReference::onEdge()
    int wrong = 0;
    QPoint firstWrong;
};

/// Compares @p image, one eye's view, with what @p reference samples from @p picture. A channel
/// may be @p tolerance levels off; @p background is what stays where nothing is drawn.
PixelComparison comparePixels(const QImage &image, const PanoramaReference &reference,
                              const QImage &picture, double tolerance, QRgb background);

/// Linear filtering between texel centres, clamped to the edge, first row at 0.
Color sampleLinear(const QImage &image, QPointF at);

/// A picture in which each small step of either coordinate shows, and which is alike at its left
/// and right ends.
QImage directionPattern(const QSize &size);

} // namespace test
