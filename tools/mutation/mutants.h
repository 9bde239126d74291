// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the mutated sources call. Each function takes the number of a mutant and what the program computes there, and
// returns that, unless the mutant is switched on.
#pragma once

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdlib>
#include <initializer_list>
#include <type_traits>

namespace mutation {

struct Mutants {
  int on = 0;                        // the number of the one that is switched on
  unsigned char *noticed = nullptr;  // a byte for each; set if it would have made a difference
};
[[gnu::visibility("hidden")]] inline Mutants mutants;

/// Reads the environment before main(), because tests replace functions of the C library later.
[[gnu::constructor(101), gnu::used]] static void load() {
  if (const char *on = std::getenv("USBDEV_MUTANT")) mutants.on = std::atoi(on);
  const char *path = std::getenv("USBDEV_NOTICED");
  if (path == nullptr || mutants.noticed != nullptr) return;
  const auto file = static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, O_RDWR | O_CLOEXEC));
  if (file < 0) return;
  const long mapped = syscall(SYS_mmap, nullptr, lseek(file, 0, SEEK_END), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  if (mapped > 0) mutants.noticed = reinterpret_cast<unsigned char *>(mapped);
  syscall(SYS_close, file);
}

inline void notice(int id) {
  if (mutants.noticed != nullptr) mutants.noticed[id] = 1;
}

/// Returns whether a mutant is on that makes a difference wherever it is reached.
inline bool on(int id) {
  notice(id);
  return mutants.on == id;
}

/// Returns the value, or that one of the others whose mutant is on; the mutants are numbered from `id`.
template <typename Value>
Value choose(int id, Value value, std::initializer_list<std::common_type_t<Value>> others) {
  for (const Value &other : others) {
    if (!(other == value)) notice(id);
    if (mutants.on == id) return other;
    ++id;
  }
  return value;
}

template <typename Condition>
bool test(int id, Condition &&condition, std::initializer_list<bool> others) {
  return choose(id, static_cast<bool>(condition), others);
}

/// The other operation may overflow, or divide by zero; it is computed even if it is not taken.
#define OPERATION(name, sign)                                                         \
  struct name {                                                                       \
    template <typename Left, typename Right>                                          \
    [[gnu::no_sanitize("undefined")]] auto operator()(Left left, Right right) const { \
      return left sign right;                                                         \
    }                                                                                 \
  };
OPERATION(Plus, +)
OPERATION(Minus, -)
OPERATION(Times, *)
OPERATION(And, &)
OPERATION(Or, |)
OPERATION(Left, <<)
OPERATION(Right, >>)
OPERATION(Less, <)
OPERATION(LessOrEqual, <=)
OPERATION(Greater, >)
OPERATION(GreaterOrEqual, >=)
OPERATION(Equal, ==)
OPERATION(NotEqual, !=)
OPERATION(Exclusive, ^)
#undef OPERATION

struct Divided {
  template <typename Left, typename Right>
  [[gnu::no_sanitize("undefined")]] auto operator()(Left left, Right right) const {
    return right == 0 ? decltype(left / right){} : left / right;
  }
};
struct Remainder {
  template <typename Left, typename Right>
  [[gnu::no_sanitize("undefined")]] auto operator()(Left left, Right right) const {
    return right == 0 ? decltype(left % right){} : left % right;
  }
};

template <typename Original, typename... Others, typename Left, typename Right>
auto binary(int id, Left left, Right right) {
  return choose(id, Original()(left, right), {Others()(left, right)...});
}

template <typename Original, typename Other, typename Variable, typename Value>
Variable &assign(int id, Variable &variable, Value value) {
  return variable = static_cast<Variable>(binary<Original, Other>(id, variable, value));
}

/// Steps forward by 1 or back by -1.
template <typename Variable>
Variable &step(int id, Variable &variable, int by) {
  return variable += on(id) ? -by : by;
}

template <typename Variable>
Variable stepAfter(int id, Variable &variable, int by) {
  Variable old = variable;
  step(id, variable, by);
  return old;
}

template <typename Condition>
bool flip(int id, Condition &&condition) {
  return on(id) != static_cast<bool>(condition);
}

template <typename Condition>
bool negated(int id, Condition &&condition) {
  return on(id) == static_cast<bool>(condition);
}

template <typename Number>
[[gnu::no_sanitize("undefined")]] auto negative(int id, Number number) {
  return choose(id, -number, {+number});
}

template <typename Number>
auto complement(int id, Number number) {
  return choose(id, ~number, {+number});
}

/// What a function returns: zero and one more for a number, null for a pointer, the first for an enumeration.
template <typename Value>
[[gnu::no_sanitize("undefined")]] Value result(int id, Value value) {
  if constexpr (std::is_arithmetic_v<Value>) {
    return choose(id, value, {Value{}, static_cast<Value>(value + 1)});
  } else {
    return choose(id, value, {Value{}});
  }
}

}  // namespace mutation
