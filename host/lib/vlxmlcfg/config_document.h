// The content of one configuration file: a root element with sections, keys and sub-keys below it.
#pragma once

#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "readable_text.h"

namespace xmlcfg {

/// Where a value stands; the sub-key may be null.
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

  /// Takes the file's bytes; false when they are not one complete element, or when elements are deeper in it than a
  /// path leads: such a file would grow with each level's indentation when it is stored.
  bool parse(std::vector<char> bytes);

  /// Appends to the value; false where the path is missing.
  bool get(const ValuePath &path, BoundedText &value) const;

  /// Creates or replaces; false for a root other than the document's, or a name that XML cannot carry. When it throws
  /// for lack of memory, the document must not be stored.
  bool set(const ValuePath &path, const char *value);

  bool changed() const { return changed_; }
  std::string print() const;

 private:
  bool holds(const ValuePath &path, std::string_view value) const;

  std::vector<char> bytes_;  // the parsed document refers into it
  pugi::xml_document document_;
  bool changed_ = false;
};

}  // namespace xmlcfg
