// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Texts, the host's answers, the mapping of profiles and the notification; the host's information and the counters.
#include <usbdev/usbdev.h>

#include "scenario.h"
#include "shared_memory.h"

namespace calls {
namespace {

constexpr char kPort[] = "[System]\nWeb Access Port = 8080\nVersion = 5.1.2\n[NTP]\n";

Scenarios texts() {
  return {
      {"trim", "", emptyHost, [](World &, Outputs &out) { return *trim(out.text(" \"a\" ")) == 'a' ? 0 : -1; }},
      {"trimdatetime", "", emptyHost,
       [](World &, Outputs &out) { return *trimdatetime(out.text("08:15"), ":") == '0' ? 0 : -1; }},
      {"get_two_params", "", emptyHost,
       [](World &, Outputs &out) { return get_two_params(out.text("a = b"), "=", out.text(), out.text()); }},
      {"process_json_string", "", emptyHost,
       [](World &, Outputs &out) { return process_json_string(out.text("a\"b"), 64); }, 0},
  };
}

Scenarios hostQueries() {
  return {
      {"get_bndl_install_path", "", [](World &w) { w.host.package("Velmora2", "Install_Path", "/share/v"); },
       [](World &, Outputs &out) { return get_bndl_install_path("Velmora2", out.text()); }},
      {"get_bndl_info", "", [](World &w) { w.host.package("Velmora2", "Version", "2.1"); },
       [](World &, Outputs &out) { return get_bndl_info("Velmora2", "Version", out.text()); }},
      {"get_nas_info", "", [](World &w) { w.host.model("TS-K41"); },
       [](World &, Outputs &out) { return get_nas_info("Internal Model", out.text()); }},
      {"AMDmodel_oneChannelLimited", "a limited host", [](World &w) { w.host.limitToOneChannel(); },
       [](World &, Outputs &) { return AMDmodel_oneChannelLimited(); }, 0},
      {"vl_get_nas_HTTPport", "", [](World &w) { w.host.files.write("/etc/config/Tundrel.conf", kPort); },
       [](World &, Outputs &out) { return vl_get_nas_HTTPport(&out.record<int>()); }},
      {"vl_get_nas_version", "", [](World &w) { w.host.files.write("/etc/config/Tundrel.conf", kPort); },
       [](World &, Outputs &out) { return vl_get_nas_version(out.text()); }},
      {"vl_get_bndl_info", "",
       [](World &w) {
         for (const char *key : {"Version", "Build", "Install_Path", "Enable"}) {
           w.host.commands.prints(std::string("/sbin/readcfg Velmora2 ") + key + " -f /etc/config/bndl.conf", "TRUE\n");
         }
       },
       [](World &, Outputs &out) { return vl_get_bndl_info("Velmora2", &out.record<BndlInfo>()); }},
  };
}

Scenarios mapping() {
  return {
      {"trsProfiletoPlugCh", "", [](World &w) { cameraOn(w.host, 3, "3-1", 1, 0); },
       [](World &, Outputs &out) { return trsProfiletoPlugCh(0, &out.record<int>()); }},
      {"vl_getDevName", "", [](World &w) { cameraOn(w.host, 0, "3-1", 1, 0); },
       [](World &, Outputs &out) { return vl_getDevName(0, out.text()); }},
      {"vl_settingNotify", "", emptyHost,
       [](World &, Outputs &) { return vl_settingNotify("ORDA_VLM2_CFCG_N0123456789012345678901234567890123456789"); }},
  };
}

Scenarios timeOuts() {
  const auto missing = [](World &) { forgetSegment(); };
  const auto made = [](World &) { makeSegment(); };
  return {
      {"vl_create_log_shm", "a first segment", missing, [](World &, Outputs &) { return vl_create_log_shm(); }},
      {"vl_create_log_shm", "the segment is there", made, [](World &, Outputs &) { return vl_create_log_shm(); }},
      {"vl_attach_log_shm", "", made,
       [](World &, Outputs &) {
         void *address = vl_attach_log_shm(kSegment);
         if (address != nullptr) leaveAttached();
         return address == nullptr ? -1 : 0;
       }},
      {"vl_log_shm_init", "", made,
       [](World &, Outputs &out) {
         vl_log_shm_init(out.text());
         return 0;
       }},
      {"vl_add_shm_timeout_log", "a first segment", missing,
       [](World &, Outputs &) { return vl_add_shm_timeout_log(2); }},
      {"vl_add_shm_timeout_log", "the segment is there", made,
       [](World &, Outputs &) { return vl_add_shm_timeout_log(2); }},
  };
}

}  // namespace

Scenarios coreScenarios() { return texts() + hostQueries() + mapping() + timeOuts(); }

}  // namespace calls
