#include "foundation/KBinaryJson.h"

#include <gtest/gtest.h>

#include <QJsonDocument>

using KBinaryJson::Values;

TEST(BinaryJson, ReadsWhatQtWritesAndNoMore)
{
    const std::tuple<QByteArray, bool, bool> rows[] = {
        {R"({"a":null,"b":true,"c":false,"d":-5,"e":67108863,"f":1e9,"g":0.5})", true, true},
        {"{\"k\u0101y\":\"\u0101\u20ac\",\"plain\":\"\u00e9\",\"\":\"\"}", true, true},
        {"{}", false, false}, // Qt writes no bytes at all
        {R"({"a":[1]})", false, true},
        {R"({"a":{},"b":[],"c":[{"d":["e",{"f":[[1.5]]}]},null]})", false, true},
        {"{\"a\":" + QByteArray(32, '[') + QByteArray(32, ']') + "}", false, true},
        {"{\"a\":" + QByteArray(33, '[') + QByteArray(33, ']') + "}", false, false},
        {"[1]", false, false},
    };
    for (const auto &[json, plain, nested] : rows) {
        SCOPED_TRACE(json.constData());
        const QJsonDocument document = QJsonDocument::fromJson(json);
        const QByteArray bytes = document.toBinaryData();
        for (const auto &[values, taken] :
             {std::pair(Values::Plain, plain), std::pair(Values::Nested, nested)}) {
            const auto object = KBinaryJson::fromBytes(bytes, values);
            ASSERT_EQ(object.has_value(), taken);
            EXPECT_EQ(object.value_or(document.object()), document.object());
        }
        // Every single byte may lie; nothing may be read outside (the sanitizers watch).
        for (int i = 0; i < bytes.size(); ++i) {
            for (const char lie : {'\0', '\x7f', '\xff'}) {
                QByteArray lying = bytes;
                lying[i] = lie;
                const bool taken = KBinaryJson::fromBytes(lying, Values::Nested).has_value();
                EXPECT_TRUE(!taken || i >= 8 || lying == bytes) << "the header is sound";
            }
        }
        for (int i = 0; i < bytes.size(); ++i)
            EXPECT_FALSE(KBinaryJson::fromBytes(bytes.left(i), Values::Nested)) << i;
    }
}
