#include "hmd/EyeGeometry.h"

#include "render/CameraMath.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float kDefaultFov = 90.0F;
constexpr float kNear = 0.1F;
constexpr float kFar = 30.0F;
// An eye that saw further aside (88.9 degrees) would need a picture of hardly any detail ahead.
constexpr float kWidestTangent = 50.0F;

bool isUsable(float first, float second)
{
    return std::isfinite(first) && std::isfinite(second) && std::abs(first) <= kWidestTangent &&
           std::abs(second) <= kWidestTangent && first + second > 0;
}

} // namespace

bool eyeTangents(const QMatrix4x4 &projection, EyeTangents *tangents)
{
    // A point (x, y, -1) lands at x * m00 - m02 and y * m11 - m12, the edges at -1 and 1.
    const float m00 = projection(0, 0);
    const float m11 = projection(1, 1);
    EyeTangents result;
    result.left = (1 - projection(0, 2)) / m00;
    result.right = (1 + projection(0, 2)) / m00;
    result.down = (1 - projection(1, 2)) / m11;
    result.up = (1 + projection(1, 2)) / m11;
    if (!isUsable(result.left, result.right) || !isUsable(result.down, result.up))
        return false;
    *tangents = result;
    return true;
}

EyeQuad eyeQuad(const QMatrix4x4 &projection, const QVector2D &sizeRatio)
{
    QMatrix4x4 frustum = projection;
    EyeTangents tangents;
    if (!eyeTangents(projection, &tangents)) {
        frustum.setToIdentity();
        frustum.perspective(kDefaultFov, sizeRatio.x() / sizeRatio.y(), kNear, kFar);
        eyeTangents(frustum, &tangents);
    }
    const float widest = std::max(std::max(tangents.left, tangents.right) / sizeRatio.x(),
                                  std::max(tangents.up, tangents.down) / sizeRatio.y());
    const float halfWidth = widest * sizeRatio.x();
    const float halfHeight = widest * sizeRatio.y();

    EyeQuad quad;
    quad.fov = 2 * std::atan(widest) * 180 / CameraMath::kPi;
    quad.matrix = frustum;
    quad.matrix.translate(-halfWidth, -halfHeight, -1);
    quad.matrix.scale(2 * halfWidth, 2 * halfHeight, 1);
    return quad;
}
