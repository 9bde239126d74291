// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Pages and streaming processes ask, and nothing changes.
#include <usbdev/usbdev.h>

#include <cstring>

#include "operations.h"

namespace model {

namespace {

// The buffers of a caller, which the library and the model fill.
template <typename Value, size_t Count>
struct Answer {
  Answer() { memset(values, kUntouched, sizeof values); }
  static constexpr int kUntouched = 0x5A;
  Value values[Count];
};

// A query by a number or a port.
template <size_t Count, typename Value, typename Argument>
void ask(TwinWorlds &worlds, const char *name, int (*library)(Argument, Value *),
         int (World::*model)(Argument, Value *) const, Argument argument) {
  Answer<Value, Count> from_library;
  Answer<Value, Count> from_model;
  worlds.call(name, argument);
  worlds.returned(library(argument, from_library.values), (worlds.world.*model)(argument, from_model.values));
  worlds.wroteRecord(from_library, from_model);
}

// A list of everything.
template <size_t Count, typename Value>
void list(TwinWorlds &worlds, const char *name, int (*library)(Value *), int (World::*model)(Value *) const) {
  Answer<Value, Count> from_library;
  Answer<Value, Count> from_model;
  worlds.call(name);
  worlds.returned(library(from_library.values), (worlds.world.*model)(from_model.values));
  worlds.wroteRecord(from_library, from_model);
}

// What asks the exported function of a name and the model's function of that name.
#define BY_PROFILE(function, count)                                                  \
  {                                                                                  \
    2, [](TwinWorlds &worlds, Choices &choose) {                                     \
      ask<count>(worlds, #function, ::function, &World::function, choose.profile()); \
    }                                                                                \
  }
#define BY_PORT(function, count)                                                 \
  {                                                                              \
    2, [](TwinWorlds &worlds, Choices &choose) {                                 \
      const std::string port = choose.port();                                    \
      ask<count>(worlds, #function, ::function, &World::function, port.c_str()); \
    }                                                                            \
  }
#define LIST(function, count)                                                                              \
  {                                                                                                        \
    2, [](TwinWorlds &worlds, Choices &) { list<count>(worlds, #function, ::function, &World::function); } \
  }

void availableOf(TwinWorlds &worlds, Choices &choose) {
  const int profile = choose.profile();
  Answer<_availinfo, USBDEV_CHANNELS> library;
  Answer<_availinfo, USBDEV_CHANNELS> model;
  worlds.call("vl_get_available_dev_N_channel", profile);
  worlds.returned(vl_get_available_dev_N_channel(library.values, profile),
                  worlds.world.vl_get_available_dev_N_channel(model.values, profile));
  worlds.wroteRecord(library, model);
}

void profileOf(TwinWorlds &worlds, Choices &choose) {
  const int channel = choose.below(12) - 1;
  worlds.call("vl_get_profileID", channel);
  worlds.returned(vl_get_profileID(channel), worlds.world.vl_get_profileID(channel));
}

void formatsOf(TwinWorlds &worlds, Choices &choose) {
  const int node = choose.below(12);
  Answer<_usbfmt_des, USBDEV_FORMATS> library;
  Answer<_usbfmt_des, USBDEV_FORMATS> model;
  int library_over60 = 77;
  int model_over60 = 77;
  worlds.call("mn_get_usbchn_fmts", node);
  worlds.returned(mn_get_usbchn_fmts(node, library.values, &library_over60),
                  worlds.world.mn_get_usbchn_fmts(node, model.values, &model_over60));
  worlds.wroteRecord(library, model);
  worlds.wroteRecord(library_over60, model_over60);
}

}  // namespace

const std::vector<Happening> &queryHappenings() {
  static const std::vector<Happening> all = {BY_PROFILE(trsProfiletoPlugCh, 1),
                                             BY_PROFILE(vl_getDevName, 256),
                                             BY_PROFILE(vl_get_usbchn_cap, USBDEV_FORMATS),
                                             BY_PROFILE(vl_get_profile_video_cap, 16),
                                             BY_PROFILE(vl_get_usbchn_audio_cap, 16),
                                             BY_PROFILE(vl_get_profile_info, 1),
                                             BY_PROFILE(vl_get_stream_info, 1),
                                             BY_PROFILE(vl_get_pidvid, 16),
                                             BY_PORT(vl_get_usbslot_video_cap, 16),
                                             BY_PORT(vl_get_usbslot_info, 1),
                                             LIST(vl_get_available_dev, USBDEV_CHANNELS),
                                             LIST(vl_get_available_profile, 16),
                                             LIST(vl_get_usbdev_list, 16),
                                             LIST(vl_get_devpf_list, USBDEV_CHANNELS),
                                             LIST(vl_get_profile_list, USBDEV_PROFILES),
                                             {2, availableOf},
                                             {2, profileOf},
                                             {1, formatsOf}};
  return all;
}

}  // namespace model
