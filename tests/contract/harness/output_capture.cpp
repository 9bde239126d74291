// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "output_capture.h"

#include <unistd.h>

namespace contract {

OutputCapture::OutputCapture(FILE *stream) : stream_(stream), descriptor_(fileno(stream)), file_(std::tmpfile()) {
  fflush(stream_);
  saved_ = dup(descriptor_);
  dup2(fileno(file_), descriptor_);
}

OutputCapture::~OutputCapture() {
  fflush(stream_);
  dup2(saved_, descriptor_);
  close(saved_);
  fclose(file_);
}

std::string OutputCapture::text() {
  fflush(stream_);
  std::string all;
  char part[512];
  off_t position = 0;
  ssize_t got = pread(fileno(file_), part, sizeof part, 0);
  while (got > 0) {
    all.append(part, static_cast<size_t>(got));
    position += got;
    got = pread(fileno(file_), part, sizeof part, position);
  }
  return all;
}

}  // namespace contract
