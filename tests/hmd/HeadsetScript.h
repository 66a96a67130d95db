#pragma once

// The folder through which a stand-in runtime is scripted and tells what it was given; owned by a
// test.

#include "render/CameraMath.h"
#include "support/Files.h"
#include "support/Soon.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QImage>
#include <QMap>
#include <QSaveFile>
#include <QTemporaryDir>

namespace test {

class HeadsetScript
{
public:
    HeadsetScript() { qputenv("ORBILENS_VR_FOLDER", m_folder.path().toLocal8Bit()); }

    QString filePath(const QString &name) const { return m_folder.filePath(name); }

    /// Changes lines, of a key and numbers each, that semicolons part; a key alone goes.
    void set(const QByteArray &lines)
    {
        for (const QByteArray &line : lines.split(';')) {
            const QByteArray key = line.split(' ').first();
            m_lines.remove(key);
            if (key != line)
                m_lines[key] = line;
        }
        QSaveFile file(filePath("script"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(m_lines.values().join('\n') + '\n');
        ASSERT_TRUE(file.commit());
    }
    /// Takes back what such lines said.
    void unset(const QByteArray &lines)
    {
        for (const QByteArray &line : lines.split(';'))
            set(line.split(' ').first());
    }

    static QByteArray numbers(const QMatrix4x4 &matrix)
    {
        QByteArray text;
        for (int i = 0; i < 12; ++i)
            text += QByteArray::number(double(matrix(i / 4, i % 4)), 'g', 9) + ' ';
        return text;
    }
    static QByteArray numbers(const QVector4D &vector)
    {
        QByteArray text;
        for (int i = 0; i < 4; ++i)
            text += QByteArray::number(double(vector[i]), 'g', 9) + ' ';
        return text;
    }

    /// How a head is held, in the words of each family.
    static QByteArray headLines(const QMatrix4x4 &head)
    {
        return "pose " + numbers(head) + ";head " + numbers(CameraMath::quaternionFromMatrix(head));
    }

    /// The pictures of both eyes that the runtime gets from now on; kept as artefacts under @p
    /// name.
    std::array<QImage, 2> eyePictures(const QString &name)
    {
        set("picture " + QByteArray::number(++m_pictures));
        const QString path = filePath(QStringLiteral("eye%1-%2.ppm"));
        EXPECT_SOON(QFile::exists(path.arg(1).arg(m_pictures)));
        const QDir artefacts(QStringLiteral(ORBILENS_BINARY_DIR "/artefacts"));
        artefacts.mkpath(QStringLiteral("."));
        std::array<QImage, 2> images;
        for (std::size_t eye = 0; eye < 2; ++eye) {
            images[eye] = QImage(path.arg(eye).arg(m_pictures));
            images[eye] = images[eye].convertToFormat(QImage::Format_RGB32);
            images[eye].save(artefacts.filePath(QStringLiteral("%1-eye%2.png").arg(name).arg(eye)));
        }
        return images;
    }

    /// How often the runtime was asked for @p what.
    int count(const QByteArray &what) const
    {
        for (const QByteArray &line : readFile(filePath("counts")).split('\n')) {
            if (line.startsWith(what + ' '))
                return line.mid(what.size() + 1).toInt();
        }
        return 0;
    }

private:
    QTemporaryDir m_folder;
    QMap<QByteArray, QByteArray> m_lines; // by their keys
    int m_pictures = 0;
};

} // namespace test
