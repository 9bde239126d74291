// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "situations.h"

namespace contract {

namespace {

char text[256];
int number;

void setText(const char *value) { strcpy(text, value); }

}  // namespace

Situations coreSituations() {
  return {
      {"trim", "", {}, [](Host &) { setText(" a "), trim(text); }},
      {"trimdatetime", "", {}, [](Host &) { setText("08:15"), trimdatetime(text, ":"); }},
      {"get_two_params",
       "",
       {},
       [](Host &) {
         char left[16];
         char right[16];
         setText("a=b");
         get_two_params(text, "=", left, right);
       }},
      {"process_json_string", "", {}, [](Host &) { setText("a"), process_json_string(text, 64); }},
      {"get_bndl_install_path", "", answers(), [](Host &) { get_bndl_install_path("Velmora2", text); }},
      {"get_bndl_info", "", answers(), [](Host &) { get_bndl_info("Velmora2", "Version", text); }},
      {"get_nas_info", "", files(),
       [](Host &host) {
         host.model("TS-K41");
         get_nas_info("Internal Model", text);
       }},
      {"AMDmodel_oneChannelLimited", "an Intel host", effects() + files(),
       [](Host &host) {
         host.processor("GenuineIntel");
         AMDmodel_oneChannelLimited();
       }},
      {"AMDmodel_oneChannelLimited", "another host", kOneChannel, [](Host &) { AMDmodel_oneChannelLimited(); }},
      {"trsProfiletoPlugCh", "channel 3 has the profile", lookUp(3),
       [](Host &host) {
         cameraOn(host, 3, "3-1", 1, 0);
         trsProfiletoPlugCh(0, &number);
       }},
      {"trsProfiletoPlugCh", "no channel has it", reading(10), [](Host &) { trsProfiletoPlugCh(0, &number); }},
      {"vl_getDevName", "", lookUp(0) + reading(1),
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         vl_getDevName(0, text);
       }},
      {"vl_settingNotify", "", {}, [](Host &) { vl_settingNotify(text); }},
      {"vl_get_nas_HTTPport", "", files(),
       [](Host &host) {
         host.files.write("/etc/config/Tundrel.conf", "Web Access Port = 8080\n");
         vl_get_nas_HTTPport(&number);
       }},
      {"vl_get_nas_version", "", files(),
       [](Host &host) {
         host.files.write("/etc/config/Tundrel.conf", "Version = 5.1\n");
         vl_get_nas_version(text);
       }},
      {"vl_get_bndl_info", "", answers(4),
       [](Host &) {
         BndlInfo info{};
         vl_get_bndl_info("Velmora2", &info);
       }},
      {"vl_create_log_shm", "", {}, [](Host &) { vl_create_log_shm(); }},
      {"vl_attach_log_shm", "", {}, [](Host &) { vl_attach_log_shm(1); }},
      {"vl_log_shm_init", "", {}, [](Host &) { vl_log_shm_init(text); }},
      {"vl_add_shm_timeout_log", "", {}, [](Host &) { vl_add_shm_timeout_log(1); }},
  };
}

}  // namespace contract
