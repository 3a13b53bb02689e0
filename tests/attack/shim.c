/* A library to preload: it makes the n-th call on files below one folder fail, or kills the program
 * there, so that every step of a save is interrupted in turn.
 *
 *   ATTACK_PROGRAM  the executable that is meant; every other process passes untouched
 *   ATTACK_UNDER    folders, split by ':': calls on other files are not counted
 *   ATTACK_CALLS    names of calls, split by ','; empty: all of them
 *   ATTACK_NTH      which of these calls, from 1
 *   ATTACK_ERRNO    what it fails with; 0: the process is killed instead; -1: it is only noted
 *   ATTACK_EVER     1: every call from the n-th on; 2: those of the n-th's name alone
 *   ATTACK_HALF     1: a failing write writes the first half before
 *   ATTACK_NOTE     a file that gets a line for each call that was made to fail
 */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <signal.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

static int armed;
static const char *under, *calls, *note;
static int nth, failure, ever, half;
static int counted;
static const char *failing;

static int number_of(const char *name) {
    const char *text = getenv(name);
    return text ? atoi(text) : 0;
}

__attribute__((constructor)) static void begin(void) {
    char self[PATH_MAX];
    const ssize_t size = readlink("/proc/self/exe", self, sizeof self - 1);
    const char *program = getenv("ATTACK_PROGRAM");
    under = getenv("ATTACK_UNDER");
    calls = getenv("ATTACK_CALLS");
    note = getenv("ATTACK_NOTE");
    nth = number_of("ATTACK_NTH");
    failure = number_of("ATTACK_ERRNO");
    ever = number_of("ATTACK_EVER");
    half = number_of("ATTACK_HALF");
    if (size > 0 && program && under) {
        self[size] = 0;
        armed = strcmp(self, program) == 0;
    }
}

static int is_listed(const char *name) {
    if (!calls || !*calls) {
        return 1;
    }
    const size_t size = strlen(name);
    for (const char *at = calls; (at = strstr(at, name)); at += size) {
        if ((at == calls || at[-1] == ',') && (at[size] == ',' || !at[size])) {
            return 1;
        }
    }
    return 0;
}

static int is_under(const char *path) {
    for (const char *at = under; *at;) {
        const size_t size = strcspn(at, ":");
        if (strncmp(path, at, size) == 0) {
            return 1;
        }
        at += size + (at[size] == ':');
    }
    return 0;
}

static void tell(const char *name, const char *path) {
    char line[PATH_MAX + 64];
    if (!note) {
        return;
    }
    const int length = snprintf(line, sizeof line, "%s %s\n", name, path);
    const int file = (int)syscall(SYS_openat, AT_FDCWD, note, O_WRONLY | O_CREAT | O_APPEND, 0600);
    if (file >= 0) {
        syscall(SYS_write, file, line, (size_t)length);
        syscall(SYS_close, file);
    }
}

/* Whether this call is to fail; errno is set then. */
static int hit(const char *name, const char *path) {
    if (!armed || !path || !is_under(path) || !is_listed(name)) {
        return 0;
    }
    const int number = __sync_add_and_fetch(&counted, 1);
    if (number == nth) {
        failing = name;
    }
    const int chosen = number == nth || (ever == 1 && number > nth) ||
                       (ever == 2 && number > nth && failing && strcmp(failing, name) == 0);
    if (!chosen) {
        return 0;
    }
    tell(name, path);
    if (failure < 0) {
        return 0;
    }
    if (failure == 0) {
        syscall(SYS_kill, (int)syscall(SYS_getpid), SIGKILL);
        for (;;) {
            pause();
        }
    }
    errno = failure;
    return 1;
}

/* The path behind a descriptor, in `path`; 0 when it has none. */
static int path_of(int file, char *path) {
    char link[64];
    if (!armed || file < 0) {
        return 0;
    }
    snprintf(link, sizeof link, "/proc/self/fd/%d", file);
    const ssize_t size = syscall(SYS_readlinkat, AT_FDCWD, link, path, PATH_MAX - 1);
    if (size <= 0) {
        return 0;
    }
    path[size] = 0;
    return 1;
}

static int hit_file(const char *name, int file) {
    char path[PATH_MAX];
    return path_of(file, path) && hit(name, path);
}

/* Writes the first half of what the call that is about to fail was given. */
static void tear(int file, const void *bytes, size_t size) {
    char path[PATH_MAX];
    if (half && counted + 1 == nth && path_of(file, path) && is_under(path) && is_listed("write")) {
        syscall(SYS_write, file, bytes, size / 2);
    }
}

#define REAL(name) \
    static __typeof__(&name) real; \
    if (!real) { \
        real = (__typeof__(&name))dlsym(RTLD_NEXT, #name); \
    }

#define MODE_OF(flags, last) \
    mode_t mode = 0; \
    if ((flags) & (O_CREAT | O_TMPFILE)) { \
        va_list rest; \
        va_start(rest, last); \
        mode = (mode_t)va_arg(rest, int); \
        va_end(rest); \
    }

int open(const char *path, int flags, ...) {
    REAL(open)
    MODE_OF(flags, flags)
    return hit("open", path) ? -1 : real(path, flags, mode);
}
int open64(const char *path, int flags, ...) {
    REAL(open64)
    MODE_OF(flags, flags)
    return hit("open", path) ? -1 : real(path, flags, mode);
}
int openat(int folder, const char *path, int flags, ...) {
    REAL(openat)
    MODE_OF(flags, flags)
    return hit("open", path) ? -1 : real(folder, path, flags, mode);
}
int openat64(int folder, const char *path, int flags, ...) {
    REAL(openat64)
    MODE_OF(flags, flags)
    return hit("open", path) ? -1 : real(folder, path, flags, mode);
}

ssize_t read(int file, void *bytes, size_t size) {
    REAL(read)
    return hit_file("read", file) ? -1 : real(file, bytes, size);
}
ssize_t pread64(int file, void *bytes, size_t size, off64_t at) {
    REAL(pread64)
    return hit_file("read", file) ? -1 : real(file, bytes, size, at);
}
ssize_t write(int file, const void *bytes, size_t size) {
    REAL(write)
    tear(file, bytes, size);
    return hit_file("write", file) ? -1 : real(file, bytes, size);
}
ssize_t writev(int file, const struct iovec *pieces, int count) {
    REAL(writev)
    if (count > 0) {
        tear(file, pieces[0].iov_base, pieces[0].iov_len);
    }
    return hit_file("write", file) ? -1 : real(file, pieces, count);
}
int fsync(int file) {
    REAL(fsync)
    return hit_file("fsync", file) ? -1 : real(file);
}
int fdatasync(int file) {
    REAL(fdatasync)
    return hit_file("fsync", file) ? -1 : real(file);
}
int ftruncate64(int file, off64_t size) {
    REAL(ftruncate64)
    return hit_file("truncate", file) ? -1 : real(file, size);
}
int close(int file) {
    REAL(close)
    if (hit_file("close", file)) { /* closed all the same, as the system does */
        const int error = errno;
        real(file);
        errno = error;
        return -1;
    }
    return real(file);
}
int fchmod(int file, mode_t mode) {
    REAL(fchmod)
    return hit_file("chmod", file) ? -1 : real(file, mode);
}
int flock(int file, int how) {
    REAL(flock)
    return hit_file("lock", file) ? -1 : real(file, how);
}
int fstat(int file, struct stat *state) {
    REAL(fstat)
    return hit_file("fstat", file) ? -1 : real(file, state);
}
int fstat64(int file, struct stat64 *state) {
    REAL(fstat64)
    return hit_file("fstat", file) ? -1 : real(file, state);
}

int rename(const char *from, const char *to) {
    REAL(rename)
    return hit("rename", to) ? -1 : real(from, to);
}
int renameat2(int a, const char *from, int b, const char *to, unsigned flags) {
    REAL(renameat2)
    return hit("rename", to) ? -1 : real(a, from, b, to, flags);
}
int link(const char *from, const char *to) {
    REAL(link)
    return hit("link", to) ? -1 : real(from, to);
}
int linkat(int a, const char *from, int b, const char *to, int flags) {
    REAL(linkat)
    return hit("link", to) ? -1 : real(a, from, b, to, flags);
}
int unlink(const char *path) {
    REAL(unlink)
    return hit("unlink", path) ? -1 : real(path);
}
int mkdir(const char *path, mode_t mode) {
    REAL(mkdir)
    return hit("mkdir", path) ? -1 : real(path, mode);
}
int chmod(const char *path, mode_t mode) {
    REAL(chmod)
    return hit("chmod", path) ? -1 : real(path, mode);
}
int stat(const char *restrict path, struct stat *restrict state) {
    REAL(stat)
    return hit("stat", path) ? -1 : real(path, state);
}
int stat64(const char *restrict path, struct stat64 *restrict state) {
    REAL(stat64)
    return hit("stat", path) ? -1 : real(path, state);
}
int lstat(const char *restrict path, struct stat *restrict state) {
    REAL(lstat)
    return hit("stat", path) ? -1 : real(path, state);
}
int lstat64(const char *restrict path, struct stat64 *restrict state) {
    REAL(lstat64)
    return hit("stat", path) ? -1 : real(path, state);
}
int statx(int folder, const char *restrict path, int flags, unsigned mask,
          struct statx *restrict state) {
    REAL(statx)
    return hit("stat", path) ? -1 : real(folder, path, flags, mask, state);
}
int access(const char *path, int how) {
    REAL(access)
    return hit("access", path) ? -1 : real(path, how);
}
