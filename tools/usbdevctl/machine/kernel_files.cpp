// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "machine/kernel_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <filesystem>

namespace usbdevctl {

namespace {

constexpr std::size_t kMostContent = 1U << 16U;
constexpr std::size_t kMostOfALine = 256;
constexpr char kBlanks[] = " \t\r\n";

class OpenFile {
 public:
  // A pipe in the place of a file must not keep the program waiting.
  explicit OpenFile(const std::string &path) : file_(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)) {
    struct stat status = {};
    regular_ = file_ >= 0 && fstat(file_, &status) == 0 && S_ISREG(status.st_mode);
  }
  ~OpenFile() {
    if (file_ >= 0) close(file_);
  }
  OpenFile(const OpenFile &) = delete;
  OpenFile &operator=(const OpenFile &) = delete;

  std::string content(std::size_t longest) const {
    std::string content(regular_ ? longest : 0, '\0');
    std::size_t length = 0;
    while (length < content.size()) {
      const ssize_t bytes = ::read(file_, &content[length], content.size() - length);
      if (bytes <= 0) break;
      length += static_cast<std::size_t>(bytes);
    }
    content.resize(length);
    return content;
  }

 private:
  int file_;
  bool regular_;
};

}  // namespace

bool KernelFiles::exists(const std::string &name) const { return access(path(name).c_str(), F_OK) == 0; }

std::string KernelFiles::content(const std::string &name) const { return OpenFile(path(name)).content(kMostContent); }

std::string KernelFiles::line(const std::string &name) const {
  std::string line = OpenFile(path(name)).content(kMostOfALine);
  line.resize(std::min(line.find('\n'), line.size()));
  const std::size_t begin = line.find_first_not_of(kBlanks);
  return begin == std::string::npos ? "" : line.substr(begin, line.find_last_not_of(kBlanks) + 1 - begin);
}

int KernelFiles::number(const std::string &name, int base) const {
  const std::string text = line(name);
  int number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number, base);
  return number;
}

std::vector<std::string> KernelFiles::names(const std::string &folder) const {
  std::vector<std::string> names;
  std::error_code error;
  std::filesystem::directory_iterator entries(path(folder), error);
  for (; !error && entries != std::filesystem::directory_iterator(); entries.increment(error)) {
    names.push_back(entries->path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace usbdevctl
