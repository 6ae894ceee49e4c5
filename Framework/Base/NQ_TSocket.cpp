#include "NQ_TSocket.h"

#include <netdb.h>
#include <unistd.h>

#include <memory>

NQ_TString NQ_TSocket::HostName(bool qualified) {
  char name[256] = {};  // HOST_NAME_MAX is 64; RFC 1035 names have at most 255 octets
  if (gethostname(name, sizeof name - 1) != 0) return {};
  if (qualified) {
    addrinfo hints{};
    hints.ai_flags = AI_CANONNAME;
    addrinfo* found = nullptr;
    if (getaddrinfo(name, nullptr, &hints, &found) == 0) {
      const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> owner(found, &freeaddrinfo);
      if (found->ai_canonname != nullptr) return found->ai_canonname;
    }
  }
  return name;
}
