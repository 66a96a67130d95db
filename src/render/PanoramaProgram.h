#pragma once

// The generated panorama shader, compiled, with the places of its uniforms; owned by whoever draws
// (the view, a headset) and used on its render thread only.

#include "render/QuadProgram.h"
#include "render/ViewGeometry.h"

#include <QMatrix4x4>

/// The uniforms of one draw. Neutral where a default is given.
struct PanoramaUniforms
{
    QMatrix4x4 matrix;         ///< places the unit square
    QMatrix4x4 matViewInverse; ///< camera to world
    QMatrix4x4 colorMatrix;
    ViewportParameters viewport;
    int eye = 0;                 ///< 0 left, 1 right
    float fov = 90.0f;           ///< degrees
    float scaleCorrector = 1.0f; ///< vertical factor, of forced rectilinear text only
    float cameraYaw = 0.0f;      ///< radians, of flat pictures only
    float cameraPitch = 0.0f;
    float yawMin = 0.0f; ///< extent of a partial panorama, radians
    float yawMax = 0.0f;
    float pitchMin = 0.0f;
    float pitchMax = 0.0f;
    float projScale = 1.0f; ///< of the ORVEX projection
    float projectionDistance = 0.0f;
    float brightness = 0.0f;
    float contrast = 0.0f;
    float hue = 0.0f;
    float saturation = 0.0f;
    float vibrance = 0.0f;
    float time = 0.0f;
    float vignettingRadius = 0.0f;
    float vignettingAmount = 0.0f;
};

class PanoramaProgram
{
public:
    /// From the two texts of KShaderCodeBuilder; false leaves the object empty.
    bool build(const QString &vertexText, const QString &fragmentText);
    void reset() { m_quad.reset(); }
    explicit operator bool() const { return bool(m_quad); }

    /// Draws @p texture (sampled linearly, clamped to its edges) into the current viewport.
    void draw(QOpenGLFunctions *functions, const PanoramaUniforms &uniforms, GLuint texture);

private:
    struct Locations
    {
        int sampler, matViewInverse, colorMatrix;
        int viewportSize, viewportSizeMin, viewportSizeRatio;
        int eye, fov, scaleCorrector, cameraYaw, cameraPitch;
        int yawMin, yawMax, pitchMin, pitchMax, projScale, projectionDistance;
        int brightness, contrast, hue, saturation, vibrance, time;
        int vignettingRadius, vignettingAmount;
    };

    QuadProgram m_quad;
    Locations m_at = {};
    bool m_hasFixedFunctions = false; // GL_TEXTURE_2D can be enabled
};
