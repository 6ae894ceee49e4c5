#include "systemnames/Office.h"

namespace system_test {

Office::Office() {
  const auto services = std::make_shared<NQM_TServices>();
  const auto offer = [&](const char* name, NQM_TClient& client) {
    client.SetConnectionAddress("", name, 0, TLocationMode_Default);
    services->Add("", name, [this, name](const NQ_TDict& request) { return Answer(name, request); });
  };
  offer("cfs", cfs), offer("jobs", jobs.Client()), offer("products", products.Client());
  offer("containers", containers), offer("files", files), offer("tasks", tasks), offer("accounts", accounts);
  before_ = NQM_TClient::SetTransport(services);
  system.SetCFSProxy(&cfs), system.SetJobProxy(&jobs), system.SetProductProxy(&products);
  system.SetContainerProxy(&containers), system.SetFileServerProxy(&files), system.SetTaskProxy(&tasks);
  system.SetAAProxy(&accounts);
}

Office::~Office() { NQM_TClient::SetTransport(before_); }

std::string Office::Asked() {
  const std::lock_guard guard(lock_);
  return std::exchange(asked_, "");
}

std::string Office::LastRequest() {
  const std::lock_guard guard(lock_);
  return lastRequest_;
}

int Office::Count(const std::string& request) {
  const std::lock_guard guard(lock_);
  return counts_[request];
}

NQ_TAny Office::Answer(const std::string& service, const NQ_TDict& request) {
  const std::lock_guard guard(lock_);
  const std::string method = Text(request.At("M"));
  const bool isRead = method == "[]";
  std::string key = service + " " + (isRead ? Text(request.At("P1")) : method);
  const auto reply = replies.find(key);
  if (isRead && request.HasKey("PZIPPED")) key += " zipped";
  ++counts_[key];
  const auto* const arguments = request.Get<NQ_TArray>("Parameters");
  if (!isRead && request.HasKey("P1")) key += " " + Text(request.At("P1"));
  if (arguments != nullptr) key += " " + Text(*arguments->At(0));
  asked_ += (asked_.empty() ? "" : "; ") + key;
  lastRequest_ = Text(NQ_TAny(request));
  if (reply == replies.end()) nq::Throw(NQ_EException("There is no reply"));
  return reply->second;
}

}  // namespace system_test
