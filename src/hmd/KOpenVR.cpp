#include "hmd/KOpenVR.h"

#include "app/Application.h"
#include "hmd/OpenVRTypes.h"
#include "hmd/WorkerThreadOpenVR.h"

KOpenVR::KOpenVR(Application *application, QObject *parent)
    : KHmd(application, parent)
{
    connect(application, &Application::openGLReady, this, &KOpenVR::startThread,
            Qt::QueuedConnection);
    connect(application, &QCoreApplication::aboutToQuit, this, &KOpenVR::stopThread);
}

KOpenVR::~KOpenVR()
{
    stopWorker();
}

void KOpenVR::setLogMessage(QString message)
{
    KHmd::setLogMessage(tr("%1Using OpenVR SDK version %2.\n%3")
                            .arg(logMessage(), QLatin1String(openvr::kSdkVersion), message));
}

void KOpenVR::startThread()
{
    if (!isRunning())
        startWorker(std::make_unique<WorkerThreadOpenVR>(this), QStringLiteral("OpenVR"));
}

void KOpenVR::stopThread()
{
    stopWorker();
}
