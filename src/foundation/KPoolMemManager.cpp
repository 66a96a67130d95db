// Before any Qt header: both want the word "emit".
#include <tbb/cache_aligned_allocator.h>
#include <tbb/concurrent_queue.h>

#include "foundation/KPoolMemManager.h"

#include "foundation/KException.h"
#include "foundation/KSystemInfo.h"

#include <QCoreApplication>

#include <algorithm>
#include <mutex>
#include <new>
#include <thread>

namespace {

constexpr int kSpinsBeforeYield = 16;
constexpr int kLargestBlocMo = 8;
constexpr qint64 kFewestBlocs = 150;
constexpr qint64 kBlocsPerThread = 10;

std::unique_ptr<KPoolMemManager> theInstance;

QString translated(const char *text)
{
    return QCoreApplication::translate("KException", text);
}

} // namespace

void KSpinLock::lock()
{
    for (int spins = 1; m_taken.test_and_set(std::memory_order_acquire); ++spins) {
        if (spins % kSpinsBeforeYield == 0)
            std::this_thread::yield();
    }
}

struct KPoolMemManager::FreeQueue
{
    tbb::concurrent_queue<KPoolMemBloc *, tbb::cache_aligned_allocator<KPoolMemBloc *>> blocs;
};

KPoolMemManager::KPoolMemManager()
    : m_freeBlocs(std::make_unique<FreeQueue>())
{}

KPoolMemManager::~KPoolMemManager() = default;

KPoolMemManager *KPoolMemManager::Instance()
{
    return theInstance.get();
}

void KPoolMemManager::CreateInstance(std::unique_ptr<KPoolMemManager> manager)
{
    if (manager)
        theInstance = std::move(manager);
    else if (!theInstance)
        theInstance = std::make_unique<KPoolMemManager>();
}

void KPoolMemManager::DestroyInstance()
{
    theInstance.reset();
}

int KPoolMemManager::BlocMoFor(int memoryMo, int threads)
{
    const qint64 limit = std::max(kFewestBlocs, threads * kBlocsPerThread);
    qint64 count = memoryMo / kLargestBlocMo;
    int bloc = kLargestBlocMo;
    // A block of 1 cannot get smaller, however few there are.
    while (count < limit && bloc > 1) {
        count *= 2;
        bloc /= 2;
    }
    return bloc;
}

void KPoolMemManager::Free()
{
    for (KPoolMemBloc *stale = nullptr; m_freeBlocs->blocs.try_pop(stale);) {
    }
    m_blocs.reset();
    m_blocSize = 0;
    m_totalSize = 0;
    m_blocCount = 0;
}

void KPoolMemManager::AllocateBlocs(int memoryMo, int blocMo)
{
    // Systems that promise more memory than they have would fail later, when it is written to.
    const quint64 physical = KSystemInfo::PhysicalMemory();
    const qint64 totalSize = memoryMo * BytesPerMo;
    if (physical > 0 && quint64(totalSize) > physical)
        K_THROW(translated(QT_TRANSLATE_NOOP("KException", "Not enough memory")));

    m_totalSize = totalSize;
    m_blocSize = blocMo * BytesPerMo;
    const int count = memoryMo / blocMo;
    m_blocs.reset(new (std::nothrow) KPoolMemBloc[std::size_t(count)]);
    if (!m_blocs)
        K_THROW(translated("Not enough memory"));
    for (m_blocCount = 0; m_blocCount < count; ++m_blocCount) {
        KPoolMemBloc &bloc = m_blocs[std::size_t(m_blocCount)];
        bloc.memory.reset(new (std::nothrow) uchar[std::size_t(m_blocSize)]);
        if (!bloc.memory)
            K_THROW(translated("Not enough memory"));
        m_freeBlocs->blocs.push(&bloc);
    }
}

void KPoolMemManager::Allocate(int memoryMo, int threads, int blocMo)
{
    Free();
    const int budget = std::max(memoryMo, 0);
    const int bloc = blocMo > 0 ? blocMo : BlocMoFor(budget, threads);
    try {
        AllocateBlocs(budget, bloc);
    } catch (const KException &) {
        Free();
        K_THROW(
            translated(QT_TRANSLATE_NOOP("KException", "Can not allocate pool memory manager:")) +
            translated(
                QT_TRANSLATE_NOOP("KException",
                                  "\nmemory to allocate: %1 mo | thread: %2 | bloc: %3 mo\n"))
                .arg(memoryMo)
                .arg(threads)
                .arg(blocMo) +
            translated(QT_TRANSLATE_NOOP(
                "KException",
                "Try to restart application or contact support if detected memory seems wrong")));
    }
}

KPoolMemBloc *KPoolMemManager::Take()
{
    KPoolMemBloc *bloc = nullptr;
    if (!m_freeBlocs->blocs.try_pop(bloc))
        return nullptr;
    const std::lock_guard<KSpinLock> guard(bloc->lock);
    ++bloc->takes;
    bloc->state = KPoolMemBloc::Taken;
    return bloc;
}

void KPoolMemManager::GiveBack(KPoolMemBloc *bloc)
{
    {
        const std::lock_guard<KSpinLock> guard(bloc->lock);
        if (bloc->state != KPoolMemBloc::Taken)
            return;
        bloc->state = KPoolMemBloc::Free;
    }
    m_freeBlocs->blocs.push(bloc);
}
