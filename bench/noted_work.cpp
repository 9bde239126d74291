#include "noted_work.h"

#include <benchmark/benchmark.h>
#include <dlfcn.h>
#include <platform/orda_exec.h>
#include <platform/xmlcfg.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr char kConfig[] = "/etc/config/usbdev.conf";
constexpr char kRoot[] = "velmora";

bench::Work *noting = nullptr;  // null while nothing is noted

template <typename Function>
Function *real(const char *name) {
  return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

void noteQuestion(const char *command) {
  auto &questions = noting->questions;
  if (std::find(questions.begin(), questions.end(), command) == questions.end()) {
    questions.emplace_back(command);
  } else {
    ++noting->repeated_questions;
  }
}

bench::Path pathOf(const char *section, const char *key, const char *sub_key) {
  return {section, key, sub_key != nullptr ? sub_key : ""};
}

const char *subKeyOf(const bench::Path &path) { return path.sub_key.empty() ? nullptr : path.sub_key.c_str(); }

/// Runs a program of two arguments or three, as all are that the library runs.
int run(const std::vector<std::string> &words) {
  const char *third = words.size() > 3 ? words[3].c_str() : nullptr;
  return real<int(int, int, int, const char *, ...)>("orda_exec")(0, 0, 0, words[0].c_str(), words[1].c_str(),
                                                                  words[2].c_str(), third, nullptr);
}

void ask(const std::string &command) {
  std::FILE *answer = popen(command.c_str(), "r");
  char line[256];
  while (std::fgets(line, sizeof line, answer) != nullptr) benchmark::DoNotOptimize(line);
  pclose(answer);
}

void read(void *config, const bench::Read &value) {
  const bench::Path &path = value.path;
  if (!value.is_text) {
    benchmark::DoNotOptimize(
        xmlcfg_get_int(config, value.default_value, kRoot, path.section.c_str(), path.key.c_str(), subKeyOf(path)));
    return;
  }
  char text[256];
  xmlcfg_get_str(config, "", text, value.size, kRoot, path.section.c_str(), path.key.c_str(), subKeyOf(path));
  benchmark::DoNotOptimize(text);
}

void write(void *config, const bench::Write &value) {
  const bench::Path &path = value.path;
  if (value.is_text) {
    xmlcfg_set_str(config, value.text.c_str(), kRoot, path.section.c_str(), path.key.c_str(), subKeyOf(path));
  } else {
    xmlcfg_set_int(config, value.number, kRoot, path.section.c_str(), path.key.c_str(), subKeyOf(path));
  }
}

}  // namespace

namespace bench {

Work note(const std::function<void()> &operation) {
  Work work;
  noting = &work;
  operation();
  noting = nullptr;
  return work;
}

void repeatCommandsAndOpens(const Work &work) {
  for (const std::string &command : work.questions) ask(command);
  for (const std::string &command : work.effects) benchmark::DoNotOptimize(std::system(command.c_str()));
  for (const auto &program : work.programs) run(program);
  for (const Open &open : work.opens) {
    void *config = nullptr;
    xmlcfg_open(open.mode, kConfig, &config);
    for (const Write &value : open.writes) write(config, value);
    xmlcfg_close(config, 0);
  }
}

void repeatReads(const Work &work) {
  for (const Open &open : work.opens) {
    void *config = nullptr;
    xmlcfg_open(open.mode, kConfig, &config);
    for (const Read &value : open.reads) read(config, value);
    xmlcfg_close(config, 0);
  }
}

}  // namespace bench

extern "C" {

std::FILE *popen(const char *command, const char *mode) {
  static auto *const actual = real<std::FILE *(const char *, const char *)>("popen");
  if (noting != nullptr) noteQuestion(command);
  return actual(command, mode);
}

int system(const char *command) {
  static auto *const actual = real<int(const char *)>("system");
  if (noting != nullptr) noting->effects.emplace_back(command);
  return actual(command);
}

int orda_exec(int, int, int, const char *program, ...) {
  std::vector<std::string> words{program};
  va_list arguments;
  va_start(arguments, program);
  for (const char *word = va_arg(arguments, const char *); word != nullptr; word = va_arg(arguments, const char *)) {
    words.emplace_back(word);
  }
  va_end(arguments);
  if (noting != nullptr) noting->programs.push_back(words);
  return run(words);
}

int xmlcfg_open(int mode, const char *path, void **handle) {
  static auto *const actual = real<int(int, const char *, void **)>("xmlcfg_open");
  if (noting != nullptr) noting->opens.push_back({mode, {}, {}});
  return actual(mode, path, handle);
}

int xmlcfg_get_int(void *handle, int default_value, const char *root, const char *section, const char *key,
                   const char *sub_key) {
  static auto *const actual =
      real<int(void *, int, const char *, const char *, const char *, const char *)>("xmlcfg_get_int");
  if (noting != nullptr) noting->opens.back().reads.push_back({pathOf(section, key, sub_key), false, default_value, 0});
  return actual(handle, default_value, root, section, key, sub_key);
}

int xmlcfg_get_str(void *handle, const char *default_value, char *buffer, int size, const char *root,
                   const char *section, const char *key, const char *sub_key) {
  static auto *const actual =
      real<int(void *, const char *, char *, int, const char *, const char *, const char *, const char *)>(
          "xmlcfg_get_str");
  if (noting != nullptr) noting->opens.back().reads.push_back({pathOf(section, key, sub_key), true, 0, size});
  return actual(handle, default_value, buffer, size, root, section, key, sub_key);
}

int xmlcfg_set_int(void *handle, int value, const char *root, const char *section, const char *key,
                   const char *sub_key) {
  static auto *const actual =
      real<int(void *, int, const char *, const char *, const char *, const char *)>("xmlcfg_set_int");
  if (noting != nullptr) {
    noting->opens.back().writes.push_back({pathOf(section, key, sub_key), false, value, ""});
  }
  return actual(handle, value, root, section, key, sub_key);
}

int xmlcfg_set_str(void *handle, const char *value, const char *root, const char *section, const char *key,
                   const char *sub_key) {
  static auto *const actual =
      real<int(void *, const char *, const char *, const char *, const char *, const char *)>("xmlcfg_set_str");
  if (noting != nullptr) {
    noting->opens.back().writes.push_back({pathOf(section, key, sub_key), true, 0, value});
  }
  return actual(handle, value, root, section, key, sub_key);
}
}
