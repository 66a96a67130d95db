#include "hmd/KOculus.h"

#include "app/Application.h"
#include "hmd/WorkerThreadOculus.h"

KOculus::KOculus(Application *application, QObject *parent)
    : KHmd(application, parent)
{
    // The thread's context shares with the scene's, which exists from then on.
    connect(application, &Application::openGLReady, this, &KOculus::startThread,
            Qt::QueuedConnection);
    connect(application, &QCoreApplication::aboutToQuit, this, &KOculus::stopThread);
}

KOculus::~KOculus()
{
    stopWorker();
}

void KOculus::startThread()
{
    if (!isRunning())
        startWorker(std::make_unique<WorkerThreadOculus>(this), QStringLiteral("Oculus"));
}

void KOculus::stopThread()
{
    stopWorker();
}
