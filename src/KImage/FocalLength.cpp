#include "KImage/FocalLength.h"

#include <cmath>

namespace FocalLength {

FocalResult compute(const FocalInput &input)
{
    FocalResult result;
    if (!(input.focal > 0))
        return result;
    if (input.focal35 > 0) {
        result.scale = input.focal35 / input.focal;
        result.source = FocalSource::Equivalent;
    } else if (input.cameraScale) {
        result.scale = *input.cameraScale;
        result.source = FocalSource::Camera;
    } else if (input.resolutionX > 0 && input.resolutionY > 0 && input.unit > 0 &&
               input.width > 0 && input.height > 0) {
        result.scale =
            kFullFrameDiagonal / std::hypot(input.width * input.unit / input.resolutionX,
                                            input.height * input.unit / input.resolutionY);
        result.source = FocalSource::FocalPlane;
    }
    result.focal35 =
        result.source == FocalSource::Equivalent ? input.focal35 : input.focal * result.scale;
    return result;
}

double fieldOfView(double focal35)
{
    constexpr double kHalfWidth = 18.0;
    constexpr double kDegreesPerRadian = 57.295779513082320877;
    return focal35 > 0 ? 2 * std::atan(kHalfWidth / focal35) * kDegreesPerRadian : 0.0;
}

} // namespace FocalLength
