#pragma once

// Picture files of one test, made by the tools that people make them with, in a folder that goes
// with the object.

#include "support/Files.h"
#include <QByteArray>
#include <QFile>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/resource.h>

namespace test {

/// The most memory that this process has held so far.
inline long peakMegabytes()
{
    struct rusage usage
    {
    };
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

class Pictures
{
public:
    QString path(const QString &name) const { return m_folder.filePath(name); }

    /// Runs a tool in the folder and returns what it prints. ImageMagick complains about some of
    /// the tags that it writes itself, so only the file counts.
    QString run(const QString &tool, const QStringList &arguments) const
    {
        QProcess process;
        process.setWorkingDirectory(m_folder.path());
        process.start(tool, arguments);
        EXPECT_TRUE(process.waitForFinished(60000)) << tool.toStdString();
        return QString::fromUtf8(process.readAllStandardOutput());
    }

    /// A file by ImageMagick's arguments before the name.
    QString make(const QString &name, const QStringList &arguments) const
    {
        run("convert", arguments + QStringList{name});
        EXPECT_TRUE(QFile::exists(path(name))) << name.toStdString();
        return path(name);
    }

    /// 64 by 32 pixels: orange at the left, blue at the right.
    static QStringList orangeAndBlue()
    {
        return {"-size", "32x32", "xc:rgb(255,128,0)", "xc:rgb(0,0,255)", "+append"};
    }

    QString write(const QString &name, const QByteArray &bytes) const
    {
        return writeFile(path(name), bytes);
    }
    QByteArray read(const QString &name) const { return readFile(path(name)); }

    /// A small camera raw: a gray ramp as what a colour filter array saw.
    QString makeDng(const QString &name) const
    {
        make("cfa.tif", {"-size", "64x48", "gradient:gray10-gray30", "-colorspace", "Gray",
                         "-depth", "16", "-compress", "none"});
        run("exiftool",
            {"-q", "-m", "-o", name, "-DNGVersion=1 4 0 0", "-DNGBackwardVersion=1 1 0 0",
             "-PhotometricInterpretation#=32803", "-IFD0:CFARepeatPatternDim=2 2",
             "-IFD0:CFAPattern2=0 1 1 2", "-ColorMatrix1=1 0 0 0 1 0 0 0 1",
             "-CalibrationIlluminant1#=21", "-AsShotNeutral=0.5 1 0.6", "-Make=Orvex",
             "-Model=Test", "-UniqueCameraModel=Orvex Test", "-IFD0:BlackLevel=0",
             "-IFD0:WhiteLevel=65535", "-Orientation#=1", "cfa.tif"});
        EXPECT_TRUE(QFile::exists(path(name)));
        return path(name);
    }

private:
    QTemporaryDir m_folder;
};

} // namespace test
