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

/// A hidden file in the same folder. The names are fixed, so that the next writer removes what a killed writer left.
std::string neighbourOf(const std::string &path, const char *ending) {
  std::size_t name = path.rfind('/') == std::string::npos ? 0 : path.rfind('/') + 1;
  return path.substr(0, name) + "." + path.substr(name) + ending;
}

Descriptor openUninterrupted(const std::string &path, int flags, mode_t mode = 0) {
  return Descriptor(uninterrupted([&] { return open(path.c_str(), flags | O_CLOEXEC, mode); }));
}

Descriptor openFolderOf(const std::string &path) { return openUninterrupted(folderOf(path), O_RDONLY | O_DIRECTORY); }

bool lockExclusively(const Descriptor &file) {
  return uninterrupted([&] { return flock(file.get(), LOCK_EX); }) == 0;
}

bool flush(const Descriptor &file) {
  return uninterrupted([&] { return fsync(file.get()); }) == 0;
}

/// Checks whether the file is still the one at the path, which another writer may have replaced since it was opened.
int askStillThere(const std::string &path, const Descriptor &file, bool &still_there) {
  struct stat opened {};
  struct stat found {};
  if (fstat(file.get(), &opened) != 0) return kUnreadable;
  bool any = stat(path.c_str(), &found) == 0;
  if (!any && !saysMissing(errno)) return kUnreadable;
  still_there = any && opened.st_dev == found.st_dev && opened.st_ino == found.st_ino;
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

/// Keeps owner, group and their permissions; nobody else may read the file. A writer who cannot change the owner owns
/// it from now on; if the group cannot be kept either, only the owner can read it.
bool giveAccess(const Descriptor &file, const struct stat &like) {
  constexpr auto kSameOwner = static_cast<uid_t>(-1);
  bool in_group = fchown(file.get(), like.st_uid, like.st_gid) == 0 || fchown(file.get(), kSameOwner, like.st_gid) == 0;
  return fchmod(file.get(), like.st_mode & (in_group ? kOwnersAndGroups : kOwners)) == 0;
}

/// Writes a new file and flushes it to the disk; removes it on failure.
bool writeNewFile(const std::string &path, const std::string &content, const struct stat *like) {
  unlink(path.c_str());
  Descriptor file = openUninterrupted(path, O_WRONLY | O_CREAT | O_EXCL, kOwnersOnly);
  if (!file) return false;
  bool written =
      (like ? giveAccess(file, *like) : fchmod(file.get(), kOwnersOnly) == 0) && writeAll(file, content) && flush(file);
  written = close(file.release()) == 0 && written;
  if (!written) unlink(path.c_str());
  return written;
}

/// Puts a new file at the path. Once it is there it is stored, even if its folder cannot be flushed.
int put(const std::string &path, const Descriptor &folder, const std::string &new_path, const std::string &content,
        const struct stat *like) {
  if (!writeNewFile(new_path, content, like)) return kNotStored;
  if (rename(new_path.c_str(), path.c_str()) != 0) {
    unlink(new_path.c_str());
    return kNotStored;
  }
  return flush(folder) ? kDone : kNotFlushed;
}

/// Creates the missing file with all of its content at once; with the folder's lock, one process at a time does so.
int create(const std::string &path, const std::string &content) {
  Descriptor folder = openFolderOf(path);
  if (!folder) return saysMissing(errno) ? kMissing : kNotWritable;
  if (!lockExclusively(folder)) return kNotWritable;
  if (access(path.c_str(), F_OK) == 0) return kDone;
  if (errno != ENOENT) return kNotWritable;
  return put(path, folder, neighbourOf(path, ".first"), content, nullptr) == kNotStored ? kNotWritable : kDone;
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

}  // namespace

int openForReading(const std::string &path, Descriptor &file) {
  Descriptor opened = openUninterrupted(path, O_RDONLY | O_NONBLOCK);  // a pipe in its place must not block
  if (!opened) return saysMissing(errno) ? kMissing : kUnreadable;
  file = std::move(opened);
  return kDone;
}

int openForWriting(const std::string &path, const std::string &first_content, Descriptor &file,
                   std::string &real_path) {
  for (bool still_there = false; !still_there;) {
    int result = resolve(path, real_path);
    if (result == kDone) result = openForReading(real_path, file);
    if (result == kMissing) {
      result = create(real_path, first_content);
      if (result == kDone) continue;
    }
    if (result != kDone) return result;
    // On a read-only disk the close reports the failure; until then the values can be read.
    if (access(real_path.c_str(), W_OK) != 0 && errno != EROFS) return kNotWritable;
    if (!lockExclusively(file)) return kNotWritable;
    result = askStillThere(real_path, file, still_there);
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

int replace(const std::string &path, const Descriptor &old_file, const std::string &content) {
  struct stat old {};
  if (content.size() > kLargestFile || fstat(old_file.get(), &old) != 0) return kNotStored;
  Descriptor folder = openFolderOf(path);
  return folder ? put(path, folder, neighbourOf(path, ".new"), content, &old) : kNotStored;
}

}  // namespace xmlcfg
