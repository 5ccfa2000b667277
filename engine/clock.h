#pragma once
// Time for the engine: a millisecond tick and the local date and time. Tests use a fake.

#include <cstdint>

struct LocalDateTime {
  int year = 2000, month = 1, day = 1;
  int hour = 0, minute = 0, second = 0, millisecond = 0;
  int weekday = 1;  // 1 Sunday .. 7 Saturday
};

class Clock {
 public:
  virtual ~Clock() = default;
  virtual uint32_t TickMs() = 0;
  virtual LocalDateTime Now() = 0;
};

class SystemClock : public Clock {
 public:
  uint32_t TickMs() override;
  LocalDateTime Now() override;
};

class FakeClock : public Clock {
 public:
  uint32_t tick = 0;
  LocalDateTime now{};
  uint32_t TickMs() override { return tick; }
  LocalDateTime Now() override { return now; }
};

// The process's system clock.
Clock& DefaultClock();
