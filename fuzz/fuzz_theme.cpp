// Theme files: up to three of them, parted by a zero byte, read into one book, each then merged
// along whatever it says it extends.

#include "kontrols/theme/ThemeBook.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    constexpr int kMaximumThemes = 3;
    const QByteArray bytes(reinterpret_cast<const char *>(data), int(size));
    theme::ThemeBook book;
    QStringList titles;
    for (const QByteArray &text : bytes.split('\0').mid(0, kMaximumThemes)) {
        QString error;
        const std::optional<theme::ThemeFile> file = theme::parseThemeFile(text, &error);
        if (file) {
            book.add(*file, QStringLiteral("/nonexistent"));
            titles.append(file->title);
        }
    }
    for (const QString &title : titles) {
        const std::optional<theme::MergedTheme> merged = book.merged(title);
        if (!merged)
            __builtin_trap(); // a title just added is there
        const theme::Section values = merged->valuesFor(QStringLiteral("combobox"));
        if (values.colors.size() != 6 || values.fonts.size() != 6 || !values.radius)
            __builtin_trap(); // every value stands, whatever the files say
    }
    return 0;
}
