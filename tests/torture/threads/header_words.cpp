// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "header_words.h"

#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>

namespace torture {

namespace {

std::string read(const std::filesystem::path &path) {
  std::ostringstream content;
  content << std::ifstream(path).rdbuf();
  return content.str();
}

/// Without line ends and the stars at the beginning of lines.
std::string asOneLine(const std::string &comment) {
  static const std::regex line_end("\\n \\*");
  static const std::regex spaces("\\s+");
  return std::regex_replace(std::regex_replace(comment, line_end, " "), spaces, " ");
}

/// The name in front of the first parenthesis, if the text up to there declares a function.
std::string declaredName(const std::string &code) {
  static const std::regex declaration("^\\s*[a-z][\\w ]*[ *](\\w+)\\(");
  std::smatch found;
  return std::regex_search(code, found, declaration) ? found[1].str() : "";
}

bool says(const std::string &text, const std::string &what) {
  return std::regex_search(text, std::regex(what, std::regex::icase));
}

void gather(const std::string &header, std::map<std::string, Words> &all) {
  std::string heading;
  for (std::size_t begin = header.find("/*"); begin != std::string::npos; begin = header.find("/*", begin)) {
    const std::size_t end = header.find("*/", begin);
    const std::string comment = asOneLine(header.substr(begin, end - begin));
    begin = end + 2;
    const std::string name = declaredName(header.substr(begin, header.find("/*", begin) - begin));
    if (comment.rfind("/** @name ", 0) == 0) heading = comment;
    if (!name.empty()) all[name] = {heading, comment};
  }
}

}  // namespace

std::map<std::string, Words> functionWords() {
  std::map<std::string, Words> all;
  for (const auto &header : std::filesystem::directory_iterator(HEADERS))
    if (header.path().extension() == ".h") gather(read(header.path()), all);
  return all;
}

std::set<std::string> namesBetween(const std::string &begin, const std::string &end) {
  const std::string text = asOneLine(read(std::filesystem::path(HEADERS) / "usbdev.h"));
  const std::size_t from = text.find(begin) + begin.size();
  const std::string list = text.substr(from, text.find(end, from) - from);
  const std::regex name("\\w+_\\w+");
  std::set<std::string> names;
  for (std::sregex_iterator it(list.begin(), list.end(), name); it != std::sregex_iterator(); ++it)
    names.insert(it->str());
  return names;
}

bool takesLock(const Words &words) {
  const std::string takes = "takes? the lock";
  const std::string takes_none = "takes? no lock";
  if (says(words.comment, takes) || says(words.comment, takes_none)) return says(words.comment, takes);
  return says(words.heading, takes);
}

}  // namespace torture
