#include "resources/SceneResources.h"

#include <QDir>

void initSceneResources()
{
    Q_INIT_RESOURCE(scene);
}

void initDeploymentResource()
{
    Q_INIT_RESOURCE(deployment);
}
