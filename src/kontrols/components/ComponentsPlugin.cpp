#include "kontrols/components/ComponentsPlugin.h"

#include "kontrols/components/InverseMouseArea.h"

#include <QtQml>

void ComponentsPlugin::registerTypes(const char *uri)
{
    qmlRegisterType<InverseMouseArea>(uri, 1, 0, "InverseMouseArea");
}
