// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The links under which streams are watched: where they lie, what names a new one, and the commands about them.
#pragma once

#include <string>

namespace contract {

inline const std::string kLinkFolder = "/mnt/ext/opt/apps/Velmora2/";

// What names a link, what it prints, and the name made of that.
inline constexpr char kUuidCommand[] = "/bin/cat /proc/sys/kernel/random/uuid";
inline constexpr char kUuid[] = "1b4e28ba-2fa1-11d2-883f-0016d3cca427\n";
inline constexpr char kHash[] = "1b4e28ba2fa111d2883f0016d3cca427";

// As the journal has them.
inline std::string linking(int directory, const std::string &name) {
  return "exec /bin/ln -sf " + kLinkFolder + "hls/channel" + std::to_string(directory) + " " + kLinkFolder + name;
}
inline std::string removing(const std::string &name) { return "exec /bin/rm -rf " + kLinkFolder + name; }

}  // namespace contract
