// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The XML configuration files: whatever stands in one, and whatever is stored in it.
#include <cstring>
#include <string>
#include <vector>

#include "expect.h"
#include "host/lib/vlxmlcfg/config_document.h"
#include "input.h"

namespace {

using fuzz::expect;
using xmlcfg::BoundedText;
using xmlcfg::ConfigDocument;
using xmlcfg::ValuePath;

constexpr ValuePath kValues[] = {{"velmora", "ch0", "devname", nullptr},
                                 {"velmora", "ch0", "video", "vnode"},
                                 {"velmora", "ch9", "sharelink", "token"}};

std::vector<char> bytesOf(const std::string &text) { return {text.begin(), text.end()}; }

/// The value, or a text that no value is where the path is missing.
std::string valueOf(const ConfigDocument &document, const ValuePath &path) {
  std::string bytes(1 << 16, '\0');
  BoundedText value(bytes.data(), bytes.size());
  return document.get(path, value) ? bytes.substr(0, value.length) : std::string(1, '\0');
}

void expectCut(const ConfigDocument &document, const ValuePath &path, std::size_t size) {
  std::vector<char> small(size + 1, '!');
  BoundedText value(small.data(), size);
  if (!document.get(path, value)) return;
  expect(small[size] == '!', "a value stays within its buffer");
  const std::string whole = valueOf(document, path);
  expect(value.length == whole.size(), "the length of a value is that of all of it");
  expect(std::memcmp(small.data(), whole.data(), std::min(size, whole.size())) == 0, "a value is cut to its buffer");
}

/// A document that was stored is read as it was. An element that looks empty may move to a line of its own, once.
void expectStored(const ConfigDocument &document) {
  ConfigDocument again;
  expect(again.parse(bytesOf(document.print())), "what is stored can be read");
  ConfigDocument third;
  expect(third.parse(bytesOf(again.print())), "what is stored twice can be read");
  expect(third.print() == again.print(), "what is stored twice stays the same");
  for (const ValuePath &path : kValues) {
    expect(valueOf(again, path) == valueOf(document, path), "what is stored has the same values");
  }
}

void expectReadable(const std::string &value) {
  const std::string text = xmlcfg::toReadable(value);
  std::string bytes(value.size(), '\0');
  BoundedText read(bytes.data(), bytes.size());
  xmlcfg::appendFromReadable(text, read);
  expect(read.length == value.size() && bytes == value, "a readable text gives back its value");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  fuzz::Input input(data, size);
  const ValuePath &path = kValues[input.number(3)];
  const auto cut = static_cast<std::size_t>(input.number(64));
  const std::string text = input.text();
  const std::string value = input.text().c_str();
  const std::string name = input.text().c_str();
  expectReadable(value);

  ConfigDocument document;
  if (!document.parse(bytesOf(text))) return 0;
  for (const ValuePath &each : kValues) expectCut(document, each, cut);
  expectStored(document);
  if (!document.set(path, value.c_str())) return 0;
  expect(valueOf(document, path) == value, "a value that was set is read");
  expectStored(document);
  if (document.set({path.root, name.c_str(), path.key, path.sub_key}, value.c_str())) expectStored(document);
  return 0;
}
