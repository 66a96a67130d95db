#include "resources/SceneResources.h"

#include <QDir>

void initSceneResources()
{
    Q_INIT_RESOURCE(images);
    Q_INIT_RESOURCE(qmllib);
    Q_INIT_RESOURCE(scene);
}

QStringList scenePluginPaths(const QString &programFolder)
{
    const QDir folder(programFolder);
    return {folder.absolutePath(),
            QDir::cleanPath(folder.absoluteFilePath(QStringLiteral(ORBILENS_PLUGIN_FOLDER)))};
}

void initDeploymentResource()
{
    Q_INIT_RESOURCE(deployment);
}
