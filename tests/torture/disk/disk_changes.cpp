// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "disk_changes.h"

#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <stdexcept>

#include "failing.h"
#include "private_host.h"

namespace torture {

const std::string kDisk = kWorkFolder;
const std::string kFolder = kDisk + "/config";
const std::string kFile = kFolder + "/usbdev.conf";
const std::string kOthersFile = kDisk + "/others";
const char kOthersText[] = "a file of others";
const char kOthersConfiguration[] = "<velmora><ch0><exists>5</exists></ch0></velmora>";

namespace {

namespace fs = std::filesystem;

constexpr char kSize[] = "160k,nr_inodes=40";
const std::string kFilling = kDisk + "/filling";
const std::string kMoved = kDisk + "/moved";

void fillUp() {
  try {
    writeFile(kFilling, std::string(1 << 20, '-'));
  } catch (const std::runtime_error &) {
    return;
  }
}

void useUpFiles() {
  try {
    for (int number = 0;; ++number) writeFile(kFilling + std::to_string(number), "");
  } catch (const std::runtime_error &) {
    return;
  }
}

/// The kernel refuses as long as a file is open for writing: the disk becomes read-only when that is closed.
void becomeReadOnly() {
  try {
    makeReadOnly(kDisk);
  } catch (const std::runtime_error &) {
    failing::doBefore(failing::kEvery, becomeReadOnly);
  }
}

void breakDown() { failing::fail(failing::kAny, failing::kEvery, EIO); }

/// Takes a folder's place, or a file's, in one step.
void takePlace(const std::string &path, const std::function<void(const std::string &)> &make) {
  const std::string fresh = kDisk + "/fresh";
  make(fresh);
  if (fs::is_directory(fresh) || fs::is_directory(path)) fs::remove_all(path);
  fs::rename(fresh, path);
}

std::function<void()> linkAt(const std::string &path, const std::string &target) {
  return [=] { takePlace(path, [&](const std::string &fresh) { fs::create_symlink(target, fresh); }); };
}

std::function<void()> folderAt(const std::string &path) {
  return [=] { takePlace(path, [](const std::string &fresh) { makeFolder(fresh); }); };
}

/// Where no other user exists, as in the user namespace of an ordinary user, it is a file that its owner may not open.
void writeForOther(const std::string &path) {
  writeFile(path, kOthersConfiguration);
  const bool given = chown(path.c_str(), 1, 1) == 0;
  if (chmod(path.c_str(), given ? 0600 : 0) != 0) throw std::runtime_error("cannot protect " + path);
}

std::function<void()> othersFileAt(const std::string &path) {
  return [=] { takePlace(path, writeForOther); };
}

void replaceFolder() {
  fs::rename(kFolder, kMoved);
  makeFolder(kFolder);
  writeFile(kFile, kOthersConfiguration);
}

void replaceFolderByLink() {
  const std::string elsewhere = kDisk + "/elsewhere";
  makeFolder(elsewhere);
  writeFile(elsewhere + "/usbdev.conf", kOthersConfiguration);
  fs::rename(kFolder, kMoved);
  fs::create_symlink(elsewhere, kFolder);
}

std::vector<DiskChange> changesAtName(const std::string &name) {
  const std::string path = kFolder + "/" + name;
  const bool is_file = path == kFile;
  auto change = [&](const char *what, const std::function<void()> &make) {
    return DiskChange{what, make, is_file, false, name};
  };
  return {change("link to a file of others", linkAt(path, kOthersFile)),
          change("link to no file", linkAt(path, kDisk + "/none")), change("link to itself", linkAt(path, name)),
          change("folder", folderAt(path)), change("file of another owner", othersFileAt(path))};
}

}  // namespace

void insertDisk() {
  mountMemory(kDisk, kSize);
  writeFile(kOthersFile, kOthersText);
}

void repairDisk() {
  if (!fs::exists(kOthersFile)) return;
  mount(nullptr, kDisk.c_str(), nullptr, MS_REMOUNT, nullptr);
  chmod(kFolder.c_str(), 0700);
  for (const std::string &name : namesIn(kDisk))
    if (name.rfind("filling", 0) == 0) fs::remove(kDisk + "/" + name);
}

void removeDisk() {
  if (fs::exists(kOthersFile)) umount2(kDisk.c_str(), MNT_DETACH);
}

std::vector<DiskChange> diskChanges() {
  std::vector<DiskChange> changes = {
      {"is full", fillUp},
      {"has no room for another file", useUpFiles},
      {"becomes read-only", becomeReadOnly, false, true},
      {"breaks down", breakDown, false, true},
      {"is unmounted", [] { umount2(kDisk.c_str(), MNT_DETACH); }},
      {"loses the folder", [] { fs::remove_all(kFolder); }, true},
      {"has the folder under another name", [] { fs::rename(kFolder, kMoved); }},
      {"has another folder in its place", replaceFolder},
      {"has a link in the folder's place", replaceFolderByLink},
      {"forbids the folder", [] { chmod(kFolder.c_str(), 0); }, false, true},
      {"forbids the file", [] { chmod(kFile.c_str(), 0); }},
      {"loses the file", [] { fs::remove(kFile); }, true},
  };
  for (const char *name : {"usbdev.conf", ".usbdev.conf.new", ".usbdev.conf.first"})
    for (DiskChange &change : changesAtName(name)) changes.push_back(std::move(change));
  return changes;
}

}  // namespace torture
