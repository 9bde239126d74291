// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "power_cuts.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <stdexcept>
#include <utility>
#include <vector>

#include "private_host.h"
#include "thoroughness.h"

namespace torture {
namespace {

namespace fs = std::filesystem;
using recording::Disk;
using recording::Kind;
using recording::Operation;

constexpr std::size_t kMostUnits = 20;  // about a million states after one call

/// What reaches the disk whole or not at all: a change of a name, a block of data, a length.
struct Unit {
  const Operation *operation;
  off_t offset;
  std::size_t begin;  // of the operation's data
  std::size_t size;   // 0: only the length changes
};

bool changesName(const Operation &operation) { return operation.kind != Kind::data && operation.kind != Kind::length; }

std::vector<Unit> unitsOf(const Operation &operation, std::size_t block) {
  if (operation.kind == Kind::flush || operation.kind == Kind::stored) return {};
  if (operation.kind != Kind::data) return {{&operation, operation.offset, 0, 0}};
  std::vector<Unit> units;
  if (block != kWholeCalls) units.push_back({&operation, operation.offset, 0, 0});
  for (std::size_t begin = 0; begin < operation.data.size();) {
    const auto offset = operation.offset + static_cast<off_t>(begin);
    const std::size_t rest = operation.data.size() - begin;
    const std::size_t size =
        block == kWholeCalls ? rest : std::min(rest, block - static_cast<std::size_t>(offset) % block);
    units.push_back({&operation, offset, begin, size});
    begin += size;
  }
  return units;
}

/// Returns whether the flush secures what the operation did.
bool secures(const Operation &flush, const Operation &operation, Order order) {
  if (flush.kind != Kind::flush) return false;
  if (!changesName(operation)) return flush.inode == operation.inode;
  return order == Order::journal || flush.path == fs::path(operation.path).parent_path();
}

void changeLength(std::string &content, const Unit &unit) {
  if (unit.operation->kind == Kind::length)
    content.resize(static_cast<std::size_t>(unit.offset));
  else
    content.resize(std::max(content.size(), static_cast<std::size_t>(unit.offset) + unit.operation->data.size()));
}

void writeBlock(std::string &content, const Unit &unit) {
  const auto offset = static_cast<std::size_t>(unit.offset);
  content.resize(std::max(content.size(), offset + unit.size));
  content.replace(offset, unit.size, unit.operation->data, unit.begin, unit.size);
}

void apply(const Unit &unit, Disk &disk) {
  const Operation &operation = *unit.operation;
  if (!changesName(operation)) {
    std::string &content = disk.contents[operation.inode];
    unit.size == 0 ? changeLength(content, unit) : writeBlock(content, unit);
    return;
  }
  disk.names.erase(operation.from);
  disk.names.erase(operation.path);
  if (operation.kind == Kind::remove) return;
  disk.names[operation.path] = operation.inode;
  if (operation.kind != Kind::folder) disk.contents[operation.inode];
}

bool isReachable(const fs::path &path, const Disk &disk, const std::string &mount_point) {
  const fs::path folder = path.parent_path();
  return folder == mount_point || (disk.names.count(folder) != 0 && isReachable(folder, disk, mount_point));
}

Files filesOf(const Disk &disk, const std::string &mount_point) {
  Files files;
  for (const auto &[path, inode] : disk.names) {
    if (!isReachable(path, disk, mount_point)) continue;
    const auto content = disk.contents.find(inode);
    if (content == disk.contents.end())
      files[path + "/"];
    else
      files[path] = content->second;
  }
  return files;
}

/// The units before a cut, in their order, and which of them are not secured.
struct History {
  std::vector<Unit> units;
  std::vector<std::size_t> open;
};

History historyBefore(std::size_t cut, const std::vector<Operation> &operations, Order order, std::size_t block) {
  History history;
  for (std::size_t number = 0; number < cut; ++number) {
    const Operation &operation = operations[number];
    const bool secured = std::any_of(operations.begin() + static_cast<std::ptrdiff_t>(number),
                                     operations.begin() + static_cast<std::ptrdiff_t>(cut),
                                     [&](const Operation &later) { return secures(later, operation, order); });
    for (const Unit &unit : unitsOf(operation, block)) {
      if (!secured) history.open.push_back(history.units.size());
      history.units.push_back(unit);
    }
  }
  if (history.open.size() > kMostUnits) throw std::runtime_error("too many states");
  return history;
}

/// A journal has no change of a name without those before it.
bool mayBe(const std::vector<bool> &lost, const History &history, Order order) {
  bool name_lost = false;
  for (std::size_t open : history.open) {
    if (order != Order::journal || !changesName(*history.units[open].operation)) continue;
    if (name_lost && !lost[open]) return false;
    name_lost = name_lost || lost[open];
  }
  return true;
}

Disk diskWithout(const std::vector<bool> &lost, const History &history, const Disk &before) {
  Disk disk = before;
  for (std::size_t number = 0; number < history.units.size(); ++number)
    if (!lost[number]) apply(history.units[number], disk);
  return disk;
}

std::vector<std::string> storedBefore(std::size_t cut, const std::vector<Operation> &operations) {
  std::vector<std::string> stored;
  for (std::size_t number = 0; number < cut; ++number)
    if (operations[number].kind == Kind::stored) stored.push_back(operations[number].data);
  return stored;
}

}  // namespace

int forEachCut(const recording::Recording &recording, Order order, std::size_t block,
               const std::function<void(const Cut &)> &judge) {
  std::set<std::pair<std::vector<std::string>, Files>> judged;
  for (std::size_t cut = 0; cut <= recording.operations.size(); ++cut) {
    const History history = historyBefore(cut, recording.operations, order, block);
    const std::vector<std::string> stored = storedBefore(cut, recording.operations);
    for (std::size_t choice = 0; choice < std::size_t{1} << history.open.size(); ++choice) {
      std::vector<bool> lost(history.units.size());
      for (std::size_t bit = 0; bit < history.open.size(); ++bit) lost[history.open[bit]] = (choice >> bit & 1) != 0;
      if (!mayBe(lost, history, order)) continue;
      Files files = filesOf(diskWithout(lost, history, recording.before), recording.mount_point);
      if (judged.emplace(stored, files).second) judge({std::move(files), cut, stored});
    }
  }
  return static_cast<int>(judged.size());
}

void reportCuts(const std::string &during, const recording::Recording &recording, std::size_t block, int weakest) {
  const int journal = forEachCut(recording, Order::journal, block, [](const Cut &) {});
  report("disk: power cuts, " + during + ": " + std::to_string(recording.operations.size()) + " operations, " +
         std::to_string(weakest) + " states, " + std::to_string(journal) + " of them in the order of a journal");
}

recording::Recording withoutFlushOf(const std::string &path, recording::Recording recording) {
  auto &operations = recording.operations;
  operations.erase(std::remove_if(operations.begin(), operations.end(),
                                  [&](const Operation &operation) {
                                    return operation.kind == Kind::flush && operation.path == path;
                                  }),
                   operations.end());
  return recording;
}

Files filesAfter(const recording::Recording &recording, std::size_t operations) {
  const History history = historyBefore(operations, recording.operations, Order::weakest, kWholeCalls);
  return filesOf(diskWithout(std::vector<bool>(history.units.size()), history, recording.before),
                 recording.mount_point);
}

void materialise(const std::string &folder, const Files &files) {
  for (const auto &entry : fs::directory_iterator(folder)) fs::remove_all(entry.path());
  for (const auto &[path, content] : files)
    if (path.back() == '/')
      makeFolder(path);
    else
      writeFile(path, content);
}

}  // namespace torture
