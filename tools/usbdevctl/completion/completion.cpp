// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "completion/completion.h"

#include "completion/completion_scripts.h"

namespace usbdevctl {

namespace {

struct Word {
  std::string text;
  std::string description;
};

/// Where words may stand: after a command, as one of its options, after an option, or as its N-th argument. No word
/// of a command line begins like the names of the second and the last.
struct Place {
  std::string name;
  std::vector<Word> words;
  std::string host_names = {};  // where there are any, the words are asked of the program
};

using Places = std::vector<Place>;

constexpr char kOptions[] = " #options";
constexpr char kArgument[] = " #";

std::vector<Word> valuesOf(const Argument &argument) {
  constexpr int kMostNumbers = 10;
  std::vector<Word> values;
  for (const std::string &word : argument.words) values.push_back({word, argument.help});
  if (!argument.range || argument.range->second - argument.range->first >= kMostNumbers) return values;
  for (int number = argument.range->first; number <= argument.range->second; ++number) {
    values.push_back({std::to_string(number), argument.help});
  }
  return values;
}

Places argumentPlaces(const Command &command, const std::string &path) {
  Places places = {{path + kOptions, {{"--help", "Print help and exit"}}}};
  int position = 0;
  for (const Argument &argument : command.arguments()) {
    if (argument.isOption()) places.front().words.push_back({argument.name, argument.help});
    if (argument.isFlag()) continue;
    const std::string name = argument.isOption() ? " " + argument.name : kArgument + std::to_string(++position);
    places.push_back({path + name, valuesOf(argument), argument.host_names});
  }
  return places;
}

void addPlaces(const Command &command, const std::string &path, Places &places) {
  Place commands = {path, {}};
  for (const Command &below : command.commands()) {
    if (!below.isHidden()) commands.words.push_back({below.name(), below.description()});
  }
  places.push_back(commands);
  for (Place &place : argumentPlaces(command, path)) places.push_back(std::move(place));
  for (const Command &below : command.commands()) {
    if (!below.isHidden()) addPlaces(below, path + " " + below.name(), places);
  }
}

Places placesOf(const Command &program) {
  Places places;
  addPlaces(program, program.name(), places);
  places[1].words.push_back({"--version", "Print the versions of program and library and exit"});
  return places;
}

std::string inQuotes(const std::string &text) {
  std::string result = "'";
  for (const char letter : text) result += letter == '\'' ? "'\\''" : std::string(1, letter);
  return result + "'";
}

std::string bashCase(const Place &place) {
  std::string line;
  for (const Word &word : place.words) line += (line.empty() ? "" : " ") + word.text;
  const std::string words = place.host_names.empty() ? "echo " + inQuotes(line) : "_usbdevctl_host " + place.host_names;
  return "    " + inQuotes(place.name) + ") " + words + " ;;\n";
}

std::string zshCase(const Place &place) {
  std::string list;
  for (const Word &word : place.words) list += "\n      " + inQuotes(word.text + ":" + word.description);
  const std::string words = place.host_names.empty() ? "reply=(" + list + ")" : "_usbdevctl_host " + place.host_names;
  return "    " + inQuotes(place.name) + ") " + words + " ;;\n";
}

/// In single quotes, fish has a meaning for the backslash.
std::string fishQuoted(const std::string &text) {
  std::string result = "'";
  for (const char letter : text)
    result += letter == '\'' || letter == '\\' ? std::string("\\") + letter : std::string(1, letter);
  return result + "'";
}

std::string fishCase(const Place &place) {
  std::string list;
  for (const Word &word : place.words) list += " " + fishQuoted(word.text) + " " + fishQuoted(word.description);
  std::string words = list.empty() ? "true" : "printf '%s\\t%s\\n'" + list;
  if (!place.host_names.empty()) words = "usbdevctl __words " + place.host_names + " 2>/dev/null; or true";
  return "    case " + fishQuoted(place.name) + "\n      " + words + "\n";
}

std::string cases(const Places &places, std::string (*one)(const Place &)) {
  std::string text;
  for (const Place &place : places) text += one(place);
  return text;
}

std::string filled(std::string script, const std::string &table) {
  const std::string gap = "    TABLE\n";
  return script.replace(script.find(gap), gap.size(), table);
}

}  // namespace

std::string bashCompletion(const Command &program) { return filled(kBashScript, cases(placesOf(program), bashCase)); }

std::string zshCompletion(const Command &program) { return filled(kZshScript, cases(placesOf(program), zshCase)); }

std::string fishCompletion(const Command &program) { return filled(kFishScript, cases(placesOf(program), fishCase)); }

}  // namespace usbdevctl
