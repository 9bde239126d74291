// The time zone of the host while this exists, as in "XXX-5:30" for five and a half hours ahead of UTC.
#ifndef CONTRACT_HARNESS_TIME_ZONE_H
#define CONTRACT_HARNESS_TIME_ZONE_H

#include <cstdlib>
#include <ctime>

namespace contract {

class TimeZone {
 public:
  explicit TimeZone(const char *zone) {
    setenv("TZ", zone, 1);
    tzset();
  }
  ~TimeZone() {
    unsetenv("TZ");
    tzset();
  }
  TimeZone(const TimeZone &) = delete;
  TimeZone &operator=(const TimeZone &) = delete;
};

}  // namespace contract

#endif
