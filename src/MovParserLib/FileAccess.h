#pragma once

// Reading and writing of files by whole sectors, as interfaces and over QFile; each object belongs
// to the reader or writer that made it and stays on that one's thread.

#include "MovParserLib/FileBuffer.h"

#include <QFile>
#include <QString>

#include <string>

namespace Orvex::MovParserLib {

/// Source of bytes; codes of FileReaderDomain.
class FileReader
{
public:
    virtual ~FileReader() = default;
    [[nodiscard]] virtual Status open(const QString &path) = 0;
    /// Prepares @p buffer and fills it with @p size bytes from file offset @p offset.
    [[nodiscard]] virtual Status read(FileBuffer &buffer, qint64 offset, quint32 size) = 0;
    virtual Status close() = 0;
};

/// Sink of bytes; codes of FileWriterDomain.
class FileWriter
{
public:
    virtual ~FileWriter() = default;
    [[nodiscard]] virtual Status open(const QString &path) = 0;
    /// Writes the first @p size useful bytes of @p buffer at an absolute file offset.
    [[nodiscard]] virtual Status write(FileBuffer &buffer, qint64 offset, quint32 size) = 0;
    /// The same at the current file position.
    [[nodiscard]] virtual Status write(FileBuffer &buffer, quint32 size) = 0;
    virtual Status close() = 0;
    /// Bytes in the file, -1 when it is not open.
    virtual qint64 size() = 0;
};

/// Unbuffered, synchronous reading of a regular file.
class SyncFileReaderQt final : public FileReader
{
public:
    SyncFileReaderQt() = default;
    ~SyncFileReaderQt() override;

    [[nodiscard]] Status open(const QString &path) override;
    [[nodiscard]] Status open(const std::string &utf8Path);
    [[nodiscard]] Status open(const char *utf8Path);
    /// A read that ends in the padding of its last sector succeeds; what lies behind the end of
    /// the file is zero. Nothing is allocated for bytes that the file does not have.
    [[nodiscard]] Status read(FileBuffer &buffer, qint64 offset, quint32 size) override;
    Status close() override;

    /// Bytes in the file, -1 when it is not open.
    qint64 size() const;

private:
    quint8 m_isOpen = 0;
    QFile m_file;
};

/// Synchronous writing of a file that is made anew.
class SyncFileWriterQt final : public FileWriter
{
public:
    SyncFileWriterQt() = default;
    ~SyncFileWriterQt() override;

    [[nodiscard]] Status open(const QString &path) override;
    [[nodiscard]] Status open(const std::string &utf8Path);
    [[nodiscard]] Status open(const char *utf8Path);
    [[nodiscard]] Status write(FileBuffer &buffer, qint64 offset, quint32 size) override;
    [[nodiscard]] Status write(FileBuffer &buffer, quint32 size) override;
    Status close() override;
    qint64 size() override;

private:
    quint8 m_isOpen = 0;
    QFile m_file;
};

} // namespace Orvex::MovParserLib
