#include "FailingMemory.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

#include <dlfcn.h>
#include <execinfo.h>
#include <fcntl.h>
#include <link.h>
#include <sys/wait.h>
#include <unistd.h>

// Defined only in a build that measures coverage.
extern "C" void __gcov_init(void *) __attribute__((weak)); // NOLINT(bugprone-reserved-identifier)

// Marks functions of this file that may be on the stack between an allocation and its caller.
#define HOOK [[gnu::section("memory_hooks"), gnu::noinline]]
// NOLINTNEXTLINE(bugprone-reserved-identifier): the linker defines these names
extern "C" const char __start_memory_hooks, __stop_memory_hooks;

namespace {

enum class Mode { Off, Watching, FailingAt, FailingOn, Forking };

Mode s_mode = Mode::Off;
int s_countdown = 0;
bool s_isChild = false;
bool s_hasCrashed = false;
int s_forkCount = 0;
std::size_t s_allocations = 0;
int s_pipe[2] = {-1, -1};

std::string &reports()
{
    static std::string lines;
    return lines;
}

/// "/" and the file name of the plug-in
std::string &library()
{
    static std::string name;
    return name;
}

// Fixed arrays, because this code must not allocate.
std::array<void *, 1 << 14> s_blocks;
std::size_t s_blockCount = 0;

struct Range
{
    ElfW(Addr) begin, end;
    bool isPlugin;
};
std::array<Range, 16> s_ranges; ///< code of the plug-in, the stand-ins and this program
std::size_t s_rangeCount = 0;

bool endsWith(const char *text, const std::string &end)
{
    const std::size_t length = std::strlen(text);
    return length >= end.size() && text + length - end.size() == end;
}

int addRanges(dl_phdr_info *info, std::size_t, void *)
{
    const bool isPlugin = endsWith(info->dlpi_name, library());
    if (!isPlugin && *info->dlpi_name &&
        !std::strstr(info->dlpi_name, "/libTimeShiftBufferModel.so") &&
        !std::strstr(info->dlpi_name, "/libQarnLogUtl.so"))
        return 0;
    for (int i = 0; i < info->dlpi_phnum; ++i) {
        const auto &segment = info->dlpi_phdr[i];
        const ElfW(Addr) begin = info->dlpi_addr + segment.p_vaddr;
        if (segment.p_type == PT_LOAD && (segment.p_flags & PF_X))
            s_ranges.at(s_rangeCount++) = {begin, begin + segment.p_memsz, isPlugin};
    }
    return 0;
}

/// Returns true if the plug-in is the nearest caller of the project's own code.
HOOK bool isForPlugin()
{
    void *frames[64];
    const int count = backtrace(frames, 64);
    for (int i = 0; i < count; ++i) {
        if (&__start_memory_hooks <= frames[i] && frames[i] < &__stop_memory_hooks)
            continue;
        const auto address = reinterpret_cast<ElfW(Addr)>(frames[i]);
        for (std::size_t r = 0; r < s_rangeCount; ++r) {
            if (s_ranges[r].begin <= address && address < s_ranges[r].end)
                return s_ranges[r].isPlugin;
        }
    }
    return false;
}

/// Signal handler: reports the signal and the library whose code crashed. Crashes inside Qt are
/// expected, because Qt reads some memory that it could not allocate.
void reportCrash(int number)
{
    s_mode = Mode::Off;
    s_hasCrashed = true;
    void *frames[64];
    const int count = backtrace(frames, 64);
    std::string owner;
    for (int i = 2; i < count && owner.empty(); ++i) { // skip this function and the signal frame
        Dl_info info = {};
        const std::string name = dladdr(frames[i], &info) ? info.dli_fname : "?";
        if (name.find("/libc.so") == std::string::npos)
            owner = name.substr(name.rfind('/') + 1);
    }
    failingmemory::endChild("crashed with signal " + std::to_string(number) + " in " + owner +
                            '\n');
}

void forkAndWait(Mode mode)
{
    const pid_t child = fork();
    if (child == 0) {
        for (const int number : {SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGILL})
            std::signal(number, reportCrash);
        alarm(20); // seconds
        s_isChild = true;
        s_countdown = 0;
        s_mode = mode;
        return;
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (status != 0)
        reports() += "ended with status " + std::to_string(status) + '\n';
    std::array<char, 4096> text;
    for (ssize_t size = 0; (size = read(s_pipe[0], text.data(), text.size())) > 0;)
        reports().append(text.data(), std::size_t(size));
}

/// Returns true if this allocation of the plug-in shall fail.
bool shallFail()
{
    if (s_mode == Mode::Forking) {
        ++s_forkCount;
        for (const Mode mode : {Mode::FailingAt, Mode::FailingOn}) {
            s_mode = Mode::Off;
            forkAndWait(mode);
            if (s_isChild)
                return shallFail();
        }
        s_mode = Mode::Forking;
    }
    if (s_mode == Mode::FailingAt && s_countdown-- == 0) {
        s_mode = Mode::Watching;
        return true;
    }
    return s_mode == Mode::FailingOn;
}

/// Returns true if the current allocation shall fail.
/// @param isCounted set to true if the allocation is the plug-in's
HOOK bool failsNow(bool &isCounted)
{
    const Mode mode = std::exchange(s_mode, Mode::Off); // finding the caller may allocate
    isCounted = mode != Mode::Off && isForPlugin();
    s_mode = mode;
    s_allocations += isCounted;
    return isCounted && shallFail();
}

void addBlock(void *block)
{
    if (s_blockCount == s_blocks.size())
        std::abort();
    s_blocks[s_blockCount++] = block;
}

void removeBlock(void *block)
{
    const auto end = s_blocks.begin() + std::ptrdiff_t(s_blockCount);
    const auto found = block ? std::find(s_blocks.begin(), end, block) : end;
    if (found != end)
        *found = s_blocks[--s_blockCount];
}

} // namespace

// Symbols of the program take precedence, so all loaded libraries use these functions.
#ifdef FAILING_MEMORY_ONLY_NEW
HOOK void *operator new(std::size_t size, const std::nothrow_t &) noexcept
{
    bool isCounted = false;
    if (failsNow(isCounted))
        return nullptr;
    void *const block = std::malloc(size);
    if (isCounted)
        addBlock(block);
    return block;
}
HOOK void *operator new(std::size_t size)
{
    if (void *const block = operator new(size, std::nothrow))
        return block;
    throw std::bad_alloc();
}
void operator delete(void *block) noexcept
{
    removeBlock(block);
    std::free(block);
}
void operator delete(void *block, std::size_t) noexcept
{
    operator delete(block);
}
#else
extern "C" {
void *__libc_realloc(void *, std::size_t); // NOLINT(bugprone-reserved-identifier)
void __libc_free(void *);                  // NOLINT(bugprone-reserved-identifier)

HOOK void *realloc(void *old, std::size_t size)
{
    bool isCounted = false;
    if (failsNow(isCounted))
        return nullptr;
    void *const block = __libc_realloc(old, size);
    removeBlock(old);
    if (isCounted)
        addBlock(block);
    return block;
}
HOOK void *malloc(std::size_t size)
{
    return realloc(nullptr, size);
}
HOOK void *calloc(std::size_t count, std::size_t size)
{
    void *const block = realloc(nullptr, count * size);
    return block ? std::memset(block, 0, count * size) : nullptr;
}
void free(void *block)
{
    removeBlock(block);
    __libc_free(block);
}
} // extern "C"
#endif

namespace failingmemory {

void setLibrary(const std::string &path)
{
    library() = path.substr(path.rfind('/'));
}

void watch()
{
    s_allocations = 0;
    s_rangeCount = 0; // the library may have another address after a reload
    dl_iterate_phdr(addRanges, nullptr);
    isForPlugin(); // its first call loads the unwinder
    if (s_pipe[0] < 0 && (pipe(s_pipe) != 0 || fcntl(s_pipe[0], F_SETFL, O_NONBLOCK) != 0))
        std::abort();
    s_mode = Mode::Watching;
}

void failAt(int n)
{
    watch();
    s_countdown = n;
    s_mode = Mode::FailingAt;
}

void forkAtEach()
{
    watch();
    s_mode = Mode::Forking;
}

void stop()
{
    s_mode = Mode::Off;
}

std::size_t blocks()
{
    return s_blockCount;
}

std::size_t allocations()
{
    return s_allocations;
}

bool isChild()
{
    return s_isChild;
}

void endChild(const std::string &report)
{
    const int code = write(s_pipe[1], report.data(), report.size()) < 0 ? 1 : 0;
    // The coverage counters of all libraries are written only by exit(), which a crashed process
    // must not call.
    if (__gcov_init && !s_hasCrashed)
        std::exit(code);
    _exit(code);
}

std::string takeReports()
{
    return std::exchange(reports(), {});
}

int forkCount()
{
    return s_forkCount;
}

} // namespace failingmemory
