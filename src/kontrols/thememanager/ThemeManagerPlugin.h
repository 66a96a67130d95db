#pragma once

// The native half of the module com.vedra.kontrols. Made by the QML engine on import.

#include <QQmlExtensionPlugin>

class QQmlEngine;
class ThemeManager;

class ThemeManagerPlugin : public QQmlExtensionPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QQmlExtensionInterface_iid)

public:
    void registerTypes(const char *uri) override;
    void initializeEngine(QQmlEngine *engine, const char *uri) override;

    /// The manager of an engine; null without an engine or before the module is imported.
    static ThemeManager *managerOf(QQmlEngine *engine);
};
