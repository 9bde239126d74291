// What the library did to its host, in order, one line each: "open r", "close", "popen CMD", "log 0 TEXT", ...
#ifndef CONTRACT_HARNESS_JOURNAL_H
#define CONTRACT_HARNESS_JOURNAL_H

#include <initializer_list>
#include <mutex>
#include <string>
#include <vector>

namespace contract {

using Lines = std::vector<std::string>;

class Journal {
 public:
  void add(const std::string &line);
  // Something that no call of the library may ever do; the fixture reports it at the end of the test.
  void violation(const std::string &what);
  void clear();

  Lines lines() const;
  Lines violations() const;
  // The lines whose first word is one of these, in order: only({"popen", "system"}).
  Lines only(std::initializer_list<const char *> words) const;
  // The command texts given to popen and system, without that word.
  Lines commands() const;
  int count(const std::string &line) const;

 private:
  mutable std::mutex mutex_;
  Lines lines_;
  Lines violations_;
};

}  // namespace contract

#endif
