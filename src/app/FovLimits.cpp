#include "app/FovLimits.h"

#include "render/KShaderCodeBuilder.h"

FovLimits fovLimits(int inputProjection, int outputProjection)
{
    if (inputProjection == KShaderCodeBuilder::STANDARD)
        return {20, 180};
    switch (outputProjection) {
    case KShaderCodeBuilder::ORVEX:
        return {80, 300};
    case KShaderCodeBuilder::FISHEYE:
    case KShaderCodeBuilder::LITTLE_PLANET:
        return {20, 360};
    case KShaderCodeBuilder::RECTILINEAR:
        return {20, 130};
    default:
        return {20, 300};
    }
}
