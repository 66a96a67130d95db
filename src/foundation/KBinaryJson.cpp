#include "foundation/KBinaryJson.h"

#include <QJsonDocument>

QByteArray KBinaryJson::toBytes(const QJsonObject &object)
{
    return QJsonDocument(object).toBinaryData();
}

QJsonObject KBinaryJson::fromBytes(const QByteArray &bytes)
{
    return QJsonDocument::fromBinaryData(bytes, QJsonDocument::Validate).object();
}
