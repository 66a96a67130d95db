#pragma once

// Qt's binary form of JSON documents, deprecated there but part of formats of ours, in one place.
// Plain functions, any thread.

#include <QByteArray>
#include <QJsonObject>

namespace KBinaryJson {

QByteArray toBytes(const QJsonObject &object);

/// The object in @p bytes, each offset in them checked; an empty one when they hold none.
QJsonObject fromBytes(const QByteArray &bytes);

} // namespace KBinaryJson
