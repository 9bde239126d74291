// These stand in for the C library's system calls, also where another library calls them.
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>

#include "failing.h"

namespace {

constexpr bool kWaits = true;

template <typename Function>
Function *real(const char *name, Function *) {
  return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

}  // namespace

int openat(int folder, const char *path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  return failing::mustFail("openat", kWaits) ? -1 : real("openat", openat)(folder, path, flags, mode);
}

ssize_t read(int descriptor, void *buffer, size_t size) {
  return failing::mustFail("read", kWaits) ? -1 : real("read", read)(descriptor, buffer, size);
}

/// Writes a part in a test, as a disk may that is nearly full.
ssize_t write(int descriptor, const void *buffer, size_t size) {
  const size_t part = failing::isOn() && size > 8192 ? size / 2 : size;
  return failing::mustFail("write", kWaits) ? -1 : real("write", write)(descriptor, buffer, part);
}

int flock(int descriptor, int operation) noexcept {
  return failing::mustFail("flock", kWaits) ? -1 : real("flock", flock)(descriptor, operation);
}

int fsync(int descriptor) { return failing::mustFail("fsync", kWaits) ? -1 : real("fsync", fsync)(descriptor); }

/// The descriptor is gone, whatever the result.
int close(int descriptor) {
  const int result = real("close", close)(descriptor);
  return failing::mustFail("close") ? -1 : result;
}

int fstat(int descriptor, struct stat *status) noexcept {
  return failing::mustFail("fstat") ? -1 : real("fstat", fstat)(descriptor, status);
}

int fstatat(int folder, const char *path, struct stat *status, int flags) noexcept {
  return failing::mustFail("fstatat") ? -1 : real("fstatat", fstatat)(folder, path, status, flags);
}

int faccessat(int folder, const char *path, int mode, int flags) noexcept {
  return failing::mustFail("faccessat") ? -1 : real("faccessat", faccessat)(folder, path, mode, flags);
}

int fchown(int descriptor, uid_t owner, gid_t group) noexcept {
  return failing::mustFail("fchown") ? -1 : real("fchown", fchown)(descriptor, owner, group);
}

int fchmod(int descriptor, mode_t mode) noexcept {
  return failing::mustFail("fchmod") ? -1 : real("fchmod", fchmod)(descriptor, mode);
}

ssize_t readlink(const char *path, char *buffer, size_t size) noexcept {
  return failing::mustFail("readlink") ? -1 : real("readlink", readlink)(path, buffer, size);
}

int renameat(int from_folder, const char *from, int to_folder, const char *to) noexcept {
  return failing::mustFail("renameat") ? -1 : real("renameat", renameat)(from_folder, from, to_folder, to);
}

int unlinkat(int folder, const char *path, int flags) noexcept {
  return failing::mustFail("unlinkat") ? -1 : real("unlinkat", unlinkat)(folder, path, flags);
}
