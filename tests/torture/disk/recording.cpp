// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "recording.h"

#include <sys/mman.h>
#include <sys/stat.h>

#include <atomic>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <utility>

#include "private_host.h"

namespace recording {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kRoom = 1 << 22;

/// What all processes have in common.
struct Shared {
  std::atomic<std::size_t> used;
  char bytes[kRoom];
};

Shared *shared = nullptr;
dev_t device = 0;
Recording current;

struct Head {
  Kind kind;
  ino_t inode;
  off_t offset;
  std::size_t path;
  std::size_t from;
  std::size_t data;
};

Disk read(const std::string &mount_point) {
  Disk disk;
  for (const auto &entry : fs::recursive_directory_iterator(mount_point)) {
    struct stat status {};
    if (stat(entry.path().c_str(), &status) != 0) throw std::runtime_error("cannot read " + entry.path().string());
    disk.names[entry.path()] = status.st_ino;
    if (entry.is_regular_file()) disk.contents[status.st_ino] = readFile(entry.path());
  }
  return disk;
}

std::string take(const char *&from, std::size_t length) {
  std::string text(from, length);
  from += length;
  return text;
}

Operation takeOperation(const char *&from) {
  Head head{};
  std::memcpy(&head, from, sizeof head);
  from += sizeof head;
  Operation operation{head.kind, head.inode, head.offset};
  operation.path = take(from, head.path);
  operation.from = take(from, head.from);
  operation.data = take(from, head.data);
  return operation;
}

}  // namespace

void begin(const std::string &mount_point) {
  struct stat status {};
  void *memory = mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED || stat(mount_point.c_str(), &status) != 0) throw std::runtime_error("cannot record");
  current = {mount_point, read(mount_point), {}};
  device = status.st_dev;
  shared = static_cast<Shared *>(memory);
}

Recording end() {
  Recording recording = std::exchange(current, {});
  const char *next = shared->bytes;
  const char *last = next + shared->used;
  while (next < last) recording.operations.push_back(takeOperation(next));
  munmap(std::exchange(shared, nullptr), sizeof(Shared));
  return recording;
}

void noteStored(const std::string &what) {
  if (shared) add({Kind::stored, 0, 0, "", "", what});
}

bool concerns(int descriptor) {
  struct stat status {};
  return shared && fstat(descriptor, &status) == 0 && status.st_dev == device;
}

void add(const Operation &operation) {
  const Head head{operation.kind,        operation.inode,       operation.offset,
                  operation.path.size(), operation.from.size(), operation.data.size()};
  const std::string bytes = std::string(reinterpret_cast<const char *>(&head), sizeof head) + operation.path +
                            operation.from + operation.data;
  const std::size_t at = shared->used.fetch_add(bytes.size());
  if (at + bytes.size() > kRoom) throw std::runtime_error("too much to record");
  std::memcpy(shared->bytes + at, bytes.data(), bytes.size());
}

}  // namespace recording
