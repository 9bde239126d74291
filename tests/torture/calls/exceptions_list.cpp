// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Which calls of the library may fail without a failure of its function, and why.
#include "exceptions.h"

namespace calls {

const std::vector<Exception> &exceptions() {
  static const std::vector<Exception> all = {
      // What the host says is believed.
      {"*", "xmlcfg_get", "*", "a missing value is its default, and what the configuration gives is believed"},
      {"*", "xmlcfg_set", "*", "only the close tells whether the values were stored"},
      {"*", "fgets nonsense", "*", "what a tool or a file says is believed"},
      {"*", "fgets half a line", "*", "what a tool or a file says is believed"},
      {"*", "vq_sql_set_log", "log", "what a line of the event log results in is not defined"},

      // The host's settings and packages.
      {"get_nas_info vl_get_nas_HTTPport vl_get_nas_version", "fgets the end: /etc/config/Tundrel.conf", "records",
       "a key that is not found is a success that leaves the text alone"},
      {"*", "fgets half a line: /etc/config/Tundrel.conf", "left", "a line that is no setting leaves the file open"},
      {"*", "fgets nonsense: /etc/config/Tundrel.conf", "left", "a line that is no setting leaves the file open"},
      {"vl_get_bndl_info", "unanswered: /sbin/readcfg Velmora2", "records", "a field without an answer stays"},
      {"vl_get_hls_status", "unanswered: /sbin/readcfg \"Velmora2\"", "records", "then it is in its usual folder"},
      {"vl_get_hls_status", "stat", "records", "a playlist that stat does not find is none"},
      {"*", "unanswered: /etc/config/Tundrel.conf", "records stored datagrams links",
       "a host whose model is unknown is not limited to one channel"},
      {"*", "unanswered: /tmp/vl_cpu.info", "records stored datagrams links",
       "a host whose processor is unknown is not limited to one channel"},
      {"*", "system", "records stored datagrams links",
       "a host whose processor is unknown is not limited to one channel"},
      {"*", "unanswered: /sbin/readcfg \"Halvane\"", "result records stored log",
       "a host whose codec package is unknown does not encode"},
      {"*", "unanswered: /share/Halvane/camera_agent.sh", "result records stored log",
       "a host whose codec package is incomplete does not encode"},
      {"*", "unanswered: gpuinfo_app", "result records stored log", "a host whose GPU is unknown does not encode"},
      {"vl_check_HOS_halvane_support", "unanswered: /tmp/gpuinfo.type", "records failed:records",
       "without a line it is not supported; the answer is cleared first"},

      // Cameras.
      {"find_pidvid vl_get_pidvid", "fgets the end: /sbin/udevadm info --name", "records", "one identifier is enough"},
      {"mn_set_usbdev_hotplug update_usbinfo sync_usbdev mn_sync_usbdev_conf vl_set_devpf_list",
       "unanswered: /sbin/udevadm info --name", "stored", "a camera that is not identified has no type"},
      {"mn_set_usbdev_hotplug update_usbinfo sync_usbdev mn_sync_usbdev_conf vl_set_devpf_list",
       "unanswered: /etc/config/.usbFECam.dat", "stored", "a camera that is in no table has no type"},
      {"mn_set_usbdev_hotplug", "unanswered: /etc/config/.usbnosupportlist.dat", "stored records",
       "without the list every camera is supported"},
      {"*", "unanswered: /sbin/udevadm info -a -n", "records stored datagrams", "a bridge that is not found is none"},
      {"*", "popen no process: /usr/bin/v4l2-ctl", "records stored log datagrams failed:records",
       "a camera that is not asked has no usable format; the flag for high rates is cleared first"},
      {"*", "fgets the end: /usr/bin/v4l2-ctl", "result records stored log datagrams",
       "the formats are those that were listed"},
      {"mn_get_usbchn_fmts", "unanswered: /bin/ps", "effects", "a query that is not found is not ended"},
      {"mn_get_usbchn_fmts", "unanswered: /sbin/udevadm info --name", "effects",
       "a camera that is not identified is ended the usual way"},
      {"mn_get_usbchn_fmts", "system", "effects", "a query may have ended by itself"},

      // The synchronisation: no step stops the next one, and what cannot be found is not there.
      {"vl_set_devpf_list mn_sync_usbdev_conf", "xmlcfg_open", "stored links datagrams effects",
       "a step that fails stops no other"},
      {"vl_set_devpf_list mn_sync_usbdev_conf", "xmlcfg_close an error: w", "stored links datagrams",
       "a step that fails stops no other"},
      {"sync_usbdev rmNone1stProfile", "xmlcfg_open", "stored links datagrams", "always succeeds"},
      {"sync_usbdev rmNone1stProfile", "xmlcfg_close an error: w", "stored datagrams", "always succeeds"},
      {"vl_set_devpf_list mn_sync_usbdev_conf get_conf_chinfo get_conf_audioinfo get_video_info get_audio_info "
       "get_usb_vnode get_usb_anode",
       "unanswered: /bin/ls", "records stored links datagrams effects", "a device that is not listed is not there"},
      {"vl_set_devpf_list mn_sync_usbdev_conf get_conf_chinfo get_usb_vnode", "unanswered: /sys/class/video4linux",
       "records stored links datagrams effects", "a camera without a name is none that a channel knows"},
      {"get_video_info", "unanswered: /sys/class/video4linux", "records failed:records",
       "the node is known before the name; an empty name is one"},
      {"get_usb_vnode", "fopen no descriptor: /sys/class/video4linux", "left", "leaves the command open"},
      {"get_usb_vnode", "fgets", "left", "a wrong node has no name, and leaves the command open"},
      {"get_conf_audioinfo get_audio_info get_usb_anode", "ac_get_Acard_info", "records",
       "a card that the host does not know has no name"},
      {"update_usbinfo", "xmlcfg_close an error: w", "failed:links failed:records",
       "links of names that were stored before stay; a name that could not be stored is forgotten"},

      // Conflicts: what follows a change does not undo it.
      {"updateConflict", "xmlcfg", "failed:records", "the profile is answered before anything is stored"},
      {"syncConflict", "xmlcfg", "failed:records", "the codes are those of the step that was reached"},
      {"syncConflict", "xmlcfg_open", "stored", "a channel that is not compared conflicts with none"},
      {"vl_set_usbslot_switch mn_set_usbdev_hotplug vl_clear_usbchn_profile", "xmlcfg_open", "stored datagrams",
       "the change is stored; whom it frees is not part of it"},
      {"vl_set_usbslot_switch mn_set_usbdev_hotplug vl_clear_usbchn_profile", "xmlcfg_close an error: w", "stored",
       "the change is stored; whom it frees is not part of it"},
      {"mn_set_usbdev_hotplug", "xmlcfg", "failed:records failed:log",
       "the channel is reported, and high rates are logged, before anything is stored"},
      {"vl_set_usbslot_switch mn_set_usbdev_hotplug vl_clear_usbchn_profile rmNone1stProfile mn_sync_usbdev_conf",
       "socket", "datagrams", "the change is stored, whether the manager hears of it or not"},
      {"vl_set_usbslot_switch mn_set_usbdev_hotplug vl_clear_usbchn_profile rmNone1stProfile mn_sync_usbdev_conf",
       "sendto", "datagrams", "the change is stored, whether the manager hears of it or not"},
      {"vl_settingNotify vl_set_usbchn_stream", "sendto a part", "failed:datagrams", "what was sent was sent"},
      {"vl_set_usbchn_stream", "xmlcfg_close an error: w", "failed:log", "the log comes before the settings"},
      {"vl_set_usbchn_stream", "s", "failed:log", "the settings are stored and logged before the manager is told"},

      // Links: programs that fail are not noticed.
      {"*", "orda_exec", "links", "a link that cannot be made or removed goes unnoticed"},
      {"*", "orda_exec", "failed:links", "a link that cannot be removed goes unnoticed"},
      {"*", "posix_spawn", "links failed:links", "a link that cannot be made or removed goes unnoticed"},
      {"*", "lstat", "links", "a link that lstat does not find is none"},
      {"vl_renew_share_link", "xmlcfg_open", "links", "a renewal goes on when it cannot find the old link"},
      {"generate_hash update_usbinfo vl_set_usbchn_profile mn_sync_usbdev_conf",
       "unanswered: /bin/cat /proc/sys/kernel/random/uuid", "records stored links",
       "a link without a name is not made, and what has it works without"},
      {"vl_set_share_link", "", "failed:records", "the stored share id is read into the record first"},

      // Records that are filled or preset before the first failure.
      {"vl_get_usbslot_info vl_get_profile_info vl_get_stream_info", "xmlcfg_open", "failed:records",
       "the record is preset first"},
      {"vl_validate_chliveview vl_ssid_auth", "xmlcfg_open", "failed:records", "the code tells why"},

      // Connections.
      {"connect_host nas_auth nas_logout nas_sid_auth vl_auth vl_sid_auth", "send broken", "process",
       "a connection that breaks ends the process"},
      {"connect_host nas_auth nas_logout nas_sid_auth vl_auth vl_sid_auth", "send interrupted", "process",
       "a connection that breaks ends the process"},
      {"connect_host nas_auth nas_logout nas_sid_auth vl_auth vl_sid_auth", "read broken", "process",
       "a connection that breaks ends the process"},
      {"connect_host nas_auth nas_logout nas_sid_auth vl_auth vl_sid_auth", "read interrupted", "process",
       "a connection that breaks ends the process"},
      {"connect_host", "read the end", "records result", "a reply ends where the connection does"},
      {"nas_logout", "read the end", "result", "a reply ends where the connection does"},
      {"vl_auth", "", "sent", "the result is that of the login, whatever becomes of the logout"},
      {"socket_read http_read_line", "recv the end", "records result", "a closed connection gives zero bytes"},
      {"http_read_line", "", "failed:records", "what was read before stays"},
      {"socket_write", "send a part", "result sent", "the result is the number of bytes"},
      {"vl_StreamNotify", "send a part", "sent", "a message is one send"},
  };
  return all;
}

}  // namespace calls
