// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The names of the library's functions, for tests that have to know all of them.
#pragma once

#include <set>
#include <string>

#include "journal.h"

namespace contract {

using Names = std::set<std::string>;

// The names in the library's list of exports.
Names exportedNames();

// Those of them that are called nowhere in such tests: data, and a function that ends the process.
inline const Names kNotCalled{"NVR_CGI", "error"};

// The names of the first set that the second one lacks: a difference is printed whole, a set of all names is not.
Lines lacking(const Names &names, const Names &others);

}  // namespace contract
