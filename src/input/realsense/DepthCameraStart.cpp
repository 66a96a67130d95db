#include "input/realsense/DepthCameraStart.h"

#include "input/realsense/DepthCamera.h"

#include <QCoreApplication>

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("KRealSense", text);
}

QString versionText(const std::array<int, 4> &version)
{
    const QString number = QStringLiteral("%1.%2.%3.%4")
                               .arg(version[0])
                               .arg(version[1])
                               .arg(version[2])
                               .arg(version[3]);
    return tr("Built with SDK %1.").arg(number);
}

} // namespace

QStringList DepthCameraStart::gestureNames()
{
    return {QStringLiteral("fist"),       QStringLiteral("spreadfingers"),
            QStringLiteral("swipe_left"), QStringLiteral("swipe_right"),
            QStringLiteral("thumb_down"), QStringLiteral("thumb_up"),
            QStringLiteral("v_sign"),     QStringLiteral("full_pinch")};
}

DepthCameraStart DepthCameraStart::run(DepthCamera *camera)
{
    DepthCameraStart start;
    if (!camera || !camera->driversFound()) {
        start.driversMissing = true;
        start.logMessage = tr("RealSense drivers required : ");
    } else if (!camera->createManager()) {
        start.logMessage = tr("Failed to initialize PXCSenseManager.\n");
    } else if (!camera->enableHandModule() || !camera->enableGestures(gestureNames())) {
        start.logMessage = tr("Failed to initialize Hand module.\n"
                              "Ensure you have installed Hand module drivers.\n");
    } else {
        start.available = true;
        start.logMessage =
            tr("Intel Real Sense is ready to use.\n") + versionText(camera->version());
    }
    return start;
}
