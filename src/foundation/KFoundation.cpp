#include "foundation/KFoundation.h"

#include "foundation/KLog.h"
#include "foundation/KPoolMemManager.h"
#include "foundation/KSystemInfo.h"
#include "foundation/KTemporaryFolder.h"

void KFoundation::Initialize()
{
    KLog::CreateInstance();
    KSystemInfo::Prepare();
    KPoolMemManager::CreateInstance();
    KTemporaryFolder::CreateInstance();
}

void KFoundation::Shutdown()
{
    KTemporaryFolder::DestroyInstance();
    KPoolMemManager::DestroyInstance();
    KLog::DestroyInstance();
}
