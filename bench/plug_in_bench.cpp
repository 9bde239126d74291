// A camera that is plugged in beside nine others: the library against a loop that only runs the same commands and opens
// the configuration as often.
//
// The library's commands and opens are noted once, outside the measurement. The loop asks each question once, however
// often the library asked, and repeats what is run for its effect. The two take turns, so that a busy machine slows
// down both. To be run on a sandboxed host with ten cameras of which the last is the one to plug in: see bench/run.
#include <benchmark/benchmark.h>
#include <dlfcn.h>
#include <platform/xmlcfg.h>
#include <usbdev/hotplug.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

constexpr char kConfig[] = "/etc/config/usbdev.conf";
constexpr char kRoot[] = "velmora";
constexpr int kNewChannel = 9;

struct Work {
  std::vector<std::string> questions;  // popen
  std::vector<std::string> effects;    // system
  std::vector<int> opens;              // modes
  int repeated_questions = 0;
};
Work noted;
bool noting = false;

template <typename Function>
Function *real(const char *name) {
  return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

/// The configuration as it is before the camera comes, and the camera.
class Scene {
 public:
  Scene() {
    void *config = nullptr;
    if (xmlcfg_open(1, kConfig, &config) != 1) return;
    for (int i = 0; i < kNewChannel; ++i) others_ += xmlcfg_get_int(config, 0, kRoot, section(i), "exists", nullptr);
    camera_.devtype = 1;
    camera_.plugged = 1;
    camera_.node = xmlcfg_get_int(config, -1, kRoot, section(kNewChannel), "video", "vnode");
    xmlcfg_get_str(config, "", camera_.usbslot, sizeof camera_.usbslot, kRoot, section(kNewChannel), "usbslot",
                   nullptr);
    xmlcfg_get_str(config, "", camera_.devname, sizeof camera_.devname, kRoot, section(kNewChannel), "devname",
                   nullptr);
    forgetCamera(config);
    xmlcfg_close(config, 0);
  }

  bool complete() const { return others_ == kNewChannel && camera_.node >= 0 && camera_.usbslot[0] != '\0'; }
  _usbdev_des camera() const { return camera_; }

  static void reset() {
    void *config = nullptr;
    if (xmlcfg_open(1, kConfig, &config) != 1) std::abort();
    forgetCamera(config);
    xmlcfg_close(config, 0);
  }

 private:
  static const char *section(int channel) {
    static char name[8];
    std::snprintf(name, sizeof name, "ch%d", channel);
    return name;
  }

  static void forgetCamera(void *config) {
    xmlcfg_set_int(config, 0, kRoot, section(kNewChannel), "exists", nullptr);
    xmlcfg_set_str(config, "", kRoot, section(kNewChannel), "usbslot", nullptr);
    xmlcfg_set_int(config, -1, kRoot, section(kNewChannel), "profile", nullptr);
    xmlcfg_set_int(config, -1, kRoot, section(kNewChannel), "video", "vnode");
    xmlcfg_set_int(config, -1, kRoot, section(kNewChannel), "conflictch", nullptr);
  }

  _usbdev_des camera_ = {};
  int others_ = 0;
};

bool plugIn(const Scene &scene) {
  _usbdev_des camera = scene.camera();
  _usbdev_conflict conflict = {};
  char devname[256] = "";
  int profile = 0;
  int vnode = 0;
  return mn_set_usbdev_hotplug(&camera, &profile, devname, &vnode, &conflict) == kNewChannel;
}

void runNotedWork() {
  for (const std::string &command : noted.questions) {
    std::FILE *answer = popen(command.c_str(), "r");
    char line[256];
    while (std::fgets(line, sizeof line, answer) != nullptr) benchmark::DoNotOptimize(line);
    pclose(answer);
  }
  for (const std::string &command : noted.effects) benchmark::DoNotOptimize(std::system(command.c_str()));
  for (const int mode : noted.opens) {
    void *config = nullptr;
    xmlcfg_open(mode, kConfig, &config);
    xmlcfg_close(config, 0);
  }
}

bool noteWork(const Scene &scene) {
  Scene::reset();
  noting = true;
  const bool plugged = plugIn(scene);
  noting = false;
  return plugged;
}

template <typename Step>
double seconds(Step step) {
  const auto start = std::chrono::steady_clock::now();
  step();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2), values.end());
  return values[values.size() / 2];
}

void plugInBesideNine(benchmark::State &state) {
  const Scene scene;
  if (!scene.complete() || !noteWork(scene)) {
    state.SkipWithError("needs a sandboxed host with ten cameras, the last one in channel 9");
    return;
  }
  std::vector<double> library;
  std::vector<double> plain;
  for (auto _ : state) {
    Scene::reset();
    library.push_back(seconds([&] { plugIn(scene); }));
    Scene::reset();
    plain.push_back(seconds(runNotedWork));
    state.SetIterationTime(library.back());
  }
  state.counters["library_ms"] = 1e3 * median(library);
  state.counters["plain_ms"] = 1e3 * median(plain);
  state.counters["ratio"] = median(library) / median(plain);
  state.counters["commands"] = static_cast<double>(noted.questions.size() + noted.effects.size());
  state.counters["repeated"] = noted.repeated_questions;
  state.counters["opens"] = static_cast<double>(noted.opens.size());
}
BENCHMARK(plugInBesideNine)->UseManualTime()->Iterations(25)->Unit(benchmark::kMillisecond);

}  // namespace

extern "C" {

std::FILE *popen(const char *command, const char *mode) {
  auto &questions = noted.questions;
  if (noting && std::find(questions.begin(), questions.end(), command) != questions.end()) {
    ++noted.repeated_questions;
  } else if (noting) {
    questions.emplace_back(command);
  }
  return real<std::FILE *(const char *, const char *)>("popen")(command, mode);
}

int system(const char *command) {
  if (noting) noted.effects.emplace_back(command);
  return real<int(const char *)>("system")(command);
}

int xmlcfg_open(int mode, const char *path, void **handle) {
  if (noting) noted.opens.push_back(mode);
  return real<int(int, const char *, void **)>("xmlcfg_open")(mode, path, handle);
}
}
