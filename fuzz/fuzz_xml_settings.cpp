// Any bytes as a file of options: no crash, no hang, no memory beyond a small multiple of them.

#include "StructureCounters.h"
#include "settings/KSRFromXMLFile.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    countStructures(data, size, "<&");
    KSRFromXMLFile reader = KSRFromXMLFile::FromBytes(
        QByteArray::fromRawData(reinterpret_cast<const char *>(data), int(size)));
    reader.GetBool(QStringLiteral("image/rawAutoBright"), true);
    reader.GetInt(QStringLiteral("image/exifMode"), 0);
    reader.GetDouble(QStringLiteral("a/b"), 1.0);
    reader.GetString(QStringLiteral("b"), QString());
    return 0;
}
