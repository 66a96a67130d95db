// Camera paths beside a film: any bytes give poses that are finite rotations, or none.

#include "app/KeyPoints.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto points =
        KeyPoints::parse(QByteArray(reinterpret_cast<const char *>(data), int(size)));
    if (points.size() < 2)
        return 0;
    for (const int time : {-1, 0, 1, 1500, points.lastKey(), 2147483647}) {
        const KeyPointPose pose = KeyPoints::poseAt(points, time);
        if (!std::isfinite(pose.fov) || !std::isfinite(pose.rotation.lengthSquared()))
            std::abort();
    }
    return 0;
}
