#include "video/VideoBackends.h"

#include "video/KVideoPlugin.h"

std::vector<VideoBackend> videoBackends()
{
    return {KVideoPlugin::vlcBackend(),
            {QStringLiteral("qt"), QStringLiteral("Qt Multimedia"),
             KVideoPlugin::tr("Plays through the media service of the system.")}};
}

QString defaultVideoBackend()
{
    return QStringLiteral("vlc");
}
