// Services as a test sees them: what was asked, in order, and what was replied.
#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "NQM_TClient.h"
#include "Support.h"

namespace names_test {

/// Takes every request of the process while it lives, and notes it as "host:port {M = Get, ...}" or
/// "service@host {M = Get, ...}". The reply is what the function gives or throws.
class Services {
 public:
  using Answer = std::function<NQ_TAny(const NQ_TDict& request)>;

  explicit Services(Answer answer)
      : transport_(std::make_shared<TTransport>(std::move(answer))), before_(NQM_TClient::SetTransport(transport_)) {}
  ~Services() { NQM_TClient::SetTransport(before_); }
  Services(const Services&) = delete;
  Services& operator=(const Services&) = delete;

  /// The requests since the last call of this.
  std::vector<std::string> Asked() {
    const std::lock_guard guard(transport_->lock);
    return std::exchange(transport_->asked, {});
  }

 private:
  struct TTransport final : NQM_ITransport {
    explicit TTransport(Answer given) : answer(std::move(given)) {}
    NQ_TAny Call(const NQM_TAddress& address, const NQ_TDict& request, std::chrono::milliseconds) override {
      const std::lock_guard guard(lock);
      asked.push_back(Text(address.Text()) + (address.mode == 0 ? " " : " in another mode ") + Text(NQ_TAny(request)));
      return answer(request);
    }

    std::recursive_mutex lock;
    std::vector<std::string> asked;
    Answer answer;
  };

  std::shared_ptr<TTransport> transport_;
  std::shared_ptr<NQM_ITransport> before_;
};

}  // namespace names_test
