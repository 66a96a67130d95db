#pragma once

// Tells libFuzzer which structures an input holds. Qt's parsers are not instrumented, so without
// this every input looks alike and the seeds are dropped; one per fuzz program.

#include <cstddef>
#include <cstdint>

// The section is libFuzzer's own interface for counters that are not code coverage.
__attribute__((section("__libfuzzer_extra_counters"))) static std::uint8_t structureCounters[4096];

/// Counts what follows each of @p marks in the input.
inline void countStructures(const std::uint8_t *data, std::size_t size, const char *marks)
{
    for (std::size_t i = 0; i + 2 < size; ++i) {
        for (const char *mark = marks; *mark != 0; ++mark) {
            if (data[i] == std::uint8_t(*mark))
                ++structureCounters[(data[i] * 961U + data[i + 1] * 31U + data[i + 2]) % 4096];
        }
    }
}
