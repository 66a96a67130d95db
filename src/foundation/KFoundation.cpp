#include "foundation/KFoundation.h"

#include "foundation/KLog.h"

void KFoundation::Initialize()
{
    KLog::CreateInstance();
}

void KFoundation::Shutdown()
{
    KLog::DestroyInstance();
}
