#pragma once

// Small files of tests: written as a whole, with the folders above them, and read as a whole.

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace test {

/// Returns @p path.
inline QString writeFile(const QString &path, const QByteArray &bytes = "x")
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size())
        << qPrintable(path);
    return path;
}

/// Nothing where there is no file.
inline QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace test
