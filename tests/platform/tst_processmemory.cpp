#include "platform/ProcessMemory.h"
#include "support/Expect.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTest>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <latch>
#include <memory>
#include <thread>
#include <vector>

#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <malloc.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// The libraries that the dynamic linker lists during a test; null when it lists those of this process.
std::vector<dl_phdr_info> *listed = nullptr;

} // namespace

// Takes the place of the function of the C library. A sanitizer calls it before it has prepared its own memory.
__attribute__((no_sanitize("address", "undefined"))) int
dl_iterate_phdr(int (*visit)(dl_phdr_info *, std::size_t, void *), void *data)
{
    if (!listed) {
        static const auto real = reinterpret_cast<decltype(&dl_iterate_phdr)>(::dlsym(RTLD_NEXT, "dl_iterate_phdr"));
        return real(visit, data);
    }
    for (auto &library : *listed) {
        if (const int result = visit(&library, sizeof library, data); result != 0) {
            return result;
        }
    }
    return 0;
}

namespace kelvo {

namespace {

/// Four pages of memory that are full of the letter x.
class Pages
{
public:
    Pages()
        : bytes_(static_cast<char *>(
              ::mmap(nullptr, count * size(), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)))
    {
        std::memset(bytes_, 'x', count * size());
    }
    ~Pages() { ::munmap(bytes_, count * size()); }
    Pages(const Pages &) = delete;
    Pages &operator=(const Pages &) = delete;

    /// The size of one page.
    static std::size_t size() { return static_cast<std::size_t>(::sysconf(_SC_PAGESIZE)); }
    std::uintptr_t address() const { return reinterpret_cast<std::uintptr_t>(bytes_); }

    /// An x for each page that is still there, and a hyphen for each that was given up: it has only zeros now.
    QByteArray state() const
    {
        QByteArray state;
        for (auto *page = bytes_; page < bytes_ + count * size(); page += size()) {
            state += std::all_of(page, page + size(), [](char byte) { return byte == '\0'; }) ? '-' : 'x';
        }
        return state;
    }

private:
    static constexpr std::size_t count = 4;
    char *bytes_;
};

ElfW(Phdr) segment(std::uint32_t type, std::uint32_t flags, std::uintptr_t begin, std::uintptr_t end)
{
    ElfW(Phdr) segment{};
    segment.p_type = type;
    segment.p_flags = flags;
    segment.p_vaddr = begin;
    segment.p_filesz = end - begin;
    return segment;
}

/// A library whose segments lie in the pages.
dl_phdr_info library(const char *path, const Pages &pages, const std::vector<ElfW(Phdr)> &segments)
{
    dl_phdr_info library{};
    library.dlpi_name = path;
    library.dlpi_addr = pages.address();
    library.dlpi_phdr = segments.data();
    library.dlpi_phnum = static_cast<ElfW(Half)>(segments.size());
    return library;
}

/// Returns the unused memory of a process with these libraries.
void returnUnusedMemoryOf(std::vector<dl_phdr_info> libraries, std::span<const std::string_view> named)
{
    listed = &libraries;
    returnUnusedMemory(named);
    listed = nullptr;
}

constexpr std::array named{std::string_view("libViews"), std::string_view("libWindows")};

} // namespace

class ProcessMemoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void privateMemoryIsInNoCoreFile_data();
    void privateMemoryIsInNoCoreFile();
    void theAllocatorReturnsFreedMemory();
    void wholePagesThatAreNeverWrittenAreGivenUp_data();
    void wholePagesThatAreNeverWrittenAreGivenUp();
    void onlyTheNamedLibrariesAreGivenUp_data();
    void onlyTheNamedLibrariesAreGivenUp();
    void librariesWithRelocatedCodeAreKept_data();
    void librariesWithRelocatedCodeAreKept();
    void codeThatWasGivenUpRunsAgain();
};

void ProcessMemoryTest::privateMemoryIsInNoCoreFile_data()
{
    QTest::addColumn<qulonglong>("hardLimit");
    QTest::addColumn<qulonglong>("softLimit");
    QTest::newRow("core files are allowed") << qulonglong(1'000'000) << 1ULL;
    QTest::newRow("core files are forbidden") << 0ULL << 0ULL;
}

void ProcessMemoryTest::privateMemoryIsInNoCoreFile()
{
    QFETCH(qulonglong, hardLimit);
    QFETCH(qulonglong, softLimit);
    rlimit limit{};
    ::getrlimit(RLIMIT_CORE, &limit);
    if (limit.rlim_max < hardLimit) {
        QSKIP("core files are forbidden here");
    }
    const pid_t child = ::fork();
    if (child == 0) {
        limit = {hardLimit, hardLimit};
        ::setrlimit(RLIMIT_CORE, &limit);
        // A program that is started without a standard input uses its number for the first file that it opens.
        ::close(STDIN_FILENO);
        keepProcessMemoryPrivate();
        const bool isClosed = ::fcntl(STDIN_FILENO, F_GETFD) == -1;
        ::getrlimit(RLIMIT_CORE, &limit);
        QFile filter(u"/proc/self/coredump_filter"_s);
        const bool isPrivate = isClosed && limit.rlim_cur == softLimit && limit.rlim_max == hardLimit
            && filter.open(QIODevice::ReadOnly) && filter.readAll().toInt(nullptr, 16) == 0;
        ::_exit(isPrivate ? 0 : 1);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    QCOMPARE(status, 0);
}

void ProcessMemoryTest::theAllocatorReturnsFreedMemory()
{
#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__)
    // In a process of its own: the allocator of this one is in use already.
    QCOMPARE(QProcess::execute(QCoreApplication::applicationFilePath(), {u"allocate"_s}), 0);
#else
    QSKIP("the allocator is another one");
#endif
}

void ProcessMemoryTest::wholePagesThatAreNeverWrittenAreGivenUp_data()
{
    QTest::addColumn<uint>("type");
    QTest::addColumn<uint>("flags");
    QTest::addColumn<size_t>("begin");
    QTest::addColumn<size_t>("end");
    QTest::addColumn<QByteArray>("state");
    const auto page = Pages::size();
    const uint load = PT_LOAD;
    const uint code = PF_R | PF_X;
    QTest::newRow("code") << load << code << page << 3 * page << "x--x"_ba;
    QTest::newRow("constants") << load << uint{PF_R} << page << 3 * page << "x--x"_ba;
    QTest::newRow("variables") << load << uint{PF_R | PF_W} << page << 3 * page << "xxxx"_ba;
    QTest::newRow("not loaded") << uint{PT_NOTE} << code << page << 3 * page << "xxxx"_ba;
    QTest::newRow("more than whole pages") << load << code << page - 1 << 3 * page + 1 << "x--x"_ba;
    QTest::newRow("a late begin") << load << code << page + 1 << 3 * page << "xx-x"_ba;
    QTest::newRow("an early end") << load << code << page << 3 * page - 1 << "x-xx"_ba;
    QTest::newRow("parts of two pages") << load << code << page + 1 << 3 * page - 1 << "xxxx"_ba;
    QTest::newRow("a part of one page") << load << code << page + 1 << page + 2 << "xxxx"_ba;
}

void ProcessMemoryTest::wholePagesThatAreNeverWrittenAreGivenUp()
{
    QFETCH(uint, type);
    QFETCH(uint, flags);
    QFETCH(size_t, begin);
    QFETCH(size_t, end);
    QFETCH(QByteArray, state);
    const Pages pages;
    const std::vector segments{segment(type, flags, begin, end)};
    returnUnusedMemoryOf({library("/usr/lib/libViews.so.6", pages, segments)}, named);
    QCOMPARE(pages.state(), state);
}

void ProcessMemoryTest::onlyTheNamedLibrariesAreGivenUp_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<bool>("givenUp");
    QTest::newRow("the first") << "/usr/lib/libViews.so.6"_ba << true;
    QTest::newRow("the second") << "/usr/lib/libWindowsMore.so.6"_ba << true;
    QTest::newRow("without a folder") << "libViews.so"_ba << true;
    QTest::newRow("another one") << "/usr/lib/libOther.so.6"_ba << false;
    QTest::newRow("in a folder of this name") << "/usr/libViews/libOther.so.6"_ba << false;
    QTest::newRow("the program itself") << ""_ba << false;
}

void ProcessMemoryTest::onlyTheNamedLibrariesAreGivenUp()
{
    QFETCH(QByteArray, path);
    QFETCH(bool, givenUp);
    const Pages pages;
    const Pages last;
    const std::vector segments{segment(PT_LOAD, PF_R, 0, 2 * Pages::size()),
                               segment(PT_LOAD, PF_R, 3 * Pages::size(), 4 * Pages::size())};
    returnUnusedMemoryOf({library(path, pages, segments), library("/usr/lib/libWindows.so.6", last, segments)}, named);
    QCOMPARE(pages.state(), givenUp ? "--x-"_ba : "xxxx"_ba);
    QCOMPARE(last.state(), "--x-"_ba);
}

void ProcessMemoryTest::librariesWithRelocatedCodeAreKept_data()
{
    QTest::addColumn<qlonglong>("tag");
    QTest::addColumn<qulonglong>("value");
    QTest::addColumn<QByteArray>("state");
    QTest::newRow("not relocated") << qlonglong{DT_NEEDED} << qulonglong{DF_TEXTREL} << "----"_ba;
    QTest::newRow("relocated") << qlonglong{DT_TEXTREL} << qulonglong{0} << "xxxx"_ba;
    QTest::newRow("a flag") << qlonglong{DT_FLAGS} << qulonglong{DF_TEXTREL | DF_BIND_NOW} << "xxxx"_ba;
    QTest::newRow("another flag") << qlonglong{DT_FLAGS} << qulonglong{DF_BIND_NOW} << "----"_ba;
}

void ProcessMemoryTest::librariesWithRelocatedCodeAreKept()
{
    QFETCH(qlonglong, tag);
    QFETCH(qulonglong, value);
    QFETCH(QByteArray, state);
    ElfW(Dyn) entries[3]{};
    entries[0].d_tag = DT_SONAME;
    entries[1].d_tag = static_cast<decltype(entries[1].d_tag)>(tag);
    entries[1].d_un.d_val = static_cast<decltype(entries[1].d_un.d_val)>(value);
    const Pages pages;
    const auto dynamic = reinterpret_cast<std::uintptr_t>(entries) - pages.address();
    const std::vector segments{segment(PT_LOAD, PF_R | PF_X, 0, 4 * Pages::size()),
                               segment(PT_DYNAMIC, PF_R | PF_W, dynamic, dynamic + sizeof entries)};
    returnUnusedMemoryOf({library("/usr/lib/libViews.so.6", pages, segments)}, named);
    QCOMPARE(pages.state(), state);
}

void ProcessMemoryTest::codeThatWasGivenUpRunsAgain()
{
    constexpr std::array everything{std::string_view("lib")};
    returnUnusedMemory(everything);
    QCOMPARE(u"Kelvo"_s.toUpper(), u"KELVO"_s);
}

#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__)

using Block = std::unique_ptr<void, decltype(&std::free)>;

/// A compiler that saw the whole life of the block could leave it out.
[[gnu::noinline]] Block allocated(std::size_t size)
{
    return {std::malloc(size), &std::free};
}

std::vector<Block> allocated(std::size_t number, std::size_t size)
{
    std::vector<Block> blocks;
    std::generate_n(std::back_inserter(blocks), number, [size] { return allocated(size); });
    return blocks;
}

/// What the allocator does in a process that keeps its memory small.
int allocate()
{
    constexpr std::size_t kib = 1024;
    keepProcessMemorySmall();

    // Blocks of 128 KiB do not make the heap larger, not even after one of them was freed.
    ::malloc_trim(0);
    const auto before = ::mallinfo2().hblks;
    allocated(4 * 1024 * kib).reset();
    EXPECT(::mallinfo2().hblks == before);
    auto large = allocated(128 * kib);
    EXPECT(::mallinfo2().hblks == before + 1);
    auto small = allocated(128 * kib - 100);
    EXPECT(::mallinfo2().hblks == before + 1);
    large.reset();
    small.reset();

    // The heap keeps up to 256 KiB of free memory.
    ::malloc_trim(0);
    allocated(100 * kib).reset();
    EXPECT(::mallinfo2().keepcost > 200 * kib);
    allocated(20, 100 * kib).clear();
    EXPECT(::mallinfo2().keepcost < 256 * kib);

    // Free memory between blocks that are in use is returned on demand.
    auto blocks = allocated(200, 10 * kib);
    const auto inTheMiddle = reinterpret_cast<std::uintptr_t>(blocks[100].get()) / Pages::size() * Pages::size();
    std::memset(blocks[100].get(), 'x', 10 * kib);
    const auto isResident = [inTheMiddle] {
        unsigned char state = 0;
        return ::mincore(reinterpret_cast<void *>(inTheMiddle), 1, &state) == 0 && (state & 1) == 1;
    };
    blocks.erase(blocks.begin(), blocks.end() - 1);
    EXPECT(isResident());
    returnUnusedMemory({});
    EXPECT(!isResident());

    // The threads share one heap.
    std::latch all(4);
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&all] {
            const auto block = allocated(kib);
            all.arrive_and_wait();
        });
    }
    threads.clear();
    char *text = nullptr;
    std::size_t size = 0;
    std::FILE *heaps = ::open_memstream(&text, &size);
    ::malloc_info(0, heaps);
    std::fclose(heaps);
    EXPECT(QByteArrayView(text, static_cast<qsizetype>(size)).count("<heap nr=") == 1);
    return 0;
}

#endif

} // namespace kelvo

int main(int argc, char **argv)
{
#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__)
    if (argc == 2 && std::strcmp(argv[1], "allocate") == 0) {
        return kelvo::allocate();
    }
#endif
    const QCoreApplication application(argc, argv);
    kelvo::ProcessMemoryTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_processmemory.moc"
