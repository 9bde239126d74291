// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "config_file.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "results.h"

namespace xmlcfg {
namespace {

constexpr mode_t kOwnersOnly = 0600;       // the file contains tokens and passwords
constexpr mode_t kOwnersAndGroups = 0770;  // what a replaced file may keep of its permissions
constexpr mode_t kOwners = 0700;           // and without its group
constexpr int kMostLinks = 40;

/// Repeats a system call that a signal interrupted.
template <typename Call>
auto uninterrupted(Call call) {
  for (;;) {
    auto result = call();
    if (result >= 0 || errno != EINTR) return result;
  }
}

bool saysMissing(int error) { return error == ENOENT || error == ENOTDIR; }

std::string folderOf(const std::string &path) {
  std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

std::string nameOf(const std::string &path) { return path.substr(path.rfind('/') + 1); }

/// A hidden file in the same folder. The names are fixed, so that the next writer removes what a killed writer left.
std::string neighbourOf(const std::string &name, const char *ending) { return "." + name + ending; }

Descriptor openUninterrupted(int folder, const std::string &path, int flags, mode_t mode = 0) {
  return Descriptor(uninterrupted([&] { return openat(folder, path.c_str(), flags | O_CLOEXEC, mode); }));
}

Descriptor openFolder(int folder, const std::string &path) {
  return openUninterrupted(folder, path, O_RDONLY | O_DIRECTORY);
}

int openPlainFile(int folder, const std::string &path, Descriptor &file) {
  Descriptor opened = openUninterrupted(folder, path, O_RDONLY | O_NONBLOCK);  // a pipe in its place must not block
  if (!opened) return saysMissing(errno) ? kMissing : kUnreadable;
  file = std::move(opened);
  return kDone;
}

bool lockExclusively(const Descriptor &file) {
  return uninterrupted([&] { return flock(file.get(), LOCK_EX); }) == 0;
}

bool flush(const Descriptor &file) {
  return uninterrupted([&] { return fsync(file.get()); }) == 0;
}

/// Checks whether the file is still the one of the name, which somebody may have replaced since it was opened.
int askStillThere(const Descriptor &folder, const std::string &name, const Descriptor &file, bool &still_there) {
  struct stat opened {};
  struct stat found {};
  if (fstat(file.get(), &opened) != 0) return kUnreadable;
  bool any = fstatat(folder.get(), name.c_str(), &found, AT_SYMLINK_NOFOLLOW) == 0;
  if (!any && !saysMissing(errno)) return kUnreadable;
  still_there = opened.st_dev == found.st_dev && opened.st_ino == found.st_ino;  // a missing file has the numbers 0
  return kDone;
}

bool writeAll(const Descriptor &file, const std::string &content) {
  for (std::size_t written = 0; written < content.size();) {
    ssize_t count =
        uninterrupted([&] { return write(file.get(), content.data() + written, content.size() - written); });
    if (count <= 0) return false;
    written += static_cast<std::size_t>(count);
  }
  return true;
}

/// Neither in a user namespace that lacks the group nor by a service that may not change owners can a file be given to
/// it, but a folder can give it to its new files.
bool hasGroup(const Descriptor &file, gid_t group) {
  struct stat status {};
  return fstat(file.get(), &status) == 0 && status.st_gid == group;
}

/// Keeps owner, group and their permissions; nobody else may read the file. A writer who cannot change the owner owns
/// it from now on; if the group cannot be kept either, only the owner can read it.
bool giveAccess(const Descriptor &file, const struct stat &like) {
  constexpr auto kSameOwner = static_cast<uid_t>(-1);
  bool in_group = fchown(file.get(), like.st_uid, like.st_gid) == 0 ||
                  fchown(file.get(), kSameOwner, like.st_gid) == 0 || hasGroup(file, like.st_gid);
  return fchmod(file.get(), like.st_mode & (in_group ? kOwnersAndGroups : kOwners)) == 0;
}

bool fill(const Descriptor &file, const std::string &content, const struct stat *like) {
  bool accessible = like ? giveAccess(file, *like) : fchmod(file.get(), kOwnersOnly) == 0;
  return accessible && writeAll(file, content) && flush(file);
}

/// Writes a new file, flushes it to the disk and gives it the name. What somebody put into its place meanwhile is not
/// given the name. Returns the file, locked: until the caller has flushed the folder too, nobody may write on top of
/// what a power cut could still undo. If it fails, no file is left.
Descriptor put(const Place &place, const std::string &new_name, const std::string &content, const struct stat *like) {
  int folder = place.folder.get();
  unlinkat(folder, new_name.c_str(), 0);
  Descriptor file = openUninterrupted(folder, new_name, O_WRONLY | O_CREAT | O_EXCL, kOwnersOnly);
  if (!file) return file;
  bool still_there = false;
  bool done = lockExclusively(file) && fill(file, content, like) &&
              askStillThere(place.folder, new_name, file, still_there) == kDone && still_there &&
              renameat(folder, new_name.c_str(), folder, place.name.c_str()) == 0;
  if (done) return file;
  unlinkat(folder, new_name.c_str(), 0);
  return Descriptor();
}

/// Creates the missing file with all of its content at once; with the folder's lock, one process at a time does so.
int create(const Place &place, const std::string &content) {
  Descriptor own_folder = openFolder(place.folder.get(), ".");
  if (!lockExclusively(own_folder)) return kNotWritable;  // also if it is not open
  if (faccessat(own_folder.get(), place.name.c_str(), F_OK, 0) == 0) return kDone;
  if (errno != ENOENT) return kNotWritable;
  Descriptor locked = put(place, neighbourOf(place.name, ".first"), content, nullptr);
  if (!locked) return kNotWritable;
  flush(place.folder);
  return kDone;
}

/// Follows the path's links, also a last one that leads to no file yet: the file is replaced, and the link stays.
int resolve(std::string path, std::string &target) {
  for (int links = 0; links < kMostLinks; ++links) {
    char next[PATH_MAX];
    ssize_t length = readlink(path.c_str(), next, sizeof next);
    if (length < 0) {
      target = path;
      return errno == EINVAL || saysMissing(errno) ? kDone : kUnreadable;  // the former: not a link
    }
    std::string name(next, static_cast<std::size_t>(length));
    path = name[0] == '/' ? name : folderOf(path).append("/").append(name);
  }
  return kUnreadable;
}

int findPlace(const std::string &path, Place &place) {
  std::string target;
  int result = resolve(path, target);
  if (result != kDone) return result;
  place.name = nameOf(target);
  place.folder = openFolder(AT_FDCWD, folderOf(target));
  if (place.folder) return kDone;
  return saysMissing(errno) ? kMissing : kNotWritable;
}

}  // namespace

int openForReading(const std::string &path, Descriptor &file) { return openPlainFile(AT_FDCWD, path, file); }

int openForWriting(const std::string &path, const std::string &first_content, Descriptor &file, Place &place) {
  for (bool still_there = false; !still_there;) {
    int result = findPlace(path, place);
    if (result == kDone) result = openPlainFile(place.folder.get(), place.name, file);
    if (result == kMissing && place.folder) {
      result = create(place, first_content);
      if (result == kDone) continue;
    }
    if (result != kDone) return result;
    // On a read-only disk the close reports the failure; until then the values can be read.
    if (faccessat(place.folder.get(), place.name.c_str(), W_OK, 0) != 0 && errno != EROFS) return kNotWritable;
    if (!lockExclusively(file)) return kNotWritable;
    result = askStillThere(place.folder, place.name, file, still_there);
    if (result != kDone) return result;
  }
  return kDone;
}

int readAll(const Descriptor &file, std::vector<char> &bytes) {
  struct stat status {};
  if (fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return kUnreadable;
  if (static_cast<std::uintmax_t>(status.st_size) > kLargestFile) return kDamaged;
  std::vector<char> content(static_cast<std::size_t>(status.st_size));
  std::size_t filled = 0;
  while (filled < content.size()) {
    ssize_t count = uninterrupted([&] { return read(file.get(), content.data() + filled, content.size() - filled); });
    if (count < 0) return kUnreadable;
    if (count == 0) break;
    filled += static_cast<std::size_t>(count);
  }
  content.resize(filled);
  bytes = std::move(content);
  return kDone;
}

int replace(const Place &place, const Descriptor &old_file, const std::string &content) {
  struct stat old {};
  if (content.size() > kLargestFile || fstat(old_file.get(), &old) != 0) return kNotStored;
  Descriptor locked = put(place, neighbourOf(place.name, ".new"), content, &old);
  if (!locked) return kNotStored;
  return flush(place.folder) ? kDone : kNotFlushed;
}

}  // namespace xmlcfg
