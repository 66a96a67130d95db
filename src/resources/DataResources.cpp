#include "resources/DataResources.h"

#include <QDir>

// Outside of any namespace, where the macro looks for the resource's own functions.
static void registerData()
{
    Q_INIT_RESOURCE(data);
    QDir::setSearchPaths(QStringLiteral("Data"), {QStringLiteral(":/Data")});
}

void initDataResources()
{
    static const bool registered = (registerData(), true);
    Q_UNUSED(registered)
}
