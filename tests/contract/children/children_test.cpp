// How many child processes each exported function starts: as many as it must, and no more; and the table that says so.
#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>

#include "situations.h"

// No counters are made or read in the host's memory here.
extern "C" {
int shmget(key_t, size_t, int) noexcept { return 1; }
void *shmat(int, const void *, int) noexcept {
  static unsigned counters[4];
  return counters;
}
int shmdt(const void *) noexcept { return 0; }
}

namespace contract {
namespace {

// Data, and a function that ends the process.
const std::set<std::string> kNotCalled{"NVR_CGI", "error"};

const Situations &situations() {
  static const Situations all = [] {
    Situations gathered;
    for (const auto &part :
         {coreSituations(), deviceSituations(), hotplugSituations(), profileSituations(), webSituations()}) {
      gathered.insert(gathered.end(), part.begin(), part.end());
    }
    return gathered;
  }();
  return all;
}

std::string read(const std::string &path) {
  std::ifstream file(path);
  std::ostringstream content;
  content << file.rdbuf();
  return content.str();
}

// The names in the library's list of exports.
std::set<std::string> exportedNames() {
  const std::string list = read(EXPORTS);
  std::istringstream words(list.substr(list.find("global:")));
  std::set<std::string> names;
  for (std::string word; words >> word;) {
    if (word.back() == ';' && word != "*;" && word != "};") names.insert(word.substr(0, word.size() - 1));
  }
  return names;
}

std::string cell(int count) { return count == 0 ? "" : std::to_string(count); }

// The table as the documentation has it: the functions that need a child process in some situation, and the rest by
// name.
std::string table() {
  std::set<std::string> busy;
  std::set<std::string> idle;
  for (const Situation &s : situations()) {
    if (s.children.any()) busy.insert(s.function);
  }
  std::ostringstream text;
  text << "| Function | When | Answers | Effects | Programs |\n|---|---|---|---|---|\n";
  for (const Situation &s : situations()) {
    if (busy.count(s.function) == 0) {
      idle.insert(s.function);
      continue;
    }
    text << "| `" << s.function << "` | " << s.when << " | " << cell(s.children.answers) << " | "
         << cell(s.children.effects) << " | " << cell(s.children.programs) << " |\n";
  }
  text << "\nNone, ever:\n";
  for (const std::string &function : idle)
    text << "`" << function << "`" << (function == *idle.rbegin() ? ".\n" : ",\n");
  return text.str();
}

class AFunction : public testing::TestWithParam<Situation> {};

TEST_P(AFunction, StartsTheChildProcessesThatItNeedsAndNoMore) {
  const Situation &situation = GetParam();
  Host host;
  OutputCapture output;
  situation.play(host);
  fflush(stdout);  // what the functions say ends in the capture
  const Journal &journal = host.journal;
  EXPECT_EQ(journal.only({"popen"}).size(), static_cast<size_t>(situation.children.answers));
  EXPECT_EQ(journal.only({"system"}).size(), static_cast<size_t>(situation.children.effects));
  EXPECT_EQ(journal.only({"exec"}).size(), static_cast<size_t>(situation.children.programs));
  EXPECT_THAT(journal.violations(), testing::IsEmpty());
  if (HasFailure()) {
    for (const std::string &line : journal.only({"popen", "system", "exec"})) ADD_FAILURE() << line;
  }
}

INSTANTIATE_TEST_SUITE_P(Every, AFunction, testing::ValuesIn(situations()), [](const auto &tested) {
  std::string name = tested.param.function + "_" + tested.param.when;
  for (char &c : name) c = isalnum(static_cast<unsigned char>(c)) ? c : '_';
  return name;
});

// The names of the first set that the second one lacks: a difference is printed whole, a set of all names is not.
Lines lacking(const std::set<std::string> &names, const std::set<std::string> &others) {
  Lines left;
  std::set_difference(names.begin(), names.end(), others.begin(), others.end(), std::back_inserter(left));
  return left;
}

TEST(TheSituations, NameEveryExportedFunction) {
  std::set<std::string> named = kNotCalled;
  for (const Situation &s : situations()) named.insert(s.function);
  EXPECT_THAT(lacking(exportedNames(), named), testing::IsEmpty()) << "exported, without a situation";
  EXPECT_THAT(lacking(named, exportedNames()), testing::IsEmpty()) << "with a situation, not exported";
}

TEST(TheTable, InTheDocumentationTellsTheseCounts) {
  EXPECT_NE(read(DOCUMENT).find(table()), std::string::npos) << "docs/children.md should hold:\n" << table();
}

}  // namespace
}  // namespace contract
