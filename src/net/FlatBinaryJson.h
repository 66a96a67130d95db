#pragma once

// Reads one flat map from Qt's binary JSON (the form of QJsonDocument::toBinaryData(), version 1).
// Qt's own reader trusts lengths in the bytes and faults on hostile ones, so bytes from the network
// are read here. A free function without a thread.

#include <QByteArray>
#include <QJsonObject>

#include <optional>

/// Nothing for bytes that are no such document, for a list, for nested values and for whatever
/// points outside the bytes. Values are null, truth values, numbers and texts.
[[nodiscard]] std::optional<QJsonObject> readFlatBinaryJson(const QByteArray &bytes);
