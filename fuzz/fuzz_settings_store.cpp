// Any bytes as the file of the settings store: what passes the check does no harm in QSettings.

#include "StructureCounters.h"
#include "settings/StoreCheck.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    countStructures(data, size, "[@\\=");
    const QByteArray text(reinterpret_cast<const char *>(data), int(size));
    if (!StoreCheck::isSafe(text))
        return 0;
    // One name each time: files of names seen before come from the library's cache.
    static const QTemporaryDir folder;
    static quint64 count = 0;
    QFile file(folder.filePath(QString::number(++count)));
    if (!file.open(QIODevice::WriteOnly))
        return 0;
    file.write(text);
    file.close();
    {
        const QSettings store(file.fileName(), QSettings::IniFormat);
        for (const QString &key : store.allKeys())
            store.value(key).toString();
    }
    file.remove();
    return 0;
}
