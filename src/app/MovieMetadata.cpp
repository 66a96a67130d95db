#include "app/MovieMetadata.h"

#include "MovParserLib/MovFileReader.h"

#include <QSize>

QVariantMap readMovieMetadata(const QString &path)
{
    Orvex::MovParserLib::MovFileReader reader;
    if (reader.open(path) != 0 || !reader.isVideoFile())
        return {};

    // An answer that the file does not give leaves the value it has here.
    quint32 width = 0;
    quint32 height = 0;
    if (reader.getFrameSize(&width, &height) != 0)
        width = height = 0;
    double rate = 0;
    if (reader.getFrameRate(&rate) != 0)
        rate = 0;
    bool isOrvex = false;
    if (reader.isOrvexFile(&isOrvex) != 0)
        isOrvex = false;
    float yaw = 0;
    float pitch = 0;
    float roll = 0;
    if (reader.getInitialOrientation(&yaw, &pitch, &roll) != 0)
        yaw = pitch = roll = 0;
    quint32 projection = 1;
    if (reader.getProjection(&projection) != 0)
        projection = 1;
    quint32 stereo = 0;
    if (reader.getStereoMode(&stereo) != 0)
        stereo = 0;
    std::string tool;
    if (reader.getWritingTool(tool) != 0)
        tool.clear();

    QVariantMap metadata{{QStringLiteral("Texture size"), QSize(int(width), int(height))},
                         {QStringLiteral("Frame width"), width},
                         {QStringLiteral("Frame height"), height},
                         {QStringLiteral("Video frame rate"), rate},
                         {QStringLiteral("Orvex file"), isOrvex},
                         {QStringLiteral("Initial yaw"), yaw},
                         {QStringLiteral("Initial pitch"), pitch},
                         {QStringLiteral("Initial roll"), roll},
                         {QStringLiteral("Projection"), int(projection)},
                         {QStringLiteral("Stereoscopy"), int(stereo)}};
    const QString toolText = QString::fromUtf8(tool.c_str()); // up to the file's own terminator
    if (!toolText.isEmpty())
        metadata.insert(QStringLiteral("Writing Tool"), toolText);
    return metadata;
}
