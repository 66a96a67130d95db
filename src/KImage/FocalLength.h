#pragma once

// How wide a camera sees, from what its metadata gives. Free functions on values, any thread.

#include <optional>

/// Numbers that are unknown are 0.
struct FocalInput
{
    double focal = 0;   ///< real focal length in millimetres
    double focal35 = 0; ///< the equivalent for a frame of 36 by 24 mm
    int width = 0;      ///< pixels
    int height = 0;
    double resolutionX = 0; ///< of the focal plane, pixels per unit
    double resolutionY = 0;
    double unit = 0;                   ///< millimetres
    std::optional<double> cameraScale; ///< of the table of cameras
};

enum class FocalSource { Nothing, Equivalent, Camera, FocalPlane };

struct FocalResult
{
    double scale = 1.0; ///< of the sensor to the full frame
    double focal35 = 50.0;
    FocalSource source = FocalSource::Nothing;
};

namespace FocalLength {

/// Diagonal of the full frame: sqrt(36^2 + 24^2) millimetres.
constexpr double kFullFrameDiagonal = 43.266615305567875;

/// The first that is known counts: the equivalent that the file gives, the camera's scale, the size
/// of the focal plane. Else the real focal length is the equivalent, and 50 without one.
FocalResult compute(const FocalInput &input);

/// Angle in degrees that the 36 mm side of the full frame sees.
double fieldOfView(double focal35);

} // namespace FocalLength
