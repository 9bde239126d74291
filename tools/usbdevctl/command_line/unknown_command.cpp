// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "command_line/unknown_command.h"

#include <algorithm>
#include <numeric>

#include "output/printable.h"

namespace usbdevctl {

namespace {

/// How many letters have to be added, taken away or changed to make one word of the other.
std::size_t distance(const std::string &from, const std::string &to) {
  std::vector<std::size_t> row(to.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < from.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i + 1;
    for (std::size_t j = 0; j < to.size(); ++j) {
      const std::size_t changed = diagonal + (from[i] == to[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({changed, diagonal + 1, row[j] + 1});
    }
  }
  return row.back();
}

/// A command is not suggested if more than two letters of it, or more than half, are different.
std::string nearestTo(const std::string &word, const std::list<Command> &commands) {
  std::string nearest;
  std::size_t least = std::min<std::size_t>(2, word.size() / 2) + 1;
  for (const Command &command : commands) {
    const std::size_t away = distance(word, command.name());
    if (away >= least) continue;
    least = away;
    nearest = command.name();
  }
  return nearest;
}

const Command *find(const std::list<Command> &commands, const std::string &name) {
  const auto found = std::find_if(commands.begin(), commands.end(),
                                  [&name](const Command &command) { return command.name() == name; });
  return found == commands.end() ? nullptr : &*found;
}

}  // namespace

std::string unknownCommandText(const Command &program, const std::vector<std::string> &words) {
  constexpr std::size_t kLongestWord = 64;
  std::string path;
  const Command *command = &program;
  for (const std::string &word : words) {
    if (command->commands().empty() || word.empty() || word.front() == '-') return "";
    const Command *below = find(command->commands(), word);
    if (below == nullptr) {
      const std::string nearest = word.size() > kLongestWord ? "" : nearestTo(word, command->commands());
      std::string text = "no command '";
      text.append(path).append(printable(word)).append("'");
      if (!nearest.empty()) text.append("; did you mean '").append(path).append(nearest).append("'?");
      return text;
    }
    command = below;
    path.append(word).append(" ");
  }
  return "";
}

}  // namespace usbdevctl
