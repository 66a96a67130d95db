#include "desktop/MprisRootAdaptor.h"

#include "foundation/KVersion.h"

MprisRootAdaptor::MprisRootAdaptor(PlayerControls *controls, QObject *parent)
    : QDBusAbstractAdaptor(parent)
    , m_controls(controls)
{}

QVariantMap MprisRootAdaptor::update(const PlayerStatus &status)
{
    if (m_fullScreen == status.fullScreen)
        return {};
    m_fullScreen = status.fullScreen;
    return {{QStringLiteral("Fullscreen"), m_fullScreen}};
}

QString MprisRootAdaptor::identity() const
{
    return KVersion::productName();
}

QStringList MprisRootAdaptor::uriSchemes()
{
    return {QStringLiteral("file"), QStringLiteral("http"), QStringLiteral("https"),
            QStringLiteral("rtsp"), QStringLiteral("udp")};
}

QStringList MprisRootAdaptor::supportedMimeTypes() const
{
    // As many as a client may offer to play with us; the desktop entry has the whole list.
    return {QStringLiteral("application/x-orbilens-playlist"),
            QStringLiteral("video/mp4"),
            QStringLiteral("video/quicktime"),
            QStringLiteral("video/x-matroska"),
            QStringLiteral("video/webm"),
            QStringLiteral("video/mpeg"),
            QStringLiteral("video/x-msvideo"),
            QStringLiteral("image/jpeg"),
            QStringLiteral("image/png"),
            QStringLiteral("image/tiff")};
}
