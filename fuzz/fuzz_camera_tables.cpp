// The tables of cameras and lenses, and the numbers out of metadata texts: any bytes are lines.

#include "KImage/CameraProperties.h"
#include "KImage/LensIDProperties.h"
#include "KImage/MetadataText.h"

#include <QTextStream>

#include <cmath>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), int(size));
    QTextStream cameraStream(bytes);
    for (const auto &entry : CameraProperties::parse(cameraStream)) {
        if (entry.brand.contains('#') || entry.model.contains(';'))
            std::abort();
    }
    QTextStream lensStream(bytes);
    for (const auto &entry : LensIDProperties::parse(lensStream)) {
        if (int(entry.type) < 0 || int(entry.type) > 2 || entry.name.contains('#'))
            std::abort();
    }
    const QString text = QString::fromUtf8(bytes);
    double first = 0;
    double second = 0;
    if (!std::isfinite(MetadataText::number(text)) || !std::isfinite(MetadataText::degrees(text)) ||
        (MetadataText::twoNumbers(text, first, second) && !std::isfinite(first + second)))
        std::abort();
    MetadataText::date(text);
    MetadataText::unitInMillimetres(text);
    return 0;
}
