// What a store of events or a server may hold: any bytes as an event's text, as the binary file of
// events and as the collector's answer.

#include "analytics/EventCoding.h"
#include "analytics/KAnalyticsEvent.h"
#include "foundation/KBinaryJson.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// Qt's JSON parser leaks the first value of a key that comes twice, when that value is a
/// container:
/// '{"a":[1],"a":1}'.
extern "C" const char *__lsan_default_suppressions()
{
    return "leak:libQt5Core.so";
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const EventCoding::Reporter reporter{"{u}", "{u}|1", "2.3.1.400"};
    const auto bytes = QByteArray(reinterpret_cast<const char *>(data), int(size));
    const QString text = QString::fromUtf8(bytes);
    if (const auto event = KAnalyticsRawEvent(text).toEvent()) {
        const QByteArray form = EventCoding::formBody(*event, reporter, "UA-1", "p");
        const QByteArray record = EventCoding::record(*event, reporter);
        // Neither text of an event can end its field of the form.
        if (form.count('&') < 12 || form.count('&') > 13 || record.isEmpty())
            std::abort();
        if (!KAnalyticsRawEvent(event->toJsonText()).toEvent())
            std::abort();
    }
    if (EventCoding::collectorAccepted(text) && !text.contains("ok", Qt::CaseInsensitive) &&
        !text.contains('\\'))
        std::abort();
    if (const auto file = KBinaryJson::fromBytes(bytes, KBinaryJson::Values::Nested)) {
        // What was read can be written and read again.
        const QByteArray written = KBinaryJson::toBytes(*file);
        const auto again = KBinaryJson::fromBytes(written, KBinaryJson::Values::Nested);
        if (!file->isEmpty() && (!again || KBinaryJson::toBytes(*again) != written))
            std::abort();
    }
    return 0;
}
