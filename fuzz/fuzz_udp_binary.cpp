// Datagrams in binary form: any bytes give a packet within its limits, or none.

#include "fuzz_udp.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    return checkDatagram(data, size, SyncFormat::QtBinary);
}
