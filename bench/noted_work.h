#pragma once

/// What the library does outside itself while an operation runs, noted so that it can be done again without the
/// library: commands, programs, and what it reads from the configuration.
#include <functional>
#include <string>
#include <vector>

namespace bench {

/// Where a value stands.
struct Path {
  std::string section, key, sub_key;
};

/// One value that is read from an open file.
struct Read {
  Path path;
  bool is_text;
  int default_value;
  int size;
};

/// One value that is written to it.
struct Write {
  Path path;
  bool is_text;
  int number;
  std::string text;
};

struct Open {
  int mode;
  std::vector<Read> reads;
  std::vector<Write> writes;
};

struct Work {
  std::vector<std::string> questions;              // popen, each once however often it was asked
  std::vector<std::string> effects;                // system
  std::vector<std::vector<std::string>> programs;  // orda_exec
  std::vector<Open> opens;
  int repeated_questions = 0;

  std::size_t commands() const { return questions.size() + effects.size() + programs.size(); }
};

Work note(const std::function<void()> &operation);

/// Runs the same commands, and opens the configuration as often, writes the same values, so that as much is stored, and
/// closes it.
void repeatCommandsAndOpens(const Work &work);

/// Opens the configuration as often, reads the same values each time, and closes it.
void repeatReads(const Work &work);

}  // namespace bench
