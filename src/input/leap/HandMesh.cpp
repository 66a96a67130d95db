#include "input/leap/HandMesh.h"

#include "render/CameraMath.h"

#include <algorithm>
#include <cmath>

namespace HandMesh {

namespace {

constexpr int kSides = 12;
constexpr int kCapRings = 4;
constexpr float kBaseRadius = 9; // millimetres
constexpr float kTipRadius = 6.5F;
constexpr float kKnuckleReach = 60;
constexpr float kViewAngle = 45;     // degrees
constexpr float kHeadViewAngle = 90; // about a headset's
const QVector3D kEye(0, 360, 400);
const QVector3D kCentre(0, 170, -30);
const QVector3D kLight = QVector3D(-0.4F, 0.7F, 0.6F).normalized();

/// One ring of a body of revolution about the finger.
struct Ring
{
    float along; ///< millimetres from the base
    float radius;
    float slope; ///< of the surface's normal along the finger, -1 to 1
};

std::vector<Ring> rings(float length, float scale)
{
    std::vector<Ring> result;
    const float base = kBaseRadius * scale;
    const float tip = kTipRadius * scale;
    for (int i = kCapRings; i > 0; --i) {
        const float angle = float(i) / kCapRings * CameraMath::kPi / 2;
        result.push_back({-base * std::sin(angle), base * std::cos(angle), -std::sin(angle)});
    }
    for (int i = 0; i <= kCapRings; ++i) {
        const float angle = float(i) / kCapRings * CameraMath::kPi / 2;
        if (i == 0)
            result.push_back({0, base, 0});
        result.push_back({length + tip * std::sin(angle), tip * std::cos(angle), std::sin(angle)});
    }
    return result;
}

QVector3D shade(const QVector3D &normal, const QVector3D &lamp, FingerKind kind)
{
    // The player's blue; the index, which points, is the brightest.
    const QVector3D colour =
        kind == FingerKind::Index ? QVector3D(0.35F, 0.83F, 1.0F) : QVector3D(0.0F, 0.64F, 0.85F);
    const float light = 0.45F + 0.55F * std::max(0.0F, QVector3D::dotProduct(normal, lamp));
    return colour * light;
}

void addFinger(const Finger &finger, float scale, const QVector3D &lamp,
               std::vector<Vertex> &vertices)
{
    const QVector3D way = finger.tip - finger.base;
    const float length = way.length();
    if (length < 1)
        return;
    const QVector3D along = way / length;
    const QVector3D helper = std::abs(along.y()) < 0.9F ? QVector3D(0, 1, 0) : QVector3D(1, 0, 0);
    const QVector3D side = QVector3D::crossProduct(along, helper).normalized();
    const QVector3D up = QVector3D::crossProduct(side, along);
    const auto vertex = [&](const Ring &ring, int i) {
        const float angle = float(i) / kSides * CameraMath::kTwoPi;
        const QVector3D outwards = side * std::cos(angle) + up * std::sin(angle);
        const QVector3D normal =
            outwards * std::sqrt(1 - ring.slope * ring.slope) + along * ring.slope;
        return Vertex{finger.base + along * ring.along + outwards * ring.radius,
                      shade(normal, lamp, finger.kind)};
    };
    const std::vector<Ring> body = rings(length, scale);
    for (std::size_t r = 0; r + 1 < body.size(); ++r) {
        for (int i = 0; i < kSides; ++i) {
            const Vertex a = vertex(body[r], i);
            const Vertex b = vertex(body[r], i + 1);
            const Vertex c = vertex(body[r + 1], i);
            const Vertex d = vertex(body[r + 1], i + 1);
            for (const Vertex &corner : {a, c, b, b, c, d})
                vertices.push_back(corner);
        }
    }
}

/// The fingers and what joins those of one hand where they begin.
FingerList withKnuckles(const FingerList &fingers)
{
    FingerList rods = fingers;
    for (int i = 1; i < fingers.size(); ++i) {
        const Finger &a = fingers[i - 1];
        const Finger &b = fingers[i];
        if (int(b.kind) == int(a.kind) + 1 && (a.base - b.base).length() < kKnuckleReach)
            rods.append({FingerKind::Middle, true, a.base, b.base});
    }
    return rods;
}

} // namespace

std::vector<Vertex> build(const FingerList &fingers, Place place, float eyeOffset, float scale)
{
    const QMatrix4x4 toTracker = headMounted(place).inverted();
    const QVector3D eye = toTracker.map(kEye + QVector3D(eyeOffset, 0, 0));
    const QVector3D lamp = toTracker.mapVector(kLight);
    FingerList sorted = withKnuckles(fingers);
    const auto distance = [&eye](const Finger &f) {
        return ((f.base + f.tip) / 2 - eye).lengthSquared();
    };
    std::stable_sort(sorted.begin(), sorted.end(), [&distance](const Finger &a, const Finger &b) {
        return distance(a) > distance(b);
    });
    std::vector<Vertex> vertices;
    for (const Finger &finger : qAsConst(sorted))
        addFinger(finger, scale, lamp, vertices);
    return vertices;
}

QMatrix4x4 projection(Place place, float aspect, float eyeOffset)
{
    const QVector3D beside(eyeOffset, 0, 0);
    const QVector3D target = place == Place::Head ? kEye - QVector3D(0, 0, 1) : kCentre;
    QMatrix4x4 matrix;
    matrix.perspective(place == Place::Head ? kHeadViewAngle : kViewAngle, aspect, 10, 5000);
    matrix.lookAt(kEye + beside, target + beside, {0, 1, 0});
    return matrix;
}

QMatrix4x4 headMounted(Place place)
{
    if (place == Place::Desk)
        return {};
    // The axes as for gestures, and the head where a person before the desk has it.
    return {-1, 0, 0, kEye.x(), 0, 0, -1, kEye.y(), 0, -1, 0, kEye.z(), 0, 0, 0, 1};
}

} // namespace HandMesh
