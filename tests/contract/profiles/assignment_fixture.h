// A camera on channel 3 that a profile may be bound to.
#ifndef CONTRACT_PROFILES_ASSIGNMENT_FIXTURE_H
#define CONTRACT_PROFILES_ASSIGNMENT_FIXTURE_H

#include <string>

#include "contract_test.h"

namespace contract {

inline constexpr char kUuidCommand[] = "/bin/cat /proc/sys/kernel/random/uuid";
inline constexpr char kHash[] = "1b4e28ba2fa111d2883f0016d3cca427";
inline const std::string kRoot = "/mnt/ext/opt/apps/Velmora2/";

class AProfile : public ContractTest {
 protected:
  AProfile() {
    host.commands.prints(kUuidCommand, "1b4e28ba-2fa1-11d2-883f-0016d3cca427\n");
    host.chance.random = 4711;
    camera(3, "3-1.2", 5).name("HD Webcam");
  }

  HostChannel camera(int channel, const std::string &slot, int vnode) {
    return host.channel(channel).exists(1).slot(slot).vnode(vnode);
  }

  int assign(const std::string &slot, int profile) {
    std::string text = slot;
    return vl_set_usbchn_profile(text.data(), profile);
  }

  std::string mark(int channel) { return host.channel(channel).get("conflictch"); }
};

}  // namespace contract

#endif
