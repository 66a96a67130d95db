#pragma once

// What the image layers, the file layers and the memory pool throw; by value, on any thread, caught
// by reference.

#include <QString>

#include <array>
#include <cstddef>

/// Throw with K_THROW, which knows the place.
struct KException
{
    /// For the user, already translated.
    QString message;
    /// For the log, never shown alone: File: "<source without folder and suffix>" Line: <n>
    QString location;

    /// The messages that several layers share.
    static QString FileNotFound(const QString &path);
    static QString NotEnoughSpace(const QString &path);
    static QString CannotWrite(const QString &path);
    static QString TemporaryFolderFull();
    /// Of the image library: its error by name, and the file that it concerns.
    static QString ImageLibraryError(const QString &error);
    static QString ConcernedFile(const QString &path);

    /// Location text of a throw site at compile time; @p path has either kind of slash.
    /// NUL-terminated and never longer than the path and the words around it.
    template <std::size_t Size>
    static constexpr std::array<char, Size + 32> LocationText(const char (&path)[Size], int line)
    {
        std::size_t begin = 0;
        std::size_t end = Size - 1;
        for (std::size_t i = 0; i + 1 < Size; ++i) {
            if (path[i] == '/' || path[i] == '\\')
                begin = i + 1;
        }
        for (std::size_t i = Size - 1; i > begin; --i) {
            if (path[i] == '.') {
                end = i;
                break;
            }
        }

        std::array<char, Size + 32> text{};
        std::size_t size = 0;
        for (const char *word = "File: \""; *word != 0; ++word)
            text[size++] = *word;
        for (std::size_t i = begin; i < end; ++i)
            text[size++] = path[i];
        for (const char *word = "\" Line: "; *word != 0; ++word)
            text[size++] = *word;
        int power = 1;
        while (line / power >= 10)
            power *= 10;
        for (; power > 0; power /= 10)
            text[size++] = char('0' + line / power % 10);
        return text;
    }
};

/// Throws a KException with @p message and the place of this very line.
#define K_THROW(message)                                                                           \
    do {                                                                                           \
        static constexpr auto throwSite = KException::LocationText(__FILE__, __LINE__);            \
        throw KException{(message), QString::fromUtf8(throwSite.data())};                          \
    } while (false)
