// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Runs the target with every file of the given folders once, in builds without a fuzzer.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> filesIn(const char *folder) {
  std::vector<fs::path> files;
  for (const auto &entry : fs::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file()) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

void replay(const fs::path &path) {
  std::ifstream file(path, std::ios::binary);
  const std::vector<char> bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  std::printf("%s\n", path.c_str());  // the last one is that of a failure
  std::fflush(stdout);
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size());
}

}  // namespace

int main(int count, char **folders) {
  int replayed = 0;
  for (int i = 1; i < count; ++i) {
    for (const fs::path &path : filesIn(folders[i])) {
      replay(path);
      ++replayed;
    }
  }
  return replayed > 0 ? 0 : 1;
}
