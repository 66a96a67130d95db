#pragma once

// Qt's binary form of JSON documents (QJsonDocument::toBinaryData(), version 1), deprecated there
// but part of formats of ours. Qt's own reader trusts lengths in the bytes and faults on hostile
// ones, so bytes are read here. Plain functions, any thread.

#include <QByteArray>
#include <QJsonObject>

#include <optional>

namespace KBinaryJson {

/// What a map may hold: null, truth values, numbers and texts, or lists and maps of them as well,
/// to a depth of 32.
enum class Values { Plain, Nested };

/// Nothing at all for an empty map.
QByteArray toBytes(const QJsonObject &object);

/// Nothing for bytes that are no such map, for values that are not asked for, and for whatever
/// points outside the bytes or stands for more than them.
[[nodiscard]] std::optional<QJsonObject> fromBytes(const QByteArray &bytes, Values values);

} // namespace KBinaryJson
