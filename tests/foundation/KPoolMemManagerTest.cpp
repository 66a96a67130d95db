#include "foundation/KPoolMemManager.h"
#include "foundation/KException.h"
#include "foundation/KFoundation.h"
#include "foundation/KTemporaryFolder.h"
#include "support/Files.h"

#include <gtest/gtest.h>

#include <QDir>

#include <atomic>
#include <limits>
#include <thread>
#include <vector>

TEST(PoolMemManager, BlockSizesFollowTheBudgetAndTheThreads)
{
    const int rows[][3] = {{1024, 4, 4}, {8, 1, 1}, {1024, 32, 2}, {1200, 1, 8},
                           {1199, 1, 4}, {7, 1, 1}, {0, 1, 1}};
    for (const auto &[memoryMo, threads, blocMo] : rows)
        EXPECT_EQ(KPoolMemManager::BlocMoFor(memoryMo, threads), blocMo)
            << memoryMo << " " << threads;
}

TEST(PoolMemManager, AllocatesAnewAndHandsOutEachBlockOnce)
{
    KPoolMemManager pool;
    EXPECT_EQ(pool.Take(), nullptr);
    pool.Allocate(8, 1, 0);
    EXPECT_EQ(pool.BlocCount(), 8);
    pool.Allocate(9, 1, 4);
    EXPECT_EQ(pool.BlocCount(), 2);
    EXPECT_EQ(pool.BlocSize(), 4 * 1048576);
    EXPECT_EQ(pool.TotalSize(), 9 * 1048576);

    KPoolMemBloc *first = pool.Take();
    KPoolMemBloc *second = pool.Take();
    ASSERT_TRUE(first && second);
    EXPECT_NE(first->memory, second->memory);
    first->memory[pool.BlocSize() - 1] = 1;
    EXPECT_EQ(pool.Take(), nullptr);
    pool.GiveBack(first);
    pool.GiveBack(first);
    EXPECT_EQ(pool.Take(), first);
    EXPECT_EQ(pool.Take(), nullptr);
}

TEST(PoolMemManager, ThreadsShareTheBlocks)
{
    KPoolMemManager pool;
    pool.Allocate(4, 1, 1);
    std::atomic<int> taken{0};
    std::atomic<bool> shared{false};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < 2000; ++i) {
                KPoolMemBloc *bloc = pool.Take();
                if (!bloc)
                    continue;
                bloc->memory[0] = uchar(t);
                std::this_thread::yield();
                shared = shared || bloc->memory[0] != t;
                pool.GiveBack(bloc);
                ++taken;
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_FALSE(shared);
    EXPECT_GE(taken, 2000);
    for (int i = 0; i < 4; ++i)
        EXPECT_NE(pool.Take(), nullptr);
}

TEST(PoolMemManager, FailureNamesWhatWasAskedFor)
{
    KPoolMemManager pool;
    pool.Allocate(2, 1, 1);
    try {
        pool.Allocate(std::numeric_limits<int>::max(), 3, 0);
        FAIL();
    } catch (const KException &error) {
        EXPECT_EQ(error.message.toStdString(),
                  "Can not allocate pool memory manager:\n"
                  "memory to allocate: 2147483647 mo | thread: 3 | bloc: 0 mo\n"
                  "Try to restart application or contact support if detected memory seems wrong");
        EXPECT_TRUE(error.location.startsWith("File: \"KPoolMemManager\" Line: "));
    }
    EXPECT_EQ(pool.BlocCount(), 0);
    EXPECT_EQ(pool.Take(), nullptr);
}

TEST(Foundation, SingletonsLiveBetweenInitializeAndShutdown)
{
    KFoundation::Initialize();
    KPoolMemManager *pool = KPoolMemManager::Instance();
    ASSERT_TRUE(pool);
    EXPECT_EQ(pool->Take(), nullptr);
    const QString folder = KTemporaryFolder::Instance()->Path();
    test::writeFile(KTemporaryFolder::Instance()->FilePath("x"));
    KFoundation::Initialize();
    EXPECT_EQ(KPoolMemManager::Instance(), pool);
    KPoolMemManager::CreateInstance(std::make_unique<KPoolMemManager>());
    EXPECT_NE(KPoolMemManager::Instance(), pool);
    KFoundation::Shutdown();
    EXPECT_EQ(KPoolMemManager::Instance(), nullptr);
    EXPECT_FALSE(QDir(folder).exists());
}

TEST(TemporaryFolder, RefusesWhatDoesNotFit)
{
    const KTemporaryFolder folder;
    EXPECT_NO_THROW(folder.RequireSpace(1000));
    const KTemporaryFolder nowhere("/proc/none");
    for (const KTemporaryFolder *full : {&folder, &nowhere}) {
        try {
            full->RequireSpace(std::numeric_limits<quint64>::max());
            FAIL();
        } catch (const KException &error) {
            EXPECT_EQ(error.message, "No more space in temporary folder");
        }
    }
}
