#include "input/SensorRotation.h"

#include <cmath>
#include <cstring>

namespace {

constexpr quint16 kVectorOfBytes = 0x1011; // VT_VECTOR | VT_UI1

} // namespace

std::optional<SensorMatrix> sensorMatrixFromReport(quint16 variantType, const void *bytes,
                                                   std::size_t count)
{
    SensorMatrix matrix{};
    if (variantType != kVectorOfBytes || !bytes || count < sizeof matrix)
        return std::nullopt;
    std::memcpy(matrix.data(), bytes, sizeof matrix);
    for (const float number : matrix) {
        if (!std::isfinite(number))
            return std::nullopt;
    }
    return matrix;
}

QMatrix4x4 SensorRotation::relative(const SensorMatrix &matrix)
{
    const QMatrix4x4 current(matrix[0], matrix[1], matrix[2], 0, //
                             matrix[3], matrix[4], matrix[5], 0, //
                             matrix[6], matrix[7], matrix[8], 0, //
                             0, 0, 0, 1);
    if (!m_referenceSet) {
        m_rotation = current.transposed();
        m_referenceSet = true;
    }
    return current * m_rotation;
}
