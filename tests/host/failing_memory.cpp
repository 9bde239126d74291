// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "failing_memory.h"

#include <atomic>
#include <cstddef>

// The C library's own, under the names that it keeps for those who stand in for them.
// NOLINTBEGIN(readability-identifier-naming)
extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *memory, std::size_t size);
void __libc_free(void *memory);
}
// NOLINTEND(readability-identifier-naming)

namespace {

std::atomic<int> pieces = 0;

void *counted(void *memory) {
  if (memory) ++pieces;
  return memory;
}

}  // namespace

int failing::piecesInUse() { return pieces; }

extern "C" {

void *malloc(std::size_t size) noexcept {
  return failing::mustFail(failing::kMemory) ? nullptr : counted(__libc_malloc(size));
}

void *calloc(std::size_t count, std::size_t size) noexcept {
  return failing::mustFail(failing::kMemory) ? nullptr : counted(__libc_calloc(count, size));
}

void *realloc(void *memory, std::size_t size) noexcept {
  if (failing::mustFail(failing::kMemory)) return nullptr;
  return memory ? __libc_realloc(memory, size) : counted(__libc_realloc(memory, size));
}

void free(void *memory) noexcept {
  if (memory) --pieces;
  __libc_free(memory);
}
}
