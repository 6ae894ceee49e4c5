#include "engine/MakeClient.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>

#include "NQ_EException.h"

namespace templatenames {
namespace {

constexpr unsigned int kLongest = 253;  // UTF-16 units; the longest domain name

bool IsControl(char16_t unit) { return unit < 0x20 || (unit >= 0x7F && unit < 0xA0); }

// The spaces of Unicode: a name with one was put together from something that is no name.
bool IsSpace(char16_t unit) {
  constexpr std::u16string_view kSpaces = u" \u00A0\u1680\u2028\u2029\u202F\u205F\u3000\uFEFF";
  return kSpaces.find(unit) != kSpaces.npos || (unit >= 0x2000 && unit <= 0x200B);
}

// 0, which no service has, for what is no port.
std::uint16_t PortOf(const NQ_TString& server) {
  const std::string digits(server.Substring(1).Narrow());
  const long number = std::strtol(digits.c_str(), nullptr, 10);
  const bool isPort = number > 0 && number <= std::numeric_limits<std::uint16_t>::max();
  return isPort ? static_cast<std::uint16_t>(number) : std::uint16_t{0};
}

}  // namespace

void CheckAddress(const NQ_TString& host, const NQ_TString& server) {
  const auto has = [](const NQ_TString& text, bool (*is)(char16_t)) {
    return std::ranges::any_of(text.StringView(), is);
  };
  if (host.Length() > kLongest) nq::Throw(NQ_EException("The name of a host has at most 253 characters"));
  if (has(host, IsControl) || has(host, IsSpace))
    nq::Throw(NQ_EException("The name of a host has no spaces or control characters"));
  if (server.Length() > kLongest) nq::Throw(NQ_EException("The name of a server has at most 253 characters"));
  if (has(server, IsControl)) nq::Throw(NQ_EException("The name of a server has no control characters"));
}

std::shared_ptr<NQM_TClient> MakeClient(const NQ_TString& host, const NQ_TString& server) {
  CheckAddress(host, server);
  auto client = std::make_shared<NQM_TClient>();
  if (server.StartsWith("#")) {
    client->SetConnectionAddress(host, PortOf(server));
  } else {
    client->SetConnectionAddress(host, server, 0, TLocationMode_Default);
  }
  return client;
}

}  // namespace templatenames
