// A start-up with ten cameras that are where they were, four of them with a profile: the library against a loop that
// only runs the same commands and opens the configuration as often. To be run on a sandboxed host: see bench/run.
#include <usbdev/hotplug.h>
#include <usbdev/profiles.h>

#include "noted_work.h"
#include "side_by_side.h"

namespace {

bool bindProfiles() {
  _usbdev_entry rows[10];
  if (vl_get_devpf_list(rows) != 0) return false;
  for (int i = 0; i < 4; ++i) {
    if (vl_set_usbchn_profile(rows[i].usbslot, i) != 0) return false;
  }
  return rows[9].exists == 1;
}

void startUpWithTen(benchmark::State &state) {
  bool bound = bindProfiles();
  bound = mn_sync_usbdev_conf() == 1 && bound;  // from now on a start-up changes nothing
  const bench::Work work = bench::note([] { mn_sync_usbdev_conf(); });
  if (!bound) {
    state.SkipWithError("needs a sandboxed host with ten cameras, all of them in channels");
    return;
  }
  bench::timeSideBySide(
      state, [] { mn_sync_usbdev_conf(); }, [&] { bench::repeatCommandsAndOpens(work); });
  state.counters["commands"] = static_cast<double>(work.commands());
  state.counters["repeated"] = work.repeated_questions;
  state.counters["opens"] = static_cast<double>(work.opens.size());
}
BENCHMARK(startUpWithTen)->UseManualTime()->Iterations(25)->Unit(benchmark::kMillisecond);

}  // namespace
