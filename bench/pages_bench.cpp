// What the settings pages read at once: the device table, the profile table, the stream of each profile, and what every
// slot holds. The library against the same opens, reads and closes through the host library alone. To be run on a
// sandboxed host with ten cameras: see bench/run.
#include <usbdev/devices.h>
#include <usbdev/profiles.h>

#include "noted_work.h"
#include "side_by_side.h"

namespace {

/// The slots of ten cameras, the first four of which have a profile.
class Page {
 public:
  Page() {
    if (vl_get_devpf_list(devices_) != 0) return;
    complete_ = devices_[9].exists == 1;
    for (int i = 0; i < 4; ++i) complete_ = vl_set_usbchn_profile(devices_[i].usbslot, i) == 0 && complete_;
  }

  bool complete() const { return complete_; }

  void read() {
    vl_get_devpf_list(devices_);
    vl_get_profile_list(profiles_);
    for (int i = 0; i < 4; ++i) vl_get_stream_info(i, &stream_);
    for (const _usbdev_entry &device : devices_) {
      char capability[16] = "";
      vl_get_usbslot_info(device.usbslot, &stream_);
      vl_get_usbslot_video_cap(device.usbslot, capability);
      benchmark::DoNotOptimize(capability);
    }
  }

 private:
  bool complete_ = false;
  _usbdev_entry devices_[10] = {};
  _usbdev_entry profiles_[4] = {};
  _streaminfo stream_ = {};
};

void readPage(benchmark::State &state) {
  Page page;
  if (!page.complete()) {
    state.SkipWithError("needs a sandboxed host with ten cameras, all of them in channels");
    return;
  }
  const bench::Work work = bench::note([&] { page.read(); });
  bench::timeSideBySide(
      state, [&] { page.read(); }, [&] { bench::repeatReads(work); });
  state.counters["commands"] = static_cast<double>(work.commands());
  state.counters["opens"] = static_cast<double>(work.opens.size());
}
BENCHMARK(readPage)->UseManualTime()->Iterations(300)->Unit(benchmark::kMillisecond);

}  // namespace
