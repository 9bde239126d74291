// Time-out counters, one per profile, that any process of the host may add to and read.
#include <sys/shm.h>
#include <usbdev/hostinfo.h>

#include <cstdint>
#include <cstdio>
#include <cstring>

#include "core/profile_mapping.h"

namespace usbdev {
namespace {

constexpr key_t kSegmentKey = 1519;
using Counters = std::uint32_t[kProfiles];
static_assert(sizeof(Counters) == 16);

}  // namespace
}  // namespace usbdev

int vl_create_log_shm(void) {
  const int found = shmget(usbdev::kSegmentKey, 0, 0);
  return found != -1 ? found : shmget(usbdev::kSegmentKey, sizeof(usbdev::Counters), IPC_CREAT | 0666);
}

void *vl_attach_log_shm(int id) {
  void *const address = shmat(id, nullptr, 0);
  return reinterpret_cast<std::intptr_t>(address) == -1 ? nullptr : address;
}

void vl_log_shm_init(void *address) {
  if (address != nullptr) std::memset(address, 0, sizeof(usbdev::Counters));
}

int vl_add_shm_timeout_log(int index) {
  if (!usbdev::isProfile(index)) return -1;
  const int segment = vl_create_log_shm();
  if (segment == -1) {
    std::perror("shmget");
    return -1;
  }
  void *const address = vl_attach_log_shm(segment);
  if (address == nullptr) {
    std::perror("shmat");
    return -1;
  }
  static_cast<std::uint32_t *>(address)[index] += 1;
  shmdt(address);
  return 0;
}
