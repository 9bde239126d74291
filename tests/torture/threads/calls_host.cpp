// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <usbdev/usbdev.h>

#include <cstring>

#include "calls.h"

namespace torture {

Calls hostCalls() {
  return {
      {"get_bndl_install_path",
       [] {
         char path[128] = "";
         return seen(get_bndl_install_path("Halvane", path), path);
       }},
      {"get_bndl_info",
       [] {
         char value[128] = "";
         return seen(get_bndl_info("Halvane", "Enable", value), value);
       }},
      {"get_nas_info",
       [] {
         char value[32] = "";
         return seen(get_nas_info("Internal Model", value), value);
       }},
      {"AMDmodel_oneChannelLimited", [] { return seen(AMDmodel_oneChannelLimited()); }},
      {"vl_get_nas_HTTPport",
       [] {
         int port = 0;
         return seen(vl_get_nas_HTTPport(&port), port);
       }},
      {"vl_get_nas_version",
       [] {
         char version[256] = "";
         return seen(vl_get_nas_version(version), version);
       }},
      {"vl_get_bndl_info",
       [] {
         BndlInfo info{};
         return seen(vl_get_bndl_info("Halvane", &info), info);
       }},
      {"vl_HOS_CLI_usbid", [] { return seen(vl_HOS_CLI_usbid("1-1")); }},
      {"vl_find_HOS_model_pic", [] { return seen(vl_find_HOS_model_pic()); }},
      {"vl_check_HOS_halvane_support",
       [] {
         int supported = 0;
         return seen(vl_check_HOS_halvane_support(&supported), supported);
       }},
      {"validate_hwenc",
       [] {
         int result = 0;
         return seen(validate_hwenc(&result), result);
       }},
      {"check_gpu_status",
       [] {
         int result = 0;
         return seen(check_gpu_status(&result), result);
       }},
      {"vl_create_log_shm", [] { return seen(vl_create_log_shm()); }},
      {"vl_attach_log_shm", [] { return seen(vl_attach_log_shm(1) != nullptr ? 1 : 0); }},
      {"vl_log_shm_init",
       [] {
         int counters[4] = {1, 2, 3, 4};
         vl_log_shm_init(counters);
         return seen(0, counters);
       }},
      {"vl_add_shm_timeout_log", [] { return seen(vl_add_shm_timeout_log(1)); }},
      {"vl_settingNotify",
       [] {
         const char datagram[56] = "ORDA_VLM2_CFCG_N";
         return seen(vl_settingNotify(datagram));
       }},
      {"vl_StreamNotify",
       [] {
         const char message[32] = "stop";
         return seen(vl_StreamNotify(message));
       }},
      {"vl_get_hls_status",
       [] {
         int status = 0;
         return seen(vl_get_hls_status(0, &status), status);
       }},
      {"vl_SourcerStreamingProcess", [] { return seen(vl_SourcerStreamingProcess(1, 0)); }},
  };
}

}  // namespace torture
