// Preloaded into a program, this makes one of its calls for memory or for files fail.
//
//   FAULTS_PROGRAM  name of the program that is meant; in all others nothing fails
//   FAULTS_CLASS    what is counted: memory, files or disk
//   FAULTS_AT       the call that fails, counted from 1 and from the start of main(); for disk, how
//   many bytes fit FAULTS_SPAN     how many calls fail from there on FAULTS_COUNT    a file of 8
//   bytes, which takes the number of calls (or bytes) so far
#include <dlfcn.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void* __libc_memalign(std::size_t, std::size_t);
}

namespace {

std::atomic<bool> counting{false};
bool memory = false;
bool files = false;
bool disk = false;
std::uint64_t first = 0;
std::uint64_t span = 1;
std::atomic<std::uint64_t> own_count{0};
std::atomic<std::uint64_t>* count = &own_count;

std::uint64_t Number(const char* name, std::uint64_t otherwise) {
  const char* text = std::getenv(name);
  return text == nullptr ? otherwise : std::strtoull(text, nullptr, 10);
}

void ReadSettings() {
  const char* program = std::getenv("FAULTS_PROGRAM");
  const char* kind = std::getenv("FAULTS_CLASS");
  if (program == nullptr || kind == nullptr) return;
  if (std::strcmp(program, program_invocation_short_name) != 0) return;
  memory = std::strcmp(kind, "memory") == 0;
  files = std::strcmp(kind, "files") == 0;
  disk = std::strcmp(kind, "disk") == 0;
  first = Number("FAULTS_AT", 0);
  span = Number("FAULTS_SPAN", 1);
  if (const char* name = std::getenv("FAULTS_COUNT")) {
    const int descriptor = static_cast<int>(syscall(257, AT_FDCWD, name, O_RDWR, 0));  // openat
    void* place = mmap(nullptr, 8, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    if (place != MAP_FAILED) count = static_cast<std::atomic<std::uint64_t>*>(place);
    close(descriptor);
  }
  counting = true;
}

// True for a call that is to fail.
bool Fails(bool of_this_class) {
  if (!of_this_class || !counting.load(std::memory_order_relaxed)) return false;
  const std::uint64_t call = ++*count;
  return first != 0 && call >= first && call - first < span;
}

bool MemoryFails() {
  if (!Fails(memory)) return false;
  errno = ENOMEM;
  return true;
}

bool FileFails(int reason) {
  if (!Fails(files)) return false;
  errno = reason;
  return true;
}

bool WriteFails(int descriptor, std::size_t bytes) {
  if (disk && counting) {
    struct stat status {};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) return false;
    const std::uint64_t written = count->fetch_add(bytes) + bytes;
    if (first == 0 || written <= first) return false;
    errno = ENOSPC;
    return true;
  }
  return FileFails(ENOSPC);
}

using Main = int (*)(int, char**, char**);
Main real_main = nullptr;

int CountedMain(int argc, char** argv, char** environment) {
  ReadSettings();
  return real_main(argc, argv, environment);
}

template <class Function>
Function Next(const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

}  // namespace

#define NEXT(name) static const auto real = Next<decltype(&name)>(#name)

extern "C" {

int __libc_start_main(Main program, int argc, char** argv, void (*init)(), void (*fini)(),
                      void (*rtld_fini)(), void* stack_end) {
  NEXT(__libc_start_main);
  real_main = program;
  return real(&CountedMain, argc, argv, init, fini, rtld_fini, stack_end);
}

void* malloc(std::size_t size) {
  return MemoryFails() ? nullptr : __libc_malloc(size);
}
void* calloc(std::size_t n, std::size_t size) {
  return MemoryFails() ? nullptr : __libc_calloc(n, size);
}
void* realloc(void* old, std::size_t size) {
  return MemoryFails() ? nullptr : __libc_realloc(old, size);
}
void* aligned_alloc(std::size_t alignment, std::size_t size) {
  return MemoryFails() ? nullptr : __libc_memalign(alignment, size);
}
int posix_memalign(void** place, std::size_t alignment, std::size_t size) {
  *place = aligned_alloc(alignment, size);
  return *place == nullptr ? ENOMEM : 0;
}
void* mmap(void* address, std::size_t length, int protection, int flags, int descriptor,
           off_t offset) {
  NEXT(mmap);
  // A mapping of no file is the BLAS's buffer. It asks for it for ever, and the solver has made
  // sure of its room right before.
  if (descriptor >= 0 && FileFails(ENOMEM)) return MAP_FAILED;
  return real(address, length, protection, flags, descriptor, offset);
}

#define FAIL_OPEN(name, parameters, arguments)      \
  int name parameters {                             \
    NEXT(name);                                     \
    va_list rest;                                   \
    va_start(rest, flags);                          \
    const unsigned mode = va_arg(rest, unsigned);   \
    va_end(rest);                                   \
    return FileFails(EMFILE) ? -1 : real arguments; \
  }
FAIL_OPEN(open, (const char* name, int flags, ...), (name, flags, mode))
FAIL_OPEN(open64, (const char* name, int flags, ...), (name, flags, mode))
FAIL_OPEN(openat, (int at, const char* name, int flags, ...), (at, name, flags, mode))
FAIL_OPEN(openat64, (int at, const char* name, int flags, ...), (at, name, flags, mode))

#define FAIL(result, name, parameters, arguments, failed, failure) \
  result name parameters {                                         \
    NEXT(name);                                                    \
    return failed ? failure : real arguments;                      \
  }
FAIL(std::FILE*, fopen, (const char* name, const char* mode), (name, mode), FileFails(EMFILE),
     nullptr)
FAIL(std::FILE*, fopen64, (const char* name, const char* mode), (name, mode), FileFails(EMFILE),
     nullptr)
FAIL(ssize_t, read, (int d, void* to, std::size_t n), (d, to, n), FileFails(EIO), -1)
FAIL(ssize_t, pread, (int d, void* to, std::size_t n, off_t at), (d, to, n, at), FileFails(EIO), -1)
FAIL(ssize_t, pread64, (int d, void* to, std::size_t n, off64_t at), (d, to, n, at), FileFails(EIO),
     -1)
FAIL(ssize_t, write, (int d, const void* from, std::size_t n), (d, from, n), WriteFails(d, n), -1)
FAIL(ssize_t, pwrite, (int d, const void* from, std::size_t n, off_t at), (d, from, n, at),
     WriteFails(d, n), -1)
FAIL(ssize_t, pwrite64, (int d, const void* from, std::size_t n, off64_t at), (d, from, n, at),
     WriteFails(d, n), -1)
FAIL(ssize_t, writev, (int d, const iovec* parts, int n), (d, parts, n),
     WriteFails(d, parts[0].iov_len), -1)
FAIL(int, ftruncate, (int d, off_t length), (d, length), FileFails(ENOSPC), -1)
FAIL(int, ftruncate64, (int d, off64_t length), (d, length), FileFails(ENOSPC), -1)
FAIL(int, fsync, (int d), (d), FileFails(EIO), -1)
FAIL(int, fdatasync, (int d), (d), FileFails(EIO), -1)
FAIL(int, rename, (const char* from, const char* to), (from, to), FileFails(EACCES), -1)
FAIL(int, unlink, (const char* name), (name), FileFails(EACCES), -1)
FAIL(int, mkdir, (const char* name, mode_t mode), (name, mode), FileFails(EACCES), -1)
FAIL(int, pipe2, (int* ends, int flags), (ends, flags), FileFails(EMFILE), -1)
FAIL(int, posix_spawn,
     (pid_t * process, const char* path, const posix_spawn_file_actions_t* actions,
      const posix_spawnattr_t* attributes, char* const* arguments, char* const* environment),
     (process, path, actions, attributes, arguments, environment), FileFails(EAGAIN), EAGAIN)

}  // extern "C"
