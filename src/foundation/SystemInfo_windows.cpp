#include "foundation/SystemInfo.h"

#include <QByteArray>
#include <QDir>
#include <QFileInfo>
#include <QLibrary>
#include <QVarLengthArray>

#include <array>
#include <cstdio>
#include <memory>
#include <new>

#include <windows.h>

#include <intrin.h>

namespace SystemInfo {

namespace {

constexpr quint32 kTopologyLeaf = 0xB;
constexpr quint32 kHighestKnownLeaf = 0xFF;
/// What the errors below give as their place.
constexpr const char *kModule = "cpuid2\\cpu_topo";
constexpr int kMaxCacheSubleafs = 32;
constexpr int kMaskBits = int(sizeof(DWORD_PTR)) * 8;

/// Registers of one CPUID call, in the order EAX, EBX, ECX, EDX.
using Registers = std::array<quint32, 4>;

Registers cpuid(quint32 leaf, quint32 subleaf = 0)
{
    std::array<int, 4> values{};
    __cpuidex(values.data(), int(leaf), int(subleaf));
    Registers registers{};
    for (std::size_t i = 0; i < values.size(); ++i)
        registers[i] = quint32(values[i]);
    return registers;
}

/// Functions that older systems lack are looked up when needed.
template <class Function>
Function kernelFunction(const char *name)
{
    const HMODULE kernel = GetModuleHandleW(L"kernel32.dll");
    const FARPROC address = kernel ? GetProcAddress(kernel, name) : nullptr;
    // Through a plain pointer: a cast between unrelated function types warns.
    return reinterpret_cast<Function>(reinterpret_cast<void *>(address));
}

using SetGroupAffinity = BOOL(WINAPI *)(HANDLE, const GROUP_AFFINITY *, GROUP_AFFINITY *);
using GetGroupAffinity = BOOL(WINAPI *)(HANDLE, GROUP_AFFINITY *);
using GetGroupCount = WORD(WINAPI *)();
using GetGroupProcessorCount = DWORD(WINAPI *)(WORD);
using GetProcessGroups = BOOL(WINAPI *)(HANDLE, USHORT *, USHORT *);
using GetRelations = BOOL(WINAPI *)(LOGICAL_PROCESSOR_RELATIONSHIP, void *, DWORD *);

/// Pins the calling thread to one processor after the other and puts its affinity back at the end.
class Pinning
{
public:
    Pinning()
        : m_setGroup(kernelFunction<SetGroupAffinity>("SetThreadGroupAffinity"))
        , m_getGroup(kernelFunction<GetGroupAffinity>("GetThreadGroupAffinity"))
    {
        const auto groupCount = kernelFunction<GetGroupCount>("GetActiveProcessorGroupCount");
        m_byGroups = m_setGroup && m_getGroup && groupCount &&
                     m_getGroup(GetCurrentThread(), &m_previousGroup);
        m_groups = m_byGroups ? groupCount() : 1;
    }
    ~Pinning()
    {
        if (m_byGroups)
            m_setGroup(GetCurrentThread(), &m_previousGroup, nullptr);
        else if (m_previousMask != 0)
            SetThreadAffinityMask(GetCurrentThread(), m_previousMask);
    }
    Pinning(const Pinning &) = delete;
    Pinning &operator=(const Pinning &) = delete;

    int groups() const { return m_groups; }

    /// Processors of @p group that may be used.
    KAFFINITY mask(int group) const
    {
        if (!m_byGroups) {
            DWORD_PTR process = 0;
            DWORD_PTR system = 0;
            GetProcessAffinityMask(GetCurrentProcess(), &process, &system);
            return process;
        }
        const auto processors = kernelFunction<GetGroupProcessorCount>("GetMaximumProcessorCount");
        const DWORD count = processors ? processors(WORD(group)) : DWORD(kMaskBits);
        return count >= DWORD(kMaskBits) ? ~KAFFINITY(0) : (KAFFINITY(1) << count) - 1;
    }

    [[nodiscard]] bool pin(const CpuTopology::MaskBit &place)
    {
        const KAFFINITY bit = KAFFINITY(1) << place.bit;
        if (!m_byGroups) {
            const DWORD_PTR previous = SetThreadAffinityMask(GetCurrentThread(), bit);
            if (previous != 0 && m_previousMask == 0)
                m_previousMask = previous;
            return previous != 0;
        }
        GROUP_AFFINITY affinity{};
        affinity.Mask = bit;
        affinity.Group = WORD(place.group);
        return m_setGroup(GetCurrentThread(), &affinity, nullptr) != 0;
    }

private:
    SetGroupAffinity m_setGroup;
    GetGroupAffinity m_getGroup;
    bool m_byGroups = false;
    int m_groups = 1;
    GROUP_AFFINITY m_previousGroup{};
    DWORD_PTR m_previousMask = 0;
};

/// Place of the processor on which this thread is pinned.
CpuTopology::Place currentPlace(quint32 highestLeaf)
{
    if (highestLeaf >= kTopologyLeaf && cpuid(kTopologyLeaf)[1] != 0) {
        CpuTopology::ApicWidths widths;
        constexpr quint32 kThreadLevel = 1;
        constexpr quint32 kCoreLevel = 2;
        constexpr quint32 kMostLevels = 8;
        quint32 apicId = 0;
        for (quint32 level = 0; level < kMostLevels; ++level) {
            const Registers registers = cpuid(kTopologyLeaf, level);
            const quint32 kind = (registers[2] >> 8) & 0xFF;
            if (kind == 0)
                break;
            apicId = registers[3];
            const int width = int(registers[0] & 0x1F);
            if (kind == kThreadLevel)
                widths.thread = width;
            if (kind == kThreadLevel || kind == kCoreLevel)
                widths.threadAndCore = width;
        }
        return CpuTopology::placeOf(apicId, widths);
    }
    const Registers features = cpuid(1);
    const bool manyThreads = (features[3] & (1U << 28)) != 0;
    const quint32 logical = manyThreads ? (features[1] >> 16) & 0xFF : 1;
    const quint32 cores = highestLeaf >= 4 ? (cpuid(4)[0] >> 26) + 1 : 1;
    return CpuTopology::placeOf(features[1] >> 24, CpuTopology::legacyWidths(logical, cores));
}

QStringList cachesByLeaf4()
{
    QStringList texts;
    for (int subleaf = 0;; ++subleaf) {
        if (subleaf == kMaxCacheSubleafs) {
            std::fprintf(stderr, "Need bigger MAX_CACHE_SUBLEAFS(%d) at %s %d\n", kMaxCacheSubleafs,
                         kModule, __LINE__);
            return texts;
        }
        const Registers registers = cpuid(4, quint32(subleaf));
        const QString text = CpuTopology::cacheOfLeaf4(registers[0], registers[1], registers[2]);
        if (text.isEmpty())
            return texts;
        texts += text;
    }
}

QStringList cachesByLeaf2()
{
    QStringList texts;
    const Registers registers = cpuid(2);
    for (std::size_t i = 0; i < registers.size(); ++i) {
        if ((registers[i] & 0x80000000U) != 0)
            continue;
        // The lowest byte of EAX counts the calls and is no descriptor.
        for (int shift = i == 0 ? 8 : 0; shift < 32; shift += 8) {
            const QString text =
                CpuTopology::cacheOfDescriptor(quint8((registers[i] >> shift) & 0xFF));
            if (!text.isEmpty())
                texts += text;
        }
    }
    return texts;
}

/// Groups that this process may run in; empty where the system does not know groups.
QVarLengthArray<USHORT, 4> processGroups()
{
    QVarLengthArray<USHORT, 4> groups;
    const auto query = kernelFunction<GetProcessGroups>("GetProcessGroupAffinity");
    USHORT count = 0;
    if (!query || query(GetCurrentProcess(), &count, nullptr) || count == 0)
        return groups;
    groups.resize(count);
    if (!query(GetCurrentProcess(), &count, groups.data()))
        groups.clear();
    return groups;
}

/// Processors that the system itself counts over all groups, 0 where it cannot, negative when the
/// question failed for lack of memory.
int processorsOfSystem()
{
    const auto query = kernelFunction<GetRelations>("GetLogicalProcessorInformationEx");
    DWORD size = 0;
    if (!query || query(RelationGroup, nullptr, &size) || size == 0)
        return 0;
    const std::unique_ptr<char[]> buffer(new (std::nothrow) char[size]);
    if (!buffer) {
        std::fprintf(stderr, "Error: AllocateGenericAffinityMask 2nd malloc failed at %s %d. Bye\n",
                     kModule, __LINE__);
        return -1;
    }
    if (!query(RelationGroup, buffer.get(), &size))
        return 0;
    const auto *info =
        reinterpret_cast<const SYSTEM_LOGICAL_PROCESSOR_INFORMATION_EX *>(buffer.get());
    int count = 0;
    for (WORD group = 0; group < info->Group.ActiveGroupCount; ++group)
        count += info->Group.GroupInfo[group].ActiveProcessorCount;
    return count;
}

/// Text of a version resource value, empty when it has none.
class VersionLibrary
{
public:
    using InfoSize = DWORD(WINAPI *)(LPCWSTR, LPDWORD);
    using Info = BOOL(WINAPI *)(LPCWSTR, DWORD, DWORD, LPVOID);
    using QueryValue = BOOL(WINAPI *)(LPCVOID, LPCWSTR, LPVOID *, PUINT);

    VersionLibrary()
        : m_library(QStringLiteral("Version.dll"))
        , m_infoSize(reinterpret_cast<InfoSize>(m_library.resolve("GetFileVersionInfoSizeW")))
        , m_info(reinterpret_cast<Info>(m_library.resolve("GetFileVersionInfoW")))
        , m_queryValue(reinterpret_cast<QueryValue>(m_library.resolve("VerQueryValueW")))
    {}

    QString productVersion(const QString &path)
    {
        if (!m_infoSize || !m_info || !m_queryValue)
            return QString();
        const std::wstring name = QDir::toNativeSeparators(path).toStdWString();
        DWORD unused = 0;
        const DWORD size = m_infoSize(name.c_str(), &unused);
        if (size == 0)
            return QString();
        QByteArray block(int(size), '\0');
        if (!m_info(name.c_str(), 0, size, block.data()))
            return QString();

        struct Translation
        {
            WORD language;
            WORD codePage;
        };
        Translation translation{0x0409, 1200};
        void *found = nullptr;
        UINT length = 0;
        if (m_queryValue(block.constData(), L"\\VarFileInfo\\Translation", &found, &length) &&
            length >= sizeof(Translation))
            translation = *static_cast<const Translation *>(found);
        QString text = value(block, productVersionPath(translation.language, translation.codePage));
        if (text.isEmpty())
            text = value(block, productVersionPath(translation.language));
        return text;
    }

private:
    QString value(const QByteArray &block, const QString &path) const
    {
        void *found = nullptr;
        UINT length = 0;
        const std::wstring name = path.toStdWString();
        if (!m_queryValue(block.constData(), name.c_str(), &found, &length) || length == 0)
            return QString();
        const QString text =
            QString::fromWCharArray(static_cast<const wchar_t *>(found), int(length));
        return text.left(text.indexOf(QChar(0)));
    }

    QLibrary m_library;
    InfoSize m_infoSize;
    Info m_info;
    QueryValue m_queryValue;
};

bool runsUnderWow64()
{
    using Query = BOOL(WINAPI *)(HANDLE, PBOOL);
    const auto query = kernelFunction<Query>("IsWow64Process");
    BOOL wow64 = FALSE;
    return query && query(GetCurrentProcess(), &wow64) && wow64;
}

} // namespace

CpuTopology::Counts readTopology()
{
    const quint32 highestLeaf = cpuid(0)[0];
    if (highestLeaf > kHighestKnownLeaf) {
        std::fprintf(stderr,
                     "got maxCPUID= 0x%x but the array only handles up to 0x%x. Bye at %s %d\n",
                     uint(highestLeaf), uint(kHighestKnownLeaf), kModule, __LINE__);
        return {};
    }

    QVector<CpuTopology::Place> places;
    {
        Pinning pinning;
        const QVarLengthArray<USHORT, 4> allowed = processGroups();
        const int processors = processorsOfSystem();
        if (processors < 0)
            return {};
        if (const int last = processors - 1;
            processors > 0 && !CpuTopology::maskBit(last, pinning.groups(), kMaskBits)) {
            std::fprintf(
                stderr, "Error: Wanted cpu %d but mask only supports up to %d cpus at %s %d. Bye\n",
                last, pinning.groups() * kMaskBits, kModule, __LINE__);
            return {};
        }
        for (int group = 0; group < pinning.groups(); ++group) {
            if (!allowed.isEmpty() && !allowed.contains(USHORT(group)))
                continue;
            const KAFFINITY mask = pinning.mask(group);
            for (int bit = 0; bit < kMaskBits; ++bit) {
                if ((mask >> bit & 1) != 0 && pinning.pin({group, bit}))
                    places.append(currentPlace(highestLeaf));
            }
        }
    }
    CpuTopology::Counts counts = CpuTopology::count(places);
    if (highestLeaf >= 4)
        counts.caches = cachesByLeaf4();
    else if (highestLeaf >= 2)
        counts.caches = cachesByLeaf2();
    return counts;
}

QString cpuName()
{
    constexpr quint32 kExtended = 0x80000000U;
    constexpr quint32 kBrandFirst = 0x80000002U;
    constexpr quint32 kBrandLast = 0x80000004U;
    if (cpuid(kExtended)[0] < kBrandLast)
        return QString();
    QByteArray brand;
    for (quint32 leaf = kBrandFirst; leaf <= kBrandLast; ++leaf) {
        const Registers registers = cpuid(leaf);
        brand.append(reinterpret_cast<const char *>(registers.data()), int(sizeof(registers)));
    }
    return QStringLiteral("%1").arg(QString::fromLatin1(brand.constData()).trimmed());
}

quint64 physicalMemory()
{
    MEMORYSTATUSEX status{};
    status.dwLength = sizeof(status);
    return GlobalMemoryStatusEx(&status) ? status.ullTotalPhys : 0;
}

KSystemInfo::DiskSpace diskSpace(const QString &path)
{
    const QString folder = QFileInfo(path).isDir() ? path : QFileInfo(path).absolutePath();
    const std::wstring name = QDir::toNativeSeparators(folder).toStdWString();
    const std::wstring drive =
        QDir::toNativeSeparators(QFileInfo(folder).absoluteFilePath().left(3)).toStdWString();
    if (GetDriveTypeW(drive.c_str()) == DRIVE_REMOVABLE)
        return {};
    ULARGE_INTEGER free{};
    ULARGE_INTEGER total{};
    if (!GetDiskFreeSpaceExW(name.c_str(), &free, &total, nullptr))
        return {};
    KSystemInfo::DiskSpace space;
    space.free = free.QuadPart;
    space.total = total.QuadPart;
    return space;
}

QString osName()
{
    OSVERSIONINFOEXW info{};
    info.dwOSVersionInfoSize = sizeof(info);
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
    if (!GetVersionExW(reinterpret_cast<OSVERSIONINFOW *>(&info)))
        return QString();
#pragma GCC diagnostic pop
    WindowsVersion version;
    version.major = int(info.dwMajorVersion);
    version.minor = int(info.dwMinorVersion);
    version.server = info.wProductType != VER_NT_WORKSTATION;
    version.servicePack = info.wServicePackMajor;
    version.wow64 = runsUnderWow64();
    wchar_t folder[MAX_PATH] = {};
    GetSystemDirectoryW(folder, MAX_PATH);
    version.kernelFileVersion =
        fileVersion(QString::fromWCharArray(folder) + QLatin1String("\\kernel32.dll"));
    return windowsOsName(version);
}

QString platformWord()
{
    return QStringLiteral("win32");
}

QString fileVersion(const QString &path)
{
    return versionFromResource(VersionLibrary().productVersion(path));
}

} // namespace SystemInfo
