#include "input/hands/HandDevices.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibrary>
#include <QPluginLoader>

namespace HandDevices {

namespace {

template <class Device>
std::unique_ptr<Device> create(std::unique_ptr<Device> (HandDevicePlugin::*make)())
{
    const QStringList paths = QCoreApplication::libraryPaths();
    for (const QString &path : paths) {
        const QDir folder(path + QLatin1String("/handdevices"));
        const QStringList files = folder.entryList(QDir::Files, QDir::Name);
        for (const QString &file : files) {
            if (!QLibrary::isLibrary(file))
                continue;
            QPluginLoader loader(folder.filePath(file));
            auto *plugin = qobject_cast<HandDevicePlugin *>(loader.instance());
            if (std::unique_ptr<Device> device = plugin ? (plugin->*make)() : nullptr)
                return device;
        }
    }
    return nullptr;
}

} // namespace

std::unique_ptr<HandTracker> createTracker()
{
    return create(&HandDevicePlugin::createTracker);
}

std::unique_ptr<DepthCamera> createDepthCamera()
{
    return create(&HandDevicePlugin::createDepthCamera);
}

} // namespace HandDevices
