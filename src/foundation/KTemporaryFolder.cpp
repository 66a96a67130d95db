#include "foundation/KTemporaryFolder.h"

#include "foundation/KException.h"
#include "foundation/KSystemInfo.h"

#include <QDir>

#include <memory>

namespace {

constexpr quint64 kReserveBytes = 16 * 1024 * 1024;

std::unique_ptr<KTemporaryFolder> theInstance;

QString pattern(const QString &parent)
{
    return (parent.isEmpty() ? QDir::tempPath() : parent) + QLatin1String("/OrbilensPlayer-XXXXXX");
}

} // namespace

KTemporaryFolder::KTemporaryFolder(const QString &parent)
    : m_folder(pattern(parent))
{}

KTemporaryFolder *KTemporaryFolder::Instance()
{
    return theInstance.get();
}

void KTemporaryFolder::CreateInstance()
{
    if (!theInstance)
        theInstance = std::make_unique<KTemporaryFolder>();
}

void KTemporaryFolder::DestroyInstance()
{
    theInstance.reset();
}

void KTemporaryFolder::RequireSpace(quint64 bytes) const
{
    if (!IsValid())
        K_THROW(KException::TemporaryFolderFull());
    const KSystemInfo::DiskSpace space = KSystemInfo::DiskSpaceOf(Path());
    if (space.total > 0 && (space.free < kReserveBytes || space.free - kReserveBytes < bytes))
        K_THROW(KException::TemporaryFolderFull());
}
