#pragma once

// Plain facts about the machine and their texts; static functions, callable from any thread.

#include <QString>
#include <QtGlobal>

class KSystemInfo
{
public:
    /// @p count in the largest fitting unit up to "TB" with at most four characters before it,
    /// cut and not rounded: "1.5 KB", "120 KB".
    static QString BytesToText(quint64 count);
};
