#include "resources/SceneResources.h"

#include <QDir>

void initSceneResources()
{
    Q_INIT_RESOURCE(images);
    Q_INIT_RESOURCE(qmllib);
    Q_INIT_RESOURCE(scene);
}
