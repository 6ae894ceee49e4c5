// What the tests of the middleware share.
#pragma once

#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "Base/Support.h"
#include "NQM_TServices.h"
#include "NQ_TSocket.h"
#include "Rows.h"

namespace middleware_test {

using base_test::Printed;
using base_test::Thrown;

/// "host, service, port"; "here" is this computer's name.
inline NQM_TAddress Address(const std::string& text) {
  const auto parts = rows_test::Pieces(text, ", ");
  const NQ_TString host = parts.at(0) == "here" ? NQ_TSocket::HostName(false) : NQ_TString(parts.at(0));
  return {host, NQ_TString(parts.at(1)), static_cast<std::uint16_t>(std::stoi(parts.at(2)))};
}

/// A service of this process that is offered while the object lives, and notes each request as it prints.
class TOffered {
 public:
  TOffered(const char* name, NQM_TService answer) : name_(name), answer_(std::move(answer)) {
    NQM_TServices::OfProcess()->Add("", name_, [this](const NQ_TDict& request) { return Answer(request); });
  }
  ~TOffered() { NQM_TServices::OfProcess()->Remove("", name_); }
  TOffered(const TOffered&) = delete;
  TOffered& operator=(const TOffered&) = delete;

  /// The requests since the last call of this.
  std::vector<std::string> Requests() {
    const std::lock_guard guard(lock_);
    return std::exchange(requests_, {});
  }

 private:
  NQ_TAny Answer(const NQ_TDict& request) {
    {
      const std::lock_guard guard(lock_);
      requests_.push_back(Printed(request));
    }
    return answer_(request);
  }

  NQ_TString name_;
  NQM_TService answer_;
  std::mutex lock_;
  std::vector<std::string> requests_;
};

}  // namespace middleware_test
