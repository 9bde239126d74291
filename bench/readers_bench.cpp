// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Threads that read the configuration beside one that writes it: how many reads a second there are, and how long one
// takes. Then one reader beside operations that ask a slow camera. Prints the figures as lines of words; to be run on a
// sandboxed host with cameras, of which the first gets profile 0: see bench/plot-readers.
#include <dlfcn.h>
#include <unistd.h>
#include <usbdev/hotplug.h>
#include <usbdev/profiles.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int kMostReaders = 10;
constexpr auto kRunTime = std::chrono::seconds(1);
constexpr auto kPauseOfReader = std::chrono::milliseconds(1);
constexpr auto kPauseOfWriter = std::chrono::milliseconds(10);
constexpr useconds_t kSlowness = 500000;

std::atomic<bool> camera_is_slow{false};

/// How long each read took, until told to stop.
std::vector<double> readUntil(const std::atomic<bool> &stop) {
  std::vector<double> times;
  _streaminfo stream;
  while (!stop) {
    const auto start = Clock::now();
    vl_get_stream_info(0, &stream);
    times.push_back(Milliseconds(Clock::now() - start).count());
    std::this_thread::sleep_for(kPauseOfReader);
  }
  return times;
}

double quantile(std::vector<double> &values, double share) {
  const auto place = values.begin() + static_cast<std::ptrdiff_t>(share * static_cast<double>(values.size() - 1));
  std::nth_element(values.begin(), place, values.end());
  return *place;
}

void readBesideAWriter(int readers) {
  std::atomic<bool> stop{false};
  std::vector<std::vector<double>> times(static_cast<std::size_t>(readers));
  std::vector<std::thread> threads;
  for (auto &own : times) threads.emplace_back([&own, &stop] { own = readUntil(stop); });
  threads.emplace_back([&stop] {
    for (int value = 0; !stop; value = 1 - value) {
      mn_set_usbchn_sps(0, value);
      std::this_thread::sleep_for(kPauseOfWriter);
    }
  });
  std::this_thread::sleep_for(kRunTime);
  stop = true;
  for (std::thread &thread : threads) thread.join();
  std::vector<double> all;
  for (const auto &own : times) all.insert(all.end(), own.begin(), own.end());
  const double per_second = static_cast<double>(all.size()) / std::chrono::duration<double>(kRunTime).count();
  std::printf("readers %d %.0f %.3f %.3f %.3f\n", readers, per_second, quantile(all, 0.5), quantile(all, 0.99),
              quantile(all, 1));
}

void readBeside(const char *operation, const std::function<void()> &run) {
  std::atomic<bool> stop{false};
  std::vector<double> times;
  std::thread reader([&] { times = readUntil(stop); });
  camera_is_slow = true;
  run();
  camera_is_slow = false;
  stop = true;
  reader.join();
  std::printf("beside %s %.3f\n", operation, quantile(times, 1));
}

void plugAgain(const _usbdev_entry &known) {
  _usbdev_des camera = {};
  camera.devtype = 1;
  camera.plugged = 1;
  std::strcpy(camera.usbslot, known.usbslot);
  std::strcpy(camera.devname, known.devname);
  _usbdev_conflict conflict;
  char devname[256];
  int profile = 0;
  int vnode = 0;
  mn_set_usbdev_hotplug(&camera, &profile, devname, &vnode, &conflict);
}

}  // namespace

extern "C" std::FILE *popen(const char *command, const char *mode) {
  static auto *const actual = reinterpret_cast<std::FILE *(*)(const char *, const char *)>(dlsym(RTLD_NEXT, "popen"));
  if (camera_is_slow && std::strstr(command, "--list-formats-ext") != nullptr) usleep(kSlowness);
  return actual(command, mode);
}

int main() {
  static _usbdev_entry rows[10];
  static _usbfmt_des formats[USBDEV_FORMATS];
  vl_get_devpf_list(rows);
  _streaminfo stream;
  char out[16] = "";
  vl_set_usbchn_profile(rows[0].usbslot, 0);
  if (vl_get_stream_info(0, &stream) != 0) {
    std::fputs("needs a sandboxed host with a camera in channel 0\n", stderr);
    return 1;
  }
  for (int readers = 1; readers <= kMostReaders; ++readers) readBesideAWriter(readers);
  readBeside("vl_get_usbchn_cap", [] { vl_get_usbchn_cap(0, formats); });
  readBeside("vl_set_usbchn_stream", [&] { vl_set_usbchn_stream(0, &stream, &stream, 0); });
  readBeside("mn_set_usbdev_hotplug", [] { plugAgain(rows[0]); });
  readBeside("vl_get_usbdev_list", [&] { vl_get_usbdev_list(out); });
  return 0;
}
