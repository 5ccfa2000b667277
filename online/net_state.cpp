#include "online/net_state.h"

#include <ifaddrs.h>
#include <net/if.h>

bool InternetConnectedState(const std::string& address) {
  const bool loopback = address.rfind("127.", 0) == 0 || address == "localhost" || address == "::1";
  ifaddrs* list = nullptr;
  if (getifaddrs(&list) != 0) return true;  // nothing known: the socket's own state decides
  bool up = false;
  for (ifaddrs* i = list; i != nullptr && !up; i = i->ifa_next) {
    const unsigned flags = i->ifa_flags;
    if (!(flags & IFF_UP) || !(flags & IFF_RUNNING)) continue;
    up = loopback ? (flags & IFF_LOOPBACK) != 0 : (flags & IFF_LOOPBACK) == 0;
  }
  freeifaddrs(list);
  return up;
}
