#pragma once

// What must hold for any datagram that a slave hears, in either form.

#include "net/SlaveRules.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>

inline int checkDatagram(const std::uint8_t *data, std::size_t size, SyncFormat format)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), int(size));
    const auto packet = decodeSyncPacket(bytes, format, QStringLiteral("lnd"));
    if (!packet)
        return 0;
    for (const float angle : {packet->yaw, packet->pitch, packet->roll}) {
        if (!(std::abs(angle) <= kLargestSyncAngle))
            std::abort();
    }
    if (!std::isfinite(packet->fov))
        std::abort();
    for (const auto mode : {SlaveUrl::Absolute, SlaveUrl::Movies}) {
        slaveUrl(packet->url, mode, [](const QString &name) {
            if (name.isEmpty() || name.contains(QLatin1Char('/')) || name == QLatin1String(".."))
                std::abort();
            return name;
        });
    }
    const SlaveActions actions = slaveActions(*packet, {0, 0, 1000, 60000, true});
    if (actions.seekTo && (*actions.seekTo < 0 || *actions.seekTo > 60000))
        std::abort();
    return 0;
}
