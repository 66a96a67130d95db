#include "app/KeyPoints.h"

#include "render/CameraMath.h"
#include "render/KShaderCodeBuilder.h"

#include <QEasingCurve>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>
#include <limits>

namespace KeyPoints {

namespace {

int projectionFromText(const QString &text)
{
    if (text == QLatin1String("planar"))
        return KShaderCodeBuilder::RECTILINEAR;
    if (text == QLatin1String("littlePlanet"))
        return KShaderCodeBuilder::LITTLE_PLANET;
    if (text == QLatin1String("fisheye"))
        return KShaderCodeBuilder::FISHEYE;
    return KShaderCodeBuilder::ORVEX;
}

bool isFinite(double a, double b, double c, double d)
{
    return std::isfinite(a) && std::isfinite(b) && std::isfinite(c) && std::isfinite(d);
}

} // namespace

QString filePath(const QString &mediaPath)
{
    static const QLatin1String kMovie(".mp4");
    if (!mediaPath.endsWith(kMovie))
        return {};
    return mediaPath.chopped(kMovie.size()) + QLatin1String(".json");
}

QMap<int, KeyPoint> parse(const QByteArray &json)
{
    QMap<int, KeyPoint> points;
    const QJsonDocument document = QJsonDocument::fromJson(json);
    const QJsonArray list =
        document.array().at(0).toObject().value(QLatin1String("points")).toArray();
    for (const QJsonValue &value : list) {
        if (!value.isObject())
            continue;
        const QJsonObject object = value.toObject();
        const double yaw = object.value(QLatin1String("yaw")).toDouble(0);
        const double pitch = object.value(QLatin1String("pitch")).toDouble(0);
        const double roll = object.value(QLatin1String("roll")).toDouble(0);
        const double fov = object.value(QLatin1String("fov")).toDouble(90);
        const double time = object.value(QLatin1String("ts")).toDouble(0) * 1000;
        constexpr double kLatest = std::numeric_limits<int>::max();
        const bool timeFits = std::abs(time) < kLatest;
        if (!timeFits || !isFinite(yaw, pitch, roll, fov))
            continue;

        constexpr double kDegToRad = 3.14159265358979323846 / 180;
        const CameraAngles angles{float(yaw * kDegToRad), float(pitch * kDegToRad),
                                  float(roll * kDegToRad)};
        KeyPoint point;
        point.rotation = CameraMath::quaternionFromMatrix(CameraMath::matrixFromAngles(angles));
        point.fov = float(fov);
        point.time = int(time);
        point.projection = projectionFromText(
            object.value(QLatin1String("projection")).toString(QStringLiteral("planar")));
        if (std::isfinite(point.fov) && std::isfinite(point.rotation.lengthSquared()))
            points.insert(point.time, point);
    }
    return points;
}

KeyPointPose poseAt(const QMap<int, KeyPoint> &points, int time)
{
    Q_ASSERT(points.size() >= 2);
    auto next = points.lowerBound(time);
    if (next == points.begin())
        ++next;
    if (next == points.end())
        --next;
    const KeyPoint &later = *next;
    const KeyPoint &earlier = *std::prev(next);

    // The span is formed in double: two times may lie further apart than an int holds.
    const double span = double(later.time) - earlier.time;
    const float t = float(qBound(0.0, (double(time) - earlier.time) / span, 1.0));
    const auto eased = float(QEasingCurve(QEasingCurve::Linear).valueForProgress(qreal(t)));
    return {CameraMath::slerp(earlier.rotation, later.rotation, t),
            earlier.fov + (later.fov - earlier.fov) * eased, earlier.projection};
}

} // namespace KeyPoints
