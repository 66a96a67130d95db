#pragma once

// Makes the resources that this library holds known to Qt: a static library's own registration is
// dropped by the linker. Called once by Application before the scene is loaded.

void initSceneResources();

/// The same for ":/deployment.json", which is read before there is a scene.
void initDeploymentResource();
