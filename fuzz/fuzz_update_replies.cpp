// What a download server may answer: any bytes as version line and as change log.

#include "update/UpdateDecision.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto body = QByteArray(reinterpret_cast<const char *>(data), int(size));
    const auto reply = UpdateDecision::readVersionReply(body);
    if (reply && (!reply->date.isValid() || !ProductVersion::parse(reply->version.text())))
        std::abort();
    const QString log = UpdateDecision::safeChangeLog(body);
    for (const char *element : {"<img", "<script", "<style", "<iframe", "<link"}) {
        if (log.contains(QLatin1String(element), Qt::CaseInsensitive))
            std::abort();
    }
    return 0;
}
