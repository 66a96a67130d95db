#pragma once

// The text of the panorama shaders as a pure function of a small key: no GL, no state, any thread.

#include <QString>

namespace shader {

/// Everything that changes the text of the fragment shader; what may change between two frames
/// without a rebuild is a uniform instead. The integers are the enumerations of
/// KShaderCodeBuilder; values outside them take the branch told beside each.
struct ShaderKey
{
    int projectionSource = 0;      ///< InputProjection; anything unknown reads as equirectangular
    int projection = 0;            ///< ShaderProjection; anything unknown draws as ORVEX
    int stereoMode = 0;            ///< StereoMode; anything unknown takes the whole picture
    int effect = 0;                ///< ShaderEffect; anything unknown has no effect
    bool quarterTurn = false;      ///< fisheye input is turned by a quarter about the view axis
    bool restrictYawPitch = true;  ///< equirectangular input covers only the limits' extent
    bool invertedColors = false;   ///< the texture holds blue first
    bool forceRectilinear = false; ///< a headset eye: rectilinear, with a vertical corrector
    bool overlay = false;          ///< the flat panel of the interface inside the headset
    bool flipY = false;            ///< the texture's first row is the picture's last one
};

/// Passes `vertex` through `matrix` and hands `texture` on as `texCoord`.
QString vertexText();

/// The panorama's fragment shader (GLSL 1.10 and GLSL ES 1.00).
QString fragmentText(const ShaderKey &key);

/// Uniforms of which a drawer knows that they keep one value until its next rebuild. Told to the
/// compiler, the arithmetic that they leave without effect costs nothing for any pixel.
struct FixedUniforms
{
    bool neutralColors = false; ///< colour matrix, controls, time and vignette change nothing
    bool wholeSphere = false;   ///< the limits are those of a whole panorama
};

/// @p fragmentText with the fixed uniforms declared as constants; a drawer may still set them.
QString withFixedUniforms(QString fragmentText, const FixedUniforms &fixed);

/// Copies the texture `src`, exchanging red and blue when @p invertedColors.
QString blitText(bool invertedColors);

/// Covers with half transparent black.
QString dimText();

/// The two parameters of the ORVEX projection.
struct OrvexParameters
{
    float scale;    ///< factor from the screen point to the image plane
    float distance; ///< the eye's distance behind the sphere's centre, 0 to 1
};

/// Eases from rectilinear (distance 0, up to 60 degrees) to stereographic (distance 1, from 180
/// degrees on). @p fov in degrees; the edge of the shorter side lies at half of it.
OrvexParameters orvexParameters(float fov);

} // namespace shader
