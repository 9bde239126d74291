// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// These stand in for the C library's system calls, also where another library calls them, and record what they did.
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <filesystem>
#include <string>

#include "recording.h"

namespace {

using recording::Kind;

template <typename Function>
Function *real(const char *name, Function *) {
  return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

std::string pathOf(int descriptor) {
  return std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(descriptor));
}

std::string pathIn(int folder, const char *path) {
  return path[0] == '/' || folder == AT_FDCWD ? path : pathOf(folder) + "/" + path;
}

ino_t inodeOf(int descriptor) {
  struct stat status {};
  return fstat(descriptor, &status) == 0 ? status.st_ino : 0;
}

/// Opens a folder for a moment: what happened to a name concerns the disk of its folder.
bool concernsName(const std::string &path) {
  const int folder = open(std::filesystem::path(path).parent_path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
  const bool concerns = folder >= 0 && recording::concerns(folder);
  if (folder >= 0) close(folder);
  return concerns;
}

bool isThere(const std::string &path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0;
}

ino_t inodeAt(const std::string &path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0 ? status.st_ino : 0;
}

int recordedOpen(int folder, const char *path, int flags, mode_t mode) {
  const std::string full = pathIn(folder, path);
  const bool makes = (flags & O_CREAT) != 0 && !isThere(full);
  const int opened = real("openat64", openat64)(folder, path, flags, mode);
  if (makes && opened >= 0 && recording::concerns(opened)) recording::add({Kind::file, inodeOf(opened), 0, full});
  return opened;
}

template <typename Flush>
int recordedFlush(Flush *flush, int descriptor) {
  const int result = flush(descriptor);
  if (result == 0 && recording::concerns(descriptor))
    recording::add({Kind::flush, inodeOf(descriptor), 0, pathOf(descriptor)});
  return result;
}

int recordedRemoval(const std::string &path, int result) {
  if (result == 0 && concernsName(path)) recording::add({Kind::remove, 0, 0, path});
  return result;
}

void recordData(int descriptor, off_t offset, const void *buffer, ssize_t size) {
  if (size > 0 && recording::concerns(descriptor))
    recording::add({Kind::data, inodeOf(descriptor), offset, "", "",
                    std::string(static_cast<const char *>(buffer), static_cast<std::size_t>(size))});
}

mode_t modeIn(int flags, va_list rest) { return (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0; }

}  // namespace

int openat(int folder, const char *path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = modeIn(flags, rest);
  va_end(rest);
  return recordedOpen(folder, path, flags, mode);
}

int open64(const char *path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = modeIn(flags, rest);
  va_end(rest);
  return recordedOpen(AT_FDCWD, path, flags, mode);
}

ssize_t write(int descriptor, const void *buffer, size_t size) {
  const off_t offset = lseek(descriptor, 0, SEEK_CUR);
  const ssize_t written = real("write", write)(descriptor, buffer, size);
  recordData(descriptor, offset, buffer, written);
  return written;
}

ssize_t pwrite64(int descriptor, const void *buffer, size_t size, off64_t offset) {
  const ssize_t written = real("pwrite64", pwrite64)(descriptor, buffer, size, offset);
  recordData(descriptor, offset, buffer, written);
  return written;
}

int ftruncate64(int descriptor, off64_t length) noexcept {
  const int result = real("ftruncate64", ftruncate64)(descriptor, length);
  if (result == 0 && recording::concerns(descriptor)) recording::add({Kind::length, inodeOf(descriptor), length});
  return result;
}

int fsync(int descriptor) { return recordedFlush(real("fsync", fsync), descriptor); }
int fdatasync(int descriptor) { return recordedFlush(real("fdatasync", fdatasync), descriptor); }

int mkdir(const char *path, mode_t mode) noexcept {
  const int result = real("mkdir", mkdir)(path, mode);
  if (result == 0 && concernsName(path)) recording::add({Kind::folder, inodeAt(path), 0, path});
  return result;
}

int renameat(int from_folder, const char *from, int to_folder, const char *to) noexcept {
  const int result = real("renameat", renameat)(from_folder, from, to_folder, to);
  const std::string path = pathIn(to_folder, to);
  if (result == 0 && concernsName(path))
    recording::add({Kind::rename, inodeAt(path), 0, path, pathIn(from_folder, from)});
  return result;
}

int unlinkat(int folder, const char *path, int flags) noexcept {
  return recordedRemoval(pathIn(folder, path), real("unlinkat", unlinkat)(folder, path, flags));
}

int unlink(const char *path) noexcept { return recordedRemoval(path, real("unlink", unlink)(path)); }
