// Playlist files: any bytes give media or an error for people, never both.

#include "app/PlayListReader.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const PlayListContents contents = PlayListReader::parse(
        QByteArray(reinterpret_cast<const char *>(data), int(size)), QStringLiteral("/media"));
    if (contents.error.isEmpty() == contents.media.isEmpty())
        std::abort();
    return 0;
}
