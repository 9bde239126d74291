// A camera that is plugged in beside nine others: the library against a loop that only runs the same commands and opens
// the configuration as often.
//
// The library's commands and opens are noted once, outside the measurement. To be run on a sandboxed host with ten
// cameras of which the last is the one to plug in: see bench/run.
#include <platform/xmlcfg.h>
#include <usbdev/hotplug.h>

#include <cstdio>
#include <cstdlib>

#include "noted_work.h"
#include "side_by_side.h"

namespace {

constexpr char kConfig[] = "/etc/config/usbdev.conf";
constexpr char kRoot[] = "velmora";
constexpr int kNewChannel = 9;

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

void plugInBesideNine(benchmark::State &state) {
  const Scene scene;
  bool plugged = false;
  const bench::Work work = bench::note([&] { plugged = scene.complete() && plugIn(scene); });
  if (!plugged) {
    state.SkipWithError("needs a sandboxed host with ten cameras, the last one in channel 9");
    return;
  }
  bench::timeSideBySide(
      state, [&] { plugIn(scene); }, [&] { bench::repeatCommandsAndOpens(work); }, Scene::reset);
  state.counters["commands"] = static_cast<double>(work.commands());
  state.counters["repeated"] = work.repeated_questions;
  state.counters["opens"] = static_cast<double>(work.opens.size());
}
BENCHMARK(plugInBesideNine)->UseManualTime()->Iterations(25)->Unit(benchmark::kMillisecond);

}  // namespace
