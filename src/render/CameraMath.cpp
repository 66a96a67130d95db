#include "render/CameraMath.h"

#include <QVector4D>

#include <cmath>

namespace CameraMath {

float wrapAngle(float angle)
{
    if (!std::isfinite(angle))
        return 0;
    // The sum is formed in double, so that rounding cannot push a value near a border past it.
    const double turns = std::floor((double(angle) + double(kPi)) / double(kTwoPi));
    constexpr double kFewTurns = 1000;
    if (std::abs(turns) > kFewTurns) // single precision has no digits left for so many turns
        return float(std::remainder(double(angle), double(kTwoPi)));
    return angle - kTwoPi * float(int(turns));
}

QMatrix4x4 matrixFromAngles(const CameraAngles &angles)
{
    const double c1 = std::cos(double(angles.yaw));
    const double s1 = std::sin(double(angles.yaw));
    const double c2 = std::cos(double(angles.pitch));
    const double s2 = std::sin(double(angles.pitch));
    const double c3 = std::cos(double(angles.roll));
    const double s3 = std::sin(double(angles.roll));

    QMatrix4x4 m;
    m(0, 0) = float(c1 * c3 + s1 * s2 * s3);
    m(0, 1) = float(s1 * s2 * c3 - c1 * s3);
    m(0, 2) = float(-s1 * c2);
    m(1, 0) = float(c2 * s3);
    m(1, 1) = float(c2 * c3);
    m(1, 2) = float(s2);
    m(2, 0) = float(s1 * c3 - c1 * s2 * s3);
    m(2, 1) = float(-s1 * s3 - c1 * s2 * c3);
    m(2, 2) = float(c1 * c2);
    return m;
}

CameraAngles anglesFromMatrix(const QMatrix4x4 &m)
{
    constexpr float kQuarterTurn = kPi / 2;
    const float sinPitch = m(1, 2);
    if (sinPitch <= -1)
        return {kQuarterTurn, std::atan2(-m(0, 1), m(0, 0)), 0};
    if (sinPitch >= 1)
        return {-kQuarterTurn, std::atan2(-m(0, 1), m(0, 0)), 0};
    return {std::atan2(-m(0, 2), m(2, 2)), std::asin(sinPitch), std::atan2(m(1, 0), m(1, 1))};
}

QVector4D quaternionFromMatrix(const QMatrix4x4 &m)
{
    const float trace = m(0, 0) + m(1, 1) + m(2, 2);
    if (trace > 0) {
        const float s = 0.5F / std::sqrt(trace + 1);
        return {(m(2, 1) - m(1, 2)) * s, (m(0, 2) - m(2, 0)) * s, (m(1, 0) - m(0, 1)) * s,
                0.25F / s};
    }
    int i = 0;
    if (m(1, 1) > m(0, 0))
        i = 1;
    if (m(2, 2) > m(i, i))
        i = 2;
    const int j = (i + 1) % 3;
    const int k = (j + 1) % 3;
    const float root = std::sqrt(m(i, i) - m(j, j) - m(k, k) + 1);
    const float s = 0.5F / root;
    QVector4D q;
    q[i] = 0.5F * root;
    q[j] = (m(j, i) + m(i, j)) * s;
    q[k] = (m(k, i) + m(i, k)) * s;
    q[3] = (m(k, j) - m(j, k)) * s;
    return q;
}

QMatrix4x4 matrixFromQuaternion(const QVector4D &q)
{
    const float x2 = 2 * q.x();
    const float y2 = 2 * q.y();
    const float z2 = 2 * q.z();
    QMatrix4x4 m;
    m(0, 0) = 1 - (y2 * q.y() + z2 * q.z());
    m(0, 1) = y2 * q.x() - z2 * q.w();
    m(0, 2) = z2 * q.x() + y2 * q.w();
    m(1, 0) = y2 * q.x() + z2 * q.w();
    m(1, 1) = 1 - (x2 * q.x() + z2 * q.z());
    m(1, 2) = z2 * q.y() - x2 * q.w();
    m(2, 0) = z2 * q.x() - y2 * q.w();
    m(2, 1) = z2 * q.y() + x2 * q.w();
    m(2, 2) = 1 - (x2 * q.x() + y2 * q.y());
    return m;
}

QVector4D slerp(const QVector4D &from, const QVector4D &to, float t)
{
    const float dot = QVector4D::dotProduct(from, to);
    float angle = 0;
    if (dot <= -1)
        angle = kPi;
    else if (dot < 1)
        angle = std::acos(dot);
    if (qFuzzyIsNull(angle))
        return from;
    const float sine = std::sin(angle);
    if (qFuzzyIsNull(sine)) // opposite ends span no arc; hold the start rather than divide by 0
        return from;
    return (std::sin(angle - t * angle) * from + std::sin(t * angle) * to) / sine;
}

} // namespace CameraMath
