#pragma once

// The start of a depth camera: which step follows which, what is logged when one fails, and which
// gestures are recognised. No device here.

#include <QString>
#include <QStringList>

class DepthCamera;

struct DepthCameraStart
{
    bool available = false;
    bool driversMissing = false;
    QString logMessage;

    /// By their library's names, in the order in which they are enabled.
    static QStringList gestureNames();

    /// @p camera may be null, which is a machine without drivers.
    static DepthCameraStart run(DepthCamera *camera);
};
