// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "fake_config.h"

#include <algorithm>

namespace contract {

FakeConfig::Values &FakeConfig::SharedValues::own() {
  if (values_.use_count() > 1) values_ = std::make_shared<Values>(*values_);
  return *values_;
}

void FakeConfig::set(const std::string &path, const std::string &value) {
  std::lock_guard<std::mutex> guard(mutex_);
  files_[kChannelFile].own()[path] = value;
}

void FakeConfig::erase(const std::string &path) {
  std::lock_guard<std::mutex> guard(mutex_);
  files_[kChannelFile].own().erase(path);
}

bool FakeConfig::has(const std::string &path) const { return values().count(path) != 0; }

std::string FakeConfig::text(const std::string &path) const {
  const Values all = values();
  const auto found = all.find(path);
  return found == all.end() ? "" : found->second;
}

FakeConfig::Values FakeConfig::values(const std::string &file) const {
  std::lock_guard<std::mutex> guard(mutex_);
  const auto found = files_.find(file);
  return found == files_.end() ? Values() : found->second.get();
}

Lines FakeConfig::writes() const {
  std::lock_guard<std::mutex> guard(mutex_);
  return writes_;
}

int FakeConfig::reads() const {
  std::lock_guard<std::mutex> guard(mutex_);
  return reads_;
}

void FakeConfig::failOpenNumber(int number, int code) {
  failing_open_ = number;
  failing_open_result_ = code;
}

void FakeConfig::failWriteCloseNumber(int number, int code) {
  failing_write_close_ = number;
  failing_write_close_result_ = code;
}

void FakeConfig::failNothing() {
  failReadOpens(1);
  failWriteOpens(1);
  failOpenNumber(0, 1);
  failWriteCloseNumber(0, 1);
  failReadCloses(1);
}

int FakeConfig::openHandles() const {
  std::lock_guard<std::mutex> guard(mutex_);
  return countOpen();
}

bool FakeConfig::openInThisThread() const {
  std::lock_guard<std::mutex> guard(mutex_);
  return std::any_of(handles_.begin(), handles_.end(),
                     [](const auto &handle) { return handle->opener == std::this_thread::get_id(); });
}

int FakeConfig::countOpen() const {
  return static_cast<int>(
      std::count_if(handles_.begin(), handles_.end(), [](const auto &handle) { return !handle->of_caller; }));
}

void FakeConfig::beforeOpenNumber(int number, std::function<void()> effect) {
  std::lock_guard<std::mutex> guard(mutex_);
  awaited_open_ = number;
  before_open_ = std::move(effect);
}

std::function<void()> FakeConfig::dueEffect() {
  std::lock_guard<std::mutex> guard(mutex_);
  return awaited_open_ > 0 && --awaited_open_ == 0 ? std::move(before_open_) : nullptr;
}

int FakeConfig::openResult(int mode) {
  if (failing_open_ > 0 && --failing_open_ == 0) return failing_open_result_;
  return mode == 0 ? read_open_result_ : write_open_result_;
}

int FakeConfig::closeResult(bool writing) {
  if (!writing) return read_close_result_;
  return failing_write_close_ > 0 && --failing_write_close_ == 0 ? failing_write_close_result_ : 1;
}

// A lock that is not held across the call lets another thread in here.
void FakeConfig::letOthersIn() const {
  if (many_threads_) std::this_thread::yield();
}

int FakeConfig::open(int mode, const char *file, void **handle) {
  letOthersIn();
  if (const auto effect = dueEffect()) effect();
  if (mode != 0 && mode != 1) journal_.violation("configuration opened with mode " + std::to_string(mode));
  std::lock_guard<std::mutex> guard(mutex_);
  if (countOpen() != 0) journal_.violation("configuration opened while a handle is open");
  const int result = openResult(mode);
  const std::string name =
      std::string(mode == 1 ? "open w" : "open r") + (std::string(file) == kChannelFile ? "" : " " + std::string(file));
  if (result != 1) {
    journal_.add(name + " failed");
    *handle = reinterpret_cast<void *>(0x10);  // a handle that nobody may use
    return result;
  }
  journal_.add(name);
  *handle = handleFor(mode, file, false);
  return 1;
}

void *FakeConfig::openForCaller() {
  std::lock_guard<std::mutex> guard(mutex_);
  return handleFor(0, kChannelFile, true);
}

void *FakeConfig::handleFor(int mode, const std::string &file, bool of_caller) {
  handles_.push_back(std::make_unique<Handle>());
  Handle &opened = *handles_.back();
  opened.file = file;
  opened.writing = mode == 1;
  opened.of_caller = of_caller;
  opened.opener = std::this_thread::get_id();
  opened.pending = files_[file];
  return &opened;
}

FakeConfig::Handle *FakeConfig::checked(void *handle, const char *operation) {
  for (const auto &known : handles_) {
    if (known.get() == handle) return known.get();
  }
  journal_.violation(std::string("configuration ") + operation + " without an open handle");
  return nullptr;
}

bool FakeConfig::isWriting(void *handle) const {
  std::lock_guard<std::mutex> guard(mutex_);
  return std::any_of(handles_.begin(), handles_.end(),
                     [handle](const auto &known) { return known.get() == handle && known->writing; });
}

int FakeConfig::close(void *handle, int flag) {
  letOthersIn();
  std::lock_guard<std::mutex> guard(mutex_);
  if (flag != 0) journal_.violation("configuration closed with flag " + std::to_string(flag));
  Handle *opened = checked(handle, "close");
  if (opened == nullptr) return 0;
  const int result = closeResult(opened->writing);
  journal_.add(result < 0 ? "close failed" : "close");
  if (opened->writing && result >= 0) files_[opened->file] = opened->pending;
  opened->pending = SharedValues();
  const auto place =
      std::find_if(handles_.begin(), handles_.end(), [opened](const auto &known) { return known.get() == opened; });
  closed_.push_back(std::move(*place));
  handles_.erase(place);
  return result;
}

bool FakeConfig::read(void *handle, const std::string &path, std::string &value) {
  std::lock_guard<std::mutex> guard(mutex_);
  const Handle *opened = checked(handle, "read");
  if (opened == nullptr) return false;
  ++reads_;
  const auto found = opened->pending.get().find(path);
  if (found == opened->pending.get().end()) return false;
  value = found->second;
  return true;
}

int FakeConfig::write(void *handle, const std::string &path, const std::string &value) {
  std::lock_guard<std::mutex> guard(mutex_);
  Handle *opened = checked(handle, "write");
  if (opened == nullptr || refused_.count(path) != 0) return 0;
  if (!opened->writing) journal_.violation("configuration written through a read handle: " + path);
  opened->pending.own()[path] = value;
  writes_.push_back(path + "=" + value);
  return 1;
}

}  // namespace contract
