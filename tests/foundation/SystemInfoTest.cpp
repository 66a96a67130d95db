#include "foundation/SystemInfo.h"
#include "foundation/KSystemInfo.h"
#include "support/Files.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

namespace {

void put(const QString &path, const QByteArray &text)
{
    test::writeFile(path, text + '\n');
}

/// Fields of an APIC id of a machine with 4 cores of 2 threads.
constexpr CpuTopology::ApicWidths kFourByTwo{1, 3};

} // namespace

TEST(CpuTopology, CountsFromASysfsTree)
{
    const QTemporaryDir root;
    // Two packages of two cores; the first core has two threads, the last processor is off.
    const char *const processors[][3] = {{"0", "0", "1"}, {"0", "0", "1"}, {"0", "4", "1"},
                                         {"1", "0", "1"}, {"1", "4", "1"}, {"1", "8", "0"}};
    int index = 0;
    for (const auto &[package, core, online] : processors) {
        const QString folder = root.filePath(QString("cpu%1").arg(index++));
        put(folder + "/topology/physical_package_id", package);
        put(folder + "/topology/core_id", core);
        put(folder + "/online", online);
    }
    put(root.filePath("cpu0/cache/index0/level"), "1");
    put(root.filePath("cpu0/cache/index0/type"), "Data");
    put(root.filePath("cpu0/cache/index0/size"), "48K");
    put(root.filePath("cpu0/cache/index1/level"), "3");
    put(root.filePath("cpu0/cache/index1/type"), "Unified");
    put(root.filePath("cpu0/cache/index1/size"), "2M");
    put(root.filePath("cpu0/cache/index2/size"), "lots");
    put(root.filePath("cpufreq/boost"), "1");

    CpuTopology::Counts counts = SystemInfo::topologyFromSysfs(root.path());
    EXPECT_EQ(counts.packages, 2);
    EXPECT_EQ(counts.cores, 4);
    EXPECT_EQ(counts.logical, 5);
    EXPECT_EQ(counts.caches, QStringList({"Level 1 Data, size(KBytes)= 48",
                                          "Level 3 Unified, size(KBytes)= 2048"}));

    put(root.filePath("cpu7/topology/core_id"), "x");
    for (const QString &folder : {root.path(), root.filePath("none")}) {
        counts = SystemInfo::topologyFromSysfs(folder);
        EXPECT_EQ(counts.cores, 0);
        EXPECT_EQ(counts.logical, 0);
    }
}

TEST(CpuTopology, CountsFallBackToTheRuntimeThenToOne)
{
    CpuTopology::Counts good;
    good.cores = 4;
    good.logical = 8;
    CpuTopology::Counts odd;
    odd.cores = 8;
    odd.logical = 4;
    const std::tuple<CpuTopology::Counts, int, int, int> rows[] = {
        {good, 2, 4, 8}, {{}, 6, 6, 6}, {{}, 0, 1, 1}, {odd, 3, 3, 4}};
    for (const auto &[counts, fallback, cores, logical] : rows) {
        EXPECT_EQ(CpuTopology::coreCount(counts, fallback), cores);
        EXPECT_EQ(CpuTopology::logicalCount(counts, fallback), logical);
    }
}

TEST(CpuTopology, ApicIdsMasksAndCaches)
{
    QVector<CpuTopology::Place> places;
    for (quint32 id = 0; id < 16; ++id)
        places.append(CpuTopology::placeOf(id, kFourByTwo));
    const CpuTopology::Counts counts = CpuTopology::count(places);
    EXPECT_EQ(counts.packages, 2);
    EXPECT_EQ(counts.cores, 8);
    EXPECT_EQ(counts.logical, 16);
    EXPECT_EQ(CpuTopology::placeOf(0xFFFFFFFF, {32, 32}).package, 0U);

    const std::tuple<quint32, quint32, int, int> widths[] = {
        {8, 4, 1, 3}, {6, 3, 1, 3}, {1, 1, 0, 0}, {0, 0, 0, 0}, {2, 4, 0, 2}};
    for (const auto &[logical, cores, thread, both] : widths) {
        const CpuTopology::ApicWidths found = CpuTopology::legacyWidths(logical, cores);
        EXPECT_EQ(found.thread, thread) << logical;
        EXPECT_EQ(found.threadAndCore, both) << logical;
    }

    ASSERT_TRUE(CpuTopology::maskBit(65, 2, 64));
    EXPECT_EQ(CpuTopology::maskBit(65, 2, 64)->bit, 1);
    EXPECT_FALSE(CpuTopology::maskBit(64, 1, 64));

    // 8 ways of 64 lines of 64 bytes: level 1, data.
    EXPECT_EQ(CpuTopology::cacheOfLeaf4(0x21, 7U << 22 | 63, 63), "Level 1 Data, size(KBytes)= 32");
    EXPECT_EQ(CpuTopology::cacheOfLeaf4(0, 0, 0), "");
    EXPECT_EQ(CpuTopology::cacheOfDescriptor(0x2C), "Level 1 Data, size(KBytes)= 32");
    EXPECT_EQ(CpuTopology::cacheOfDescriptor(0xFF), "");
}

TEST(SystemInfo, NamesOfSystemsAndProcessors)
{
    const QString release = "NAME=\"Debian GNU/Linux\"\nPRETTY_NAME=\"Debian 12\"\n";
    EXPECT_EQ(SystemInfo::linuxOsName(release, "6.1.0", "x86_64", 64), "Debian 12 | 6.1.0");
    EXPECT_EQ(SystemInfo::linuxOsName(release, "6.1.0", "x86_64", 32), "Debian 12 64-bit | 6.1.0");
    EXPECT_EQ(SystemInfo::linuxOsName("NAME=Arch\nPRETTY_NAME=\"\n", "6", "i686", 32), "\" | 6");
    EXPECT_EQ(SystemInfo::linuxOsName("", "6", "i686", 32), "Linux | 6");
    EXPECT_EQ(
        SystemInfo::cpuNameFromProc("processor\t: 0\nmodel name\t:  Some CPU \nmodel name: B"),
        "Some CPU");
    EXPECT_EQ(SystemInfo::cpuNameFromProc("nothing"), "");

    const std::tuple<SystemInfo::WindowsVersion, const char *> rows[] = {
        {{6, 0, false, 0, false, "6.0"}, "Microsoft Windows Vista | 6.0"},
        {{6, 0, true, 2, false, ""}, "Microsoft Windows Server 2008 SP2 | "},
        {{6, 1, false, 1, true, "6.1.7601"}, "Microsoft Windows 7 64-bit SP1 | 6.1.7601"},
        {{6, 1, true, 0, false, ""}, "Microsoft Windows Server 2008 R2 | "},
        {{5, 2, false, 0, false, ""}, "Microsoft Windows Server 2003 | "},
        {{5, 0, true, 0, false, ""}, "Microsoft Windows 2000 | "},
        {{10, 0, false, 0, false, ""}, "Microsoft Windows  noname | "},
    };
    for (const auto &[version, expected] : rows)
        EXPECT_EQ(SystemInfo::windowsOsName(version).toStdString(), expected);

    EXPECT_EQ(SystemInfo::productVersionPath(0x0409, 1200),
              "\\StringFileInfo\\040904B0\\ProductVersion");
    EXPECT_EQ(SystemInfo::productVersionPath(0x0C07), "\\StringFileInfo\\0C0704B0\\ProductVersion");
    EXPECT_EQ(SystemInfo::versionFromResource("6, 1,7601.24 "), "6.1.7601.24");
}

TEST(SystemInfo, ThisMachineAnswersSensibly)
{
    const int cores = KSystemInfo::PhysicalCoreCount();
    const int logical = KSystemInfo::LogicalProcessorCount();
    EXPECT_GE(cores, 1);
    EXPECT_LE(cores, logical);
    EXPECT_EQ(KSystemInfo::HyperThreadingFactor(), logical / cores);
    EXPECT_FALSE(KSystemInfo::CpuName().isEmpty());
    EXPECT_TRUE(KSystemInfo::OsName().contains(" | "));
    EXPECT_EQ(KSystemInfo::PlatformWord(), "linux");

    const KSystemInfo::DiskSpace space = KSystemInfo::DiskSpaceOf(QDir::tempPath());
    EXPECT_GT(space.total, 0U);
    EXPECT_LE(space.free, space.total);
    EXPECT_EQ(KSystemInfo::DiskSpaceOf("/no/such/folder").total, 0U);

    constexpr quint64 kUnit = quint64(256) << 20;
    EXPECT_EQ(KSystemInfo::MemoryUnits(64 * kUnit), 64);
    EXPECT_EQ(KSystemInfo::MemoryUnits(2 * kUnit + kUnit / 2 + 10), 3);
    EXPECT_EQ(KSystemInfo::MemoryUnits(2 * kUnit + kUnit / 2 - 100), 2);
    EXPECT_EQ(KSystemInfo::TotalMemory(), KSystemInfo::MemoryUnits(KSystemInfo::PhysicalMemory()));
}
