// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "config_document.h"

#include <algorithm>
#include <new>
#include <utility>

namespace xmlcfg {
namespace {

// Comments are kept for the people who wrote them; parsing a fragment also finds stray text after the root element.
constexpr unsigned kParsing =
    pugi::parse_escapes | pugi::parse_cdata | pugi::parse_eol | pugi::parse_comments | pugi::parse_fragment;

constexpr int kDepthOfSubKey = 3;  // that of the root is 0

bool isOneElement(const pugi::xml_document &document) {
  int elements = 0;
  for (const auto &node : document) {
    if (node.type() == pugi::node_element)
      ++elements;
    else if (node.type() != pugi::node_comment)
      return false;
  }
  return elements == 1;
}

/// Checks that no node is deeper than a sub-key's text.
struct DepthCheck : pugi::xml_tree_walker {
  bool for_each(pugi::xml_node &node) override {
    return node.type() != pugi::node_element || depth() <= kDepthOfSubKey;
  }
};

bool isXmlName(std::string_view name) {
  auto is_letter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; };
  auto is_inner = [&](char c) { return is_letter(c) || (c >= '0' && c <= '9') || c == '-' || c == '.'; };
  return !name.empty() && is_letter(name.front()) && std::all_of(name.begin(), name.end(), is_inner);
}

pugi::xml_node find(const pugi::xml_document &document, const ValuePath &path) {
  pugi::xml_node key = document.child(path.root).child(path.section).child(path.key);
  return path.sub_key ? key.child(path.sub_key) : key;
}

/// Returns an empty node if memory runs out, or if the parent is empty.
pugi::xml_node findOrCreate(pugi::xml_node parent, const char *name) {
  pugi::xml_node child = parent.child(name);
  return child ? child : parent.append_child(name);
}

struct StringWriter : pugi::xml_writer {
  std::string text;
  void write(const void *data, std::size_t size) override { text.append(static_cast<const char *>(data), size); }
};

}  // namespace

bool ConfigDocument::parse(std::vector<char> bytes) {
  bytes_ = std::move(bytes);
  if (std::find(bytes_.begin(), bytes_.end(), '\0') != bytes_.end()) return false;
  auto result = document_.load_buffer_inplace(bytes_.data(), bytes_.size(), kParsing, pugi::encoding_utf8);
  if (result.status == pugi::status_out_of_memory) throw std::bad_alloc();
  DepthCheck depth_check;
  return result && isOneElement(document_) && document_.traverse(depth_check);
}

/// A value is all text directly inside its element, which comments may divide.
bool ConfigDocument::get(const ValuePath &path, BoundedText &value) const {
  pugi::xml_node element = find(document_, path);
  for (const auto &piece : element)
    if (piece.type() == pugi::node_pcdata || piece.type() == pugi::node_cdata) appendFromReadable(piece.value(), value);
  return element;
}

bool ConfigDocument::holds(const ValuePath &path, std::string_view value) const {
  std::string bytes(value.size(), '\0');
  BoundedText held(bytes.data(), bytes.size());
  return get(path, held) && held.length == value.size() && bytes == value;
}

bool ConfigDocument::set(const ValuePath &path, const char *value) {
  pugi::xml_node root = document_.child(path.root);
  if (!root || !isXmlName(path.section) || !isXmlName(path.key)) return false;
  if (path.sub_key && !isXmlName(path.sub_key)) return false;

  if (holds(path, value)) return true;
  pugi::xml_node element = findOrCreate(findOrCreate(root, path.section), path.key);
  if (path.sub_key) element = findOrCreate(element, path.sub_key);
  element.remove_children();
  changed_ = true;
  if (!element.append_child(pugi::node_pcdata).set_value(toReadable(value).c_str())) throw std::bad_alloc();
  return true;
}

std::string ConfigDocument::print() const {
  StringWriter writer;
  document_.save(writer, "  ", pugi::format_indent, pugi::encoding_utf8);
  return std::move(writer.text);
}

}  // namespace xmlcfg
