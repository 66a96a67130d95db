#include "MovParserLib/FileAccess.h"

#include <QFileInfo>

#include <cstring>

namespace Orvex::MovParserLib {

namespace {

/// A path that the file engine would complain about rather than just fail on.
bool isBroken(const QString &path)
{
    return path.contains(QChar::Null);
}

} // namespace

SyncFileReaderQt::~SyncFileReaderQt()
{
    close();
}

Status SyncFileReaderQt::open(const QString &path)
{
    if (path.isEmpty())
        return FileReaderError::FilePath;
    close();
    // A pipe or a device would block or never end; only a regular file has a size to check with.
    if (isBroken(path) || !QFileInfo(path).isFile())
        return FileReaderError::FileOpen;
    m_file.setFileName(path);
    if (!m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return FileReaderError::FileOpen;
    m_isOpen = 1;
    return FileReaderError::Okay;
}

Status SyncFileReaderQt::open(const std::string &utf8Path)
{
    return open(QString::fromStdString(utf8Path));
}

Status SyncFileReaderQt::open(const char *utf8Path)
{
    return open(QString::fromUtf8(utf8Path));
}

Status SyncFileReaderQt::read(FileBuffer &buffer, qint64 offset, quint32 size)
{
    if (!m_isOpen)
        return FileReaderError::FileOpen;
    if (offset < 0)
        return FileReaderError::FilePosition;
    // What one transfer from the sector's start could bring at most, known before any allocation.
    const qint64 sectorStart = offset - offset % FileBuffer::kSectorSize;
    if (m_file.size() - sectorStart < qint64(size))
        return FileReaderError::AttemptToReadPastEof;
    if (buffer.prepare(size, offset, FileBuffer::kSectorSize))
        return FileReaderError::BufferAlloc;
    if (!m_file.seek(offset - buffer.dataOffset()))
        return FileReaderError::FilePosition;
    if (buffer.blockSize() <= 0)
        return FileReaderError::ReadFailed;
    const qint64 count = m_file.read(buffer.getBuffer(), buffer.blockSize());
    if (count < 0 || count < qint64(size))
        return m_file.atEnd() ? FileReaderError::AttemptToReadPastEof : FileReaderError::ReadFailed;
    std::memset(buffer.getBuffer() + count, 0, size_t(buffer.blockSize() - count));
    buffer.setPosition(0);
    buffer.setRemaining(size);
    buffer.setDataSize(size);
    return FileReaderError::Okay;
}

Status SyncFileReaderQt::close()
{
    if (m_isOpen)
        m_file.close();
    m_isOpen = 0;
    return FileReaderError::Okay;
}

qint64 SyncFileReaderQt::size() const
{
    return m_isOpen ? m_file.size() : -1;
}

SyncFileWriterQt::~SyncFileWriterQt()
{
    close();
}

Status SyncFileWriterQt::open(const QString &path)
{
    if (path.isEmpty())
        return FileWriterError::FilePath;
    close();
    if (isBroken(path))
        return FileWriterError::FileOpen;
    m_file.setFileName(path);
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return FileWriterError::FileOpen;
    m_isOpen = 1;
    return FileWriterError::Okay;
}

Status SyncFileWriterQt::open(const std::string &utf8Path)
{
    return open(QString::fromStdString(utf8Path));
}

Status SyncFileWriterQt::open(const char *utf8Path)
{
    return open(QString::fromUtf8(utf8Path));
}

Status SyncFileWriterQt::write(FileBuffer &buffer, qint64 offset, quint32 size)
{
    if (!m_isOpen)
        return FileWriterError::FileOpen;
    if (offset < 0 || !m_file.seek(offset))
        return FileWriterError::FilePosition;
    return write(buffer, size);
}

Status SyncFileWriterQt::write(FileBuffer &buffer, quint32 size)
{
    if (!m_isOpen)
        return FileWriterError::FileOpen;
    if (qint64(size) > buffer.dataSize())
        return FileWriterError::WriteFailed;
    if (m_file.write(buffer.getData(), size) != qint64(size))
        return FileWriterError::WriteFailed;
    return FileWriterError::Okay;
}

Status SyncFileWriterQt::close()
{
    if (m_isOpen)
        m_file.close();
    m_isOpen = 0;
    return FileWriterError::Okay;
}

qint64 SyncFileWriterQt::size()
{
    return m_isOpen ? m_file.size() : -1;
}

} // namespace Orvex::MovParserLib
