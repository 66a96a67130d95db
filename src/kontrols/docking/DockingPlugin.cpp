#include "kontrols/docking/DockingPlugin.h"

#include "kontrols/docking/DockArea.h"
#include "kontrols/docking/DockItem.h"

#include <QtQml>

void DockingPlugin::registerTypes(const char *uri)
{
    qmlRegisterType<DockArea>(uri, 1, 0, "DockArea");
    qmlRegisterType<DockItem>(uri, 1, 0, "DockItem");
}
