#pragma once

// How far the field of view may be opened, by projection. A free function on values.

/// Degrees.
struct FovLimits
{
    float min;
    float max;
};

/// Limits for an input projection (KShaderCodeBuilder::InputProjection) seen through an output
/// projection (KShaderCodeBuilder::ShaderProjection).
FovLimits fovLimits(int inputProjection, int outputProjection);
