#include "config_file.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstdlib>
#include <memory>

#include "results.h"

namespace xmlcfg {

namespace {

constexpr mode_t kPermissionsOfNewFile = 0644;

std::string folder_of(const std::string &path) {
  std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

/* A hidden file beside it. The names are fixed, so that what a killed writer leaves behind the next one takes away. */
std::string neighbour_of(const std::string &path, const char *ending) {
  std::size_t name = path.rfind('/') == std::string::npos ? 0 : path.rfind('/') + 1;
  return path.substr(0, name) + "." + path.substr(name) + ending;
}

bool lock_exclusively(int descriptor) {
  while (flock(descriptor, LOCK_EX) != 0)
    if (errno != EINTR) return false;
  return true;
}

/* False when another writer has replaced the file since it was opened. */
bool is_still_at(const std::string &path, const Descriptor &file) {
  struct stat opened {};
  struct stat found {};
  return fstat(file.get(), &opened) == 0 && stat(path.c_str(), &found) == 0 && opened.st_dev == found.st_dev &&
         opened.st_ino == found.st_ino;
}

bool write_all(int descriptor, const std::string &content) {
  for (std::size_t written = 0; written < content.size();) {
    ssize_t count = write(descriptor, content.data() + written, content.size() - written);
    if (count < 0 && errno != EINTR) return false;
    if (count > 0) written += static_cast<std::size_t>(count);
  }
  return true;
}

/* A new file with the content on the disk; leaves none on failure. */
bool write_new_file(const std::string &path, const std::string &content, const struct stat *like) {
  unlink(path.c_str());
  Descriptor file(
      open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, like ? S_IRUSR | S_IWUSR : kPermissionsOfNewFile));
  if (!file) return false;
  if (like && (like->st_uid != geteuid() || like->st_gid != getegid())) {
    /* A writer who may not give files away owns the file from now on. */
    [[maybe_unused]] int kept = fchown(file.get(), like->st_uid, like->st_gid);
  }
  bool written = (!like || fchmod(file.get(), like->st_mode & 07777) == 0) && write_all(file.get(), content) &&
                 fsync(file.get()) == 0;
  written = close(file.release()) == 0 && written;
  if (!written) unlink(path.c_str());
  return written;
}

bool flush_folder(const std::string &folder) {
  Descriptor opened(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  return opened && fsync(opened.get()) == 0;
}

bool move_into_place(const std::string &new_path, const std::string &path) {
  if (rename(new_path.c_str(), path.c_str()) == 0) return true;
  unlink(new_path.c_str());
  return false;
}

/* Makes the missing file, complete from its first moment on; the folder's lock lets one creator in at a time. */
int create(const std::string &path, const std::string &content) {
  std::string folder = folder_of(path);
  Descriptor guard(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!guard) return kMissing;
  if (!lock_exclusively(guard.get())) return kNotWritable;
  if (access(path.c_str(), F_OK) == 0) return kDone;
  std::string new_path = neighbour_of(path, ".first");
  bool created = write_new_file(new_path, content, nullptr) && move_into_place(new_path, path) && flush_folder(folder);
  return created ? kDone : kNotWritable;
}

/* The file behind all links; where they lead nowhere, the path itself. */
std::string resolve(const char *path) {
  std::unique_ptr<char, decltype(&free)> resolved(realpath(path, nullptr), &free);
  return resolved ? resolved.get() : path;
}

}  // namespace

int open_for_reading(const char *path, Descriptor &file) {
  Descriptor opened(open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK));  // a pipe in its place must not block
  if (!opened) return errno == ENOENT || errno == ENOTDIR ? kMissing : kUnreadable;
  file = std::move(opened);
  return kDone;
}

int open_for_writing(const char *path, const std::string &first_content, Descriptor &file, std::string &real_path) {
  for (;;) {
    std::string target = resolve(path);
    Descriptor opened;
    int result = open_for_reading(target.c_str(), opened);
    if (result == kMissing) {
      result = create(target, first_content);
      if (result != kDone) return result;
      continue;
    }
    if (result != kDone) return result;
    /* On a disk that is read-only as a whole the close tells; until then the values can be read. */
    if (access(target.c_str(), W_OK) != 0 && errno != EROFS) return kNotWritable;
    if (!lock_exclusively(opened.get())) return kNotWritable;
    if (!is_still_at(target, opened)) continue;
    file = std::move(opened);
    real_path = target;
    return kDone;
  }
}

int read_all(const Descriptor &file, std::vector<char> &bytes) {
  struct stat status {};
  if (fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return kUnreadable;
  std::vector<char> content(static_cast<std::size_t>(status.st_size));
  std::size_t filled = 0;
  while (filled < content.size()) {
    ssize_t count = read(file.get(), content.data() + filled, content.size() - filled);
    if (count < 0 && errno == EINTR) continue;
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
  if (fstat(old_file.get(), &old) != 0) return kNotStored;
  std::string new_path = neighbour_of(path, ".new");
  bool replaced =
      write_new_file(new_path, content, &old) && move_into_place(new_path, path) && flush_folder(folder_of(path));
  return replaced ? kDone : kNotStored;
}

}  // namespace xmlcfg
