#include "net/SyncPacket.h"

#include "foundation/KBinaryJson.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QVariantMap>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

/// The binary form is deprecated in Qt but still what older installations speak.
QByteArray toBytes(const QJsonDocument &document, SyncFormat format)
{
    return format == SyncFormat::QtBinary ? KBinaryJson::toBytes(document.object())
                                          : document.toJson(QJsonDocument::Compact);
}

/// A packet is one flat map. Documents with anything inside it are turned away before Qt's parser
/// sees them: it loses the memory of a nested value whose key is repeated.
bool isFlatJson(const QByteArray &text)
{
    bool inString = false;
    int containers = 0;
    for (int i = 0; i < text.size(); ++i) {
        const char c = text.at(i);
        if (inString && c == '\\')
            ++i;
        else if (c == '"')
            inString = !inString;
        else if (!inString && (c == '{' || c == '['))
            ++containers;
    }
    return containers == 1;
}

std::optional<QJsonObject> fromBytes(const QByteArray &bytes, SyncFormat format)
{
    if (format == SyncFormat::QtBinary)
        return KBinaryJson::fromBytes(bytes, KBinaryJson::Values::Plain);
    const QJsonDocument document =
        isFlatJson(bytes) ? QJsonDocument::fromJson(bytes) : QJsonDocument();
    return document.isObject() ? std::optional(document.object()) : std::nullopt;
}

/// Reads fields one after another and remembers whether each was what it should be.
class Fields
{
public:
    explicit Fields(const QJsonObject &map)
        : m_map(map)
    {}

    double number(const char *key)
    {
        const QJsonValue value = m_map.value(QLatin1String(key));
        m_sound = m_sound && (value.isUndefined() || value.isDouble());
        const double number = value.toDouble();
        m_sound = m_sound && std::isfinite(number);
        return number;
    }

    float angle(const char *key)
    {
        const double angle = number(key);
        m_sound = m_sound && std::abs(angle) <= double(kLargestSyncAngle);
        return m_sound ? float(angle) : 0;
    }

    float real(const char *key)
    {
        constexpr double kLargest = std::numeric_limits<float>::max();
        return m_sound ? float(std::clamp(number(key), -kLargest, kLargest)) : 0;
    }

    int whole(const char *key)
    {
        constexpr double kLowest = std::numeric_limits<int>::min();
        constexpr double kHighest = std::numeric_limits<int>::max();
        const double value = number(key);
        return m_sound ? int(std::clamp(value, kLowest, kHighest)) : 0;
    }

    QString text(const char *key)
    {
        const QJsonValue value = m_map.value(QLatin1String(key));
        m_sound = m_sound && (value.isUndefined() || value.isString());
        return value.toString();
    }

    bool sound() const { return m_sound; }

private:
    QJsonObject m_map;
    bool m_sound = true;
};

} // namespace

QByteArray encodeSyncPacket(const SyncPacket &packet, SyncFormat format)
{
    const QVariantMap map{{QStringLiteral("id"), packet.id},
                          {QStringLiteral("yaw"), packet.yaw},
                          {QStringLiteral("pitch"), packet.pitch},
                          {QStringLiteral("roll"), packet.roll},
                          {QStringLiteral("fov"), packet.fov},
                          {QStringLiteral("stereoMode"), packet.stereoMode},
                          {QStringLiteral("url"), packet.url},
                          {QStringLiteral("state"), packet.state},
                          {QStringLiteral("position"), packet.position}};
    return toBytes(QJsonDocument::fromVariant(map), format);
}

std::optional<SyncPacket> decodeSyncPacket(const QByteArray &bytes, SyncFormat format,
                                           const QString &id)
{
    const std::optional<QJsonObject> map = fromBytes(bytes, format);
    if (!map)
        return std::nullopt;

    Fields fields(*map);
    SyncPacket packet;
    packet.id = fields.text("id");
    if (!fields.sound() || packet.id != id)
        return std::nullopt;
    packet.yaw = fields.angle("yaw");
    packet.pitch = fields.angle("pitch");
    packet.roll = fields.angle("roll");
    packet.fov = fields.real("fov");
    packet.stereoMode = fields.whole("stereoMode");
    packet.url = fields.text("url");
    packet.state = fields.whole("state");
    packet.position = fields.whole("position");
    if (!fields.sound())
        return std::nullopt;
    return packet;
}
