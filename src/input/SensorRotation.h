#pragma once

// From the bytes that a sensor reports to the rotation that the view takes. Values and free
// functions without a device; KSensor uses them on the GUI thread, the report is read on the
// sensor's.

#include <QMatrix4x4>

#include <array>
#include <cstddef>
#include <optional>

/// The upper left block of a rotation matrix, row by row.
using SensorMatrix = std::array<float, 9>;

/// Nothing when the report holds no vector of bytes (@p variantType other than VT_VECTOR | VT_UI1),
/// fewer than the 36 that nine floats take, or numbers that are not finite.
std::optional<SensorMatrix> sensorMatrixFromReport(quint16 variantType, const void *bytes,
                                                   std::size_t count);

/// Turns poses of the device into rotations relative to the pose at activation.
class SensorRotation
{
public:
    /// The first matrix after a reset becomes the reference.
    QMatrix4x4 relative(const SensorMatrix &matrix);
    void reset() { m_referenceSet = false; }

private:
    QMatrix4x4 m_rotation; // inverse of the pose at activation
    bool m_referenceSet = false;
};
