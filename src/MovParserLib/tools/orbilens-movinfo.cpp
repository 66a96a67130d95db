// Shows movie files by hand: the answers that the player asks for, then the whole tree.
// Usage: orbilens-movinfo FILE...

#include "MovParserLib/MovFileReader.h"

#include <QCoreApplication>
#include <QStringList>

#include <cstdio>

using namespace Orvex::MovParserLib;

namespace {

void showStatus(const char *question, Status status)
{
    if (status)
        std::printf("%s: status 0x%x\n", question, status);
}

void showAnswers(const MovFileReader &reader)
{
    std::printf("Video file: %s\n", reader.isVideoFile() ? "yes" : "no");

    quint32 width = 0;
    quint32 height = 0;
    showStatus("Frame size", reader.getFrameSize(&width, &height));
    std::printf("Frame size: %u x %u\n", width, height);

    double rate = 0;
    showStatus("Frame rate", reader.getFrameRate(&rate));
    std::printf("Frame rate: %.3f\n", rate);

    bool isOrvex = false;
    showStatus("Orvex file", reader.isOrvexFile(&isOrvex));
    std::printf("Orvex file: %s\n", isOrvex ? "yes" : "no");

    float yaw = 0;
    float pitch = 0;
    float roll = 0;
    showStatus("Orientation", reader.getInitialOrientation(&yaw, &pitch, &roll));
    std::printf("Orientation: yaw %g, pitch %g, roll %g\n", yaw, pitch, roll);

    quint32 projection = 0;
    showStatus("Projection", reader.getProjection(&projection));
    std::printf("Projection: %u\n", projection);

    quint32 stereo = 0;
    showStatus("Stereo mode", reader.getStereoMode(&stereo));
    std::printf("Stereo mode: %u\n", stereo);

    std::string tool;
    showStatus("Writing tool", reader.getWritingTool(tool));
    std::printf("Writing tool: %s\n", tool.c_str());
    std::printf("Movie at: %llu\n", static_cast<unsigned long long>(reader.movieOffset()));
}

bool showFile(const QString &path)
{
    std::printf("%s\n", qPrintable(path));
    MovFileReader reader;
    if (const Status status = reader.open(path)) {
        std::printf("open: status 0x%x\n", status);
        return false;
    }
    showAnswers(reader);
    reader.movie().print(0);
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList paths = QCoreApplication::arguments().mid(1);
    if (paths.isEmpty()) {
        std::fprintf(stderr, "usage: orbilens-movinfo FILE...\n");
        return 2;
    }
    bool allGood = true;
    for (const QString &path : paths)
        allGood = showFile(path) && allGood;
    return allGood ? 0 : 1;
}
