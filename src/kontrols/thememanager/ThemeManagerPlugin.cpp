#include "kontrols/thememanager/ThemeManagerPlugin.h"

#include "kontrols/thememanager/ThemeAttached.h"
#include "kontrols/thememanager/ThemeManager.h"
#include "kontrols/thememanager/TintedImages.h"

#include <QQmlEngine>

namespace {
int managerTypeId = -1;
} // namespace

void ThemeManagerPlugin::registerTypes(const char *uri)
{
    qRegisterMetaType<ThemeColors>();
    qRegisterMetaType<ThemeFonts>();
    qmlRegisterType<CurrentTheme>();
    managerTypeId = qmlRegisterSingletonType<ThemeManager>(
        uri, 1, 0, "ThemeManager",
        [](QQmlEngine *, QJSEngine *) -> QObject * { return new ThemeManager; });
    qmlRegisterUncreatableType<ThemeAttached>(uri, 1, 0, "Theme",
                                              QStringLiteral("Theme is attached to items"));
}

void ThemeManagerPlugin::initializeEngine(QQmlEngine *engine, const char *)
{
    engine->addImageProvider(TintedImages::Name(), new TintedImages); // owned by the engine
}

ThemeManager *ThemeManagerPlugin::managerOf(QQmlEngine *engine)
{
    return engine && managerTypeId >= 0 ? engine->singletonInstance<ThemeManager *>(managerTypeId)
                                        : nullptr;
}
