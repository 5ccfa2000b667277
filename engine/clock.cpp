#include "engine/clock.h"

#include <chrono>
#include <ctime>

uint32_t SystemClock::TickMs() {
  using namespace std::chrono;
  return static_cast<uint32_t>(duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

LocalDateTime SystemClock::Now() {
  using namespace std::chrono;
  auto now = system_clock::now();
  std::time_t t = system_clock::to_time_t(now);
  std::tm tm{};
  localtime_r(&t, &tm);
  LocalDateTime d;
  d.year = tm.tm_year + 1900;
  d.month = tm.tm_mon + 1;
  d.day = tm.tm_mday;
  d.hour = tm.tm_hour;
  d.minute = tm.tm_min;
  d.second = tm.tm_sec;
  d.millisecond = static_cast<int>(duration_cast<milliseconds>(now.time_since_epoch()).count() % 1000);
  d.weekday = tm.tm_wday + 1;
  return d;
}

Clock& DefaultClock() {
  static SystemClock clock;
  return clock;
}
