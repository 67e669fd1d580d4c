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

// There in a build that counts executed lines.
extern "C" void __gcov_init(void *) __attribute__((weak)); // NOLINT(bugprone-reserved-identifier)

// The functions between an allocation and its true caller are recognised by their section.
#define HOOK [[gnu::section("memory_hooks"), gnu::noinline]]
// NOLINTNEXTLINE(bugprone-reserved-identifier): made by the linker
extern "C" const char __start_memory_hooks, __stop_memory_hooks;

namespace {

enum class Mode { Off, Watching, FailingAt, FailingOn, Forking };

Mode s_mode = Mode::Off;
int s_countdown = 0;
bool s_isDouble = false;
bool s_isDead = false; ///< by a signal
int s_tried = 0;
int s_pipe[2] = {-1, -1};

std::string &reports()
{
    static std::string lines;
    return lines;
}

/// "/" and the name of the plug-in's file.
std::string &library()
{
    static std::string name;
    return name;
}

// In arrays, as nothing here may allocate.
std::array<void *, 1 << 14> s_blocks;
std::size_t s_blockCount = 0;

struct Range
{
    ElfW(Addr) begin, end;
    bool isPlugin;
};
std::array<Range, 16> s_ranges; ///< of the project's own code, the program's included
std::size_t s_rangeCount = 0;

bool endsWith(const char *text, const std::string &end)
{
    const std::size_t length = std::strlen(text);
    return length >= end.size() && text + length - end.size() == end;
}

int noteRanges(dl_phdr_info *info, std::size_t, void *)
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

/// Tells whose code was running. Qt's own is known to read what it could not allocate.
void reportDeath(int number)
{
    s_mode = Mode::Off;
    s_isDead = true;
    void *frames[64];
    const int count = backtrace(frames, 64);
    std::string owner;
    for (int i = 2; i < count && owner.empty(); ++i) { // this function, the return from it
        Dl_info info = {};
        const std::string name = dladdr(frames[i], &info) ? info.dli_fname : "?";
        if (name.find("/libc.so") == std::string::npos)
            owner = name.substr(name.rfind('/') + 1);
    }
    failingmemory::endDouble("died of signal " + std::to_string(number) + " in " + owner + '\n');
}

void forkAndWait(Mode mode)
{
    const pid_t child = fork();
    if (child == 0) {
        for (const int number : {SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGILL})
            std::signal(number, reportDeath);
        alarm(20); // seconds
        s_isDouble = true;
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

/// Whether this allocation is to fail, when the plug-in makes it.
bool fails()
{
    if (s_mode == Mode::Forking) {
        ++s_tried;
        for (const Mode mode : {Mode::FailingAt, Mode::FailingOn}) {
            s_mode = Mode::Off;
            forkAndWait(mode);
            if (s_isDouble)
                return fails();
        }
        s_mode = Mode::Forking;
    }
    if (s_mode == Mode::FailingAt && s_countdown-- == 0) {
        s_mode = Mode::Watching;
        return true;
    }
    return s_mode == Mode::FailingOn;
}

/// Whether the allocation that is going on has to fail; @p isNoted tells whether the plug-in makes
/// it.
HOOK bool isRefused(bool &isNoted)
{
    const Mode mode = std::exchange(s_mode, Mode::Off); // finding the caller may allocate
    isNoted = mode != Mode::Off && isForPlugin();
    s_mode = mode;
    return isNoted && fails();
}

void note(void *block)
{
    if (s_blockCount == s_blocks.size())
        std::abort();
    s_blocks[s_blockCount++] = block;
}

void forget(void *block)
{
    const auto end = s_blocks.begin() + std::ptrdiff_t(s_blockCount);
    const auto found = block ? std::find(s_blocks.begin(), end, block) : end;
    if (found != end)
        *found = s_blocks[--s_blockCount];
}

} // namespace

// The loaded libraries take these instead of the runtime's, as every program's own come first.
#ifdef FAILING_MEMORY_IS_NEW_ALONE
HOOK void *operator new(std::size_t size, const std::nothrow_t &) noexcept
{
    bool isNoted = false;
    if (isRefused(isNoted))
        return nullptr;
    void *const block = std::malloc(size);
    if (isNoted)
        note(block);
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
    forget(block);
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
    bool isNoted = false;
    if (isRefused(isNoted))
        return nullptr;
    void *const block = __libc_realloc(old, size);
    forget(old);
    if (isNoted)
        note(block);
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
    forget(block);
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
    s_rangeCount = 0; // the library may have been loaded anew, to another place
    dl_iterate_phdr(noteRanges, nullptr);
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

bool isDouble()
{
    return s_isDouble;
}

void endDouble(const std::string &report)
{
    const int code = write(s_pipe[1], report.data(), report.size()) < 0 ? 1 : 0;
    // Only an ordinary exit writes the counts of each library; a dead process has no ordinary exit.
    if (__gcov_init && !s_isDead)
        std::exit(code);
    _exit(code);
}

std::string takeReports()
{
    return std::exchange(reports(), {});
}

int tried()
{
    return s_tried;
}

} // namespace failingmemory
