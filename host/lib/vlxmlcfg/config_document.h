// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The content of one configuration file: a root element with sections, keys and sub-keys below it.
#pragma once

#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "readable_text.h"

namespace xmlcfg {

/// The path of a value; the sub-key may be null.
struct ValuePath {
  const char *root;
  const char *section;
  const char *key;
  const char *sub_key;
};

class ConfigDocument {
 public:
  ConfigDocument() = default;
  ConfigDocument(const ConfigDocument &) = delete;
  ConfigDocument &operator=(const ConfigDocument &) = delete;
  ConfigDocument(ConfigDocument &&) = delete;
  ConfigDocument &operator=(ConfigDocument &&) = delete;
  ~ConfigDocument() = default;

  /// Parses the file's bytes; false when they are not one complete element, or when elements are deeper than a
  /// sub-key, because such a file would grow with the indentation of each level when it is stored.
  bool parse(std::vector<char> bytes);

  /// Appends to the value; false where the path is missing.
  bool get(const ValuePath &path, BoundedText &value) const;

  /// Creates or replaces a value; false for another root than the document's, or a name that XML cannot contain. If it
  /// throws because there is no memory, the document must not be stored.
  bool set(const ValuePath &path, const char *value);

  bool changed() const { return changed_; }
  std::string print() const;

 private:
  bool holds(const ValuePath &path, std::string_view value) const;

  std::vector<char> bytes_;  // the parsed document points into it
  pugi::xml_document document_;
  bool changed_ = false;
};

}  // namespace xmlcfg
