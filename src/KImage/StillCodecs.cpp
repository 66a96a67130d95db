#include "KImage/StillCodecs.h"

#include <QLoggingCategory>
#include <QPluginLoader>

Q_LOGGING_CATEGORY(codecsLog, "kimage.codecs", QtWarningMsg)

StillCodecs *stillCodecs()
{
    static StillCodecs *const codecs = [] {
        QPluginLoader loader(QStringLiteral("stillcodecs"));
        // libvips has threads of its own, which must not lose their code at the program's end.
        loader.setLoadHints(QLibrary::PreventUnloadHint);
        auto *found = qobject_cast<StillCodecs *>(loader.instance());
        if (!found)
            qCWarning(codecsLog).noquote() << loader.errorString();
        return found;
    }();
    return codecs;
}
