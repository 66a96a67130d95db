#pragma once

#include <QStringList>

// Makes the resources that this library holds known to Qt: a static library's own registration is
// dropped by the linker. Called once by Application before the scene is loaded.

void initSceneResources();

/// Where the scene engine finds the plug-ins that the library's modules name: beside the program
/// (a build tree) and in the library folder that belongs to it (an installed one).
/// @p programFolder is the folder of the executable.
QStringList scenePluginPaths(const QString &programFolder);

/// The same for ":/deployment.json", which is read before there is a scene.
void initDeploymentResource();
