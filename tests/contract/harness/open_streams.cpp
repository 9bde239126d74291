// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "open_streams.h"

#include "real_function.h"

namespace contract {

namespace {

int closeReally(FILE *stream) {
  static auto *const real = realFunction<int(FILE *)>("fclose");
  return real(stream);
}

}  // namespace

OpenStreams::~OpenStreams() {
  for (auto &entry : streams_) closeReally(entry.first);
}

FILE *OpenStreams::open(const std::string &name, const std::string &content) {
  auto kept = std::make_unique<std::string>(content);
  FILE *stream = fmemopen(kept->data(), kept->size(), "r");
  std::lock_guard<std::mutex> guard(mutex_);
  streams_[stream] = Stream{name, std::move(kept)};
  return stream;
}

std::string OpenStreams::nameOf(FILE *stream) const {
  std::lock_guard<std::mutex> guard(mutex_);
  const auto entry = streams_.find(stream);
  return entry == streams_.end() ? "" : entry->second.name;
}

std::string OpenStreams::close(FILE *stream) {
  std::lock_guard<std::mutex> guard(mutex_);
  const auto entry = streams_.find(stream);
  std::string name = entry->second.name;
  closeReally(stream);
  streams_.erase(entry);
  return name;
}

Lines OpenStreams::names() const {
  std::lock_guard<std::mutex> guard(mutex_);
  Lines all;
  for (const auto &entry : streams_) all.push_back(entry.second.name);
  return all;
}

}  // namespace contract
