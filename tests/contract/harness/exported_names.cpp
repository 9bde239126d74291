// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "exported_names.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace contract {

Names exportedNames() {
  std::ifstream list(EXPORTS);
  Names names;
  std::string word;
  bool exported = false;
  while (list >> word) {
    if (word == "global:") {
      exported = true;
    } else if (word == "local:" || word.front() == '}') {
      exported = false;
    } else if (exported && word.back() == ';') {
      names.insert(word.substr(0, word.size() - 1));
    }
  }
  return names;
}

Lines lacking(const Names &names, const Names &others) {
  Lines left;
  std::set_difference(names.begin(), names.end(), others.begin(), others.end(), std::back_inserter(left));
  return left;
}

}  // namespace contract
