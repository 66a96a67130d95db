#pragma once

// A fixed pool of large equal blocks for image work, taken from the heap once so that a run of big
// images never fragments the address space. KFoundation owns the singleton, which stays unsized
// until a program calls Allocate; any thread takes and gives back.

#include <QString>
#include <QtGlobal>

#include <atomic>
#include <memory>

/// A lock for a few instructions: it spins, and lets other threads run after every 16 spins.
class KSpinLock
{
public:
    void lock();
    void unlock() { m_taken.clear(std::memory_order_release); }

private:
    std::atomic_flag m_taken = ATOMIC_FLAG_INIT;
};

/// One block of the pool.
struct KPoolMemBloc
{
    /// Value of state before the first hand-out.
    static constexpr qint64 NeverUsed = -1000;
    static constexpr qint64 Free = 0;
    static constexpr qint64 Taken = 1;

    std::unique_ptr<uchar[]> memory;
    qint64 takes = 0; ///< how often it was handed out
    qint64 state = NeverUsed;
    KSpinLock lock;
};

class KPoolMemManager
{
public:
    static constexpr qint64 BytesPerMo = 1048576;

    KPoolMemManager();
    ~KPoolMemManager();
    KPoolMemManager(const KPoolMemManager &) = delete;
    KPoolMemManager &operator=(const KPoolMemManager &) = delete;

    /// The singleton; null before the set-up and after the shutdown.
    static KPoolMemManager *Instance();
    /// @p manager becomes the singleton; for null an existing one stays, else an empty one is made.
    static void CreateInstance(std::unique_ptr<KPoolMemManager> manager = nullptr);
    static void DestroyInstance();

    /// Megabytes of one block for a budget of @p memoryMo: small budgets get smaller blocks, so
    /// that there are about 150 blocks or ten for each thread; at least 1.
    static int BlocMoFor(int memoryMo, int threads);

    /// Frees an earlier pool and makes one of @p memoryMo megabytes in blocks of @p blocMo (0: see
    /// BlocMoFor). Throws a KException, leaving no pool, when the machine has not that memory.
    /// Nobody else may use the pool meanwhile.
    void Allocate(int memoryMo, int threads, int blocMo);

    /// A free block, or null when there is none: the caller then uses the heap.
    KPoolMemBloc *Take();
    /// Only for blocks that Take gave; a block that is free already stays as it is.
    void GiveBack(KPoolMemBloc *bloc);

    qint64 BlocSize() const { return m_blocSize; }   ///< bytes of a block
    qint64 TotalSize() const { return m_totalSize; } ///< bytes of the whole pool
    int BlocCount() const { return m_blocCount; }

private:
    void Free();
    void AllocateBlocs(int memoryMo, int blocMo);

    struct FreeQueue;

    qint64 m_blocSize = 0;
    qint64 m_totalSize = 0;
    int m_blocCount = 0;
    std::unique_ptr<KPoolMemBloc[]> m_blocs;
    std::unique_ptr<FreeQueue> m_freeBlocs;
};
