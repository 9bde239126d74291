// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "devices/format_listing.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "core/text.h"

namespace usbdev {
namespace {

/// Reads the rate before a blank, as strtod does; false if no blank follows. Cameras list plain decimals
/// of a few digits; for those one exact division gives the same double at a fraction of the cost.
bool readListedRate(char *text, double &rate) {
  constexpr int kLongestRate = 15;  // integers of so many digits, and their power of ten, are exact in a double
  std::int64_t digits = 0;
  std::int64_t scale = 1;
  bool fraction = false;
  const char *c = text;
  for (; c < text + kLongestRate; ++c) {
    if (*c >= '0' && *c <= '9') {
      digits = digits * 10 + (*c - '0');
      if (fraction) scale *= 10;
    } else if (*c == '.' && !fraction) {
      fraction = true;
    } else {
      break;
    }
  }
  if (*c == ' ') {
    rate = static_cast<double>(digits) / static_cast<double>(scale);
    return true;
  }
  char *const blank = std::strchr(text, ' ');
  if (blank == nullptr) return false;
  text[blank - text < kLongestRate ? blank - text : kLongestRate] = '\0';
  rate = std::strtod(text, nullptr);
  return true;
}

}  // namespace

bool FormatListing::take(char *line) {
  const Pair entry = splitPair(line, ":");
  if (!entry) return true;
  if (isSame(entry.left, "Interval")) return takeInterval(entry.right);
  if (isSame(entry.left, "Size")) {
    takeSize(entry.right);
  } else if (isSame(entry.left, "Index")) {
    takeIndex(entry.right);
  } else if (isSame(entry.left, "Pixel Format")) {
    takePixelFormat(entry.right);
  }
  return true;
}

void FormatListing::takeIndex(const char *value) {
  index_ = toInt(value);
  format_ = nullptr;
  size_ = nullptr;
}

void FormatListing::takePixelFormat(const char *value) {
  format_ = nullptr;
  // The code stands after a quote character, as in 'MJPG'.
  const char *code = value[0] == '\0' ? value : value + 1;
  if (startsWith(code, "MJPG")) {
    openFormat(Codec::mjpeg);
  } else if (startsWith(code, "YUYV") && keep_raw_) {
    openFormat(Codec::h264);
  }
}

void FormatListing::openFormat(Codec codec) {
  if (count_ == USBDEV_FORMATS) return;
  format_ = &table_[count_++];
  format_->index = index_;
  format_->codec = static_cast<int>(codec);
  size_ = nullptr;
}

void FormatListing::takeSize(char *value) {
  if (format_ == nullptr) return;
  size_ = nullptr;
  constexpr std::size_t kKindLength = sizeof "Discrete " - 1;
  if (strnlen(value, kKindLength) < kKindLength) return;
  const Pair size = splitPair(value + kKindLength, "x");
  if (!size) return;
  const int width = toInt(size.left);
  const int height = toInt(size.right);
  if (format_->res_count == USBDEV_SIZES) {
    std::fprintf(stderr, "device[%d]:%.4x support(%dx%d) over max(%d) res. list define\n", vnode_,
                 static_cast<unsigned>(format_->codec), width, height, USBDEV_SIZES);
    return;
  }
  for (int i = 0; i < format_->res_count; ++i) {
    if (format_->res[i].width == width && format_->res[i].height == height) return;
  }
  size_ = &format_->res[format_->res_count++];
  size_->width = width;
  size_->height = height;
}

bool FormatListing::takeInterval(char *value) {
  if (format_ == nullptr || size_ == nullptr) return true;
  char *const open = std::strchr(value, '(');
  if (open == nullptr) return true;
  double rate = 0;
  if (!readListedRate(open + 1, rate)) return true;
  if (size_->fps_count == USBDEV_RATES) {
    std::fprintf(stderr, "device[%d]:%.4x support(%3.2f fps) over max(%d) fps. list define\n", vnode_,
                 static_cast<unsigned>(format_->codec), rate, USBDEV_RATES);
    return true;
  }
  if (rate > 60.0) over60_ = true;
  for (int i = 0; i < size_->fps_count; ++i) {
    // Intended: A repeated rate ends the listing.
    if (static_cast<double>(size_->fps[i]) == rate) return false;
  }
  size_->fps[size_->fps_count++] = static_cast<float>(rate);
  return true;
}

}  // namespace usbdev
