#include "app/OpenGLFlavour.h"

#include "settings/KSettingsManager.h"
#include "video/VideoBackends.h"

OpenGLFlavour chooseOpenGLFlavour(bool hmdMode, bool forceOpenGL, const QString &videoBackend,
                                  bool sharedMemory)
{
    const bool backendNeedsDesktop =
        videoBackend == QLatin1String("vlc") || videoBackend == QLatin1String("ds");
    const bool embedded = !hmdMode && !forceOpenGL && !backendNeedsDesktop && !sharedMemory;
    return embedded ? OpenGLFlavour::Embedded : OpenGLFlavour::Desktop;
}

OpenGLFlavour openGLFlavourOfThisRun(KSettingsManager &store,
                                     const QMap<QString, QVariant> &options)
{
    const auto flag = [&store](const char *key) {
        return store.GetBool(QLatin1String(key), false);
    };
    const auto given = [&options](const char *name) {
        return options.value(QLatin1String(name)).toBool();
    };
    const bool sharedMemory = flag("application/advanced/sharedmemory") || given("adobeplugin");
    QString backend = QStringLiteral("vlc");
    if (!given("customvlc")) {
        backend = store.GetString(QStringLiteral("application/videoPlugin"), QString());
        if (backend.isEmpty())
            backend = defaultVideoBackend();
    }
    return chooseOpenGLFlavour(flag("application/hmd/hmdMode"),
                               flag("application/advanced/forceopengl"), backend, sharedMemory);
}
