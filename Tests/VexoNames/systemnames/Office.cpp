#include "systemnames/Office.h"

#include <nlohmann/json.hpp>

#include "NQ_TTime.h"
#include "NQ_TTree.h"

namespace system_test {
namespace {

using TJson = nlohmann::ordered_json;

NQ_TAny Value(const TJson& json);

template <class Dict>
NQ_TAny Members(const TJson& json) {
  Dict all;
  for (const auto& [key, value] : json.items()) all.Add(S(key), Value(value));
  return all;
}

NQ_TAny Value(const TJson& json) {
  if (json.is_null()) return {};
  if (json.is_boolean()) return json.get<bool>();
  if (json.is_number_float()) return json.get<double>();
  if (json.is_number()) return json.get<int>();
  if (json.is_string()) return S(json.get<std::string>());
  if (json.is_array()) {
    NQ_TArray all;
    for (const TJson& value : json) all.Add(Value(value));
    return all;
  }
  if (json.contains("$url")) return U(json["$url"].get<std::string>());
  if (json.contains("$time")) return NQ_TTime::FromMilliseconds(json["$time"].get<double>());
  if (json.contains("$illegal")) return NQ_TAny::Illegal();
  return json.contains("$tree") ? Members<NQ_TTree>(json["$tree"]) : Members<NQ_TDict>(json);
}

}  // namespace

NQ_TAny J(std::string_view json) { return Value(TJson::parse(json)); }

Office::Office(std::string_view json) {
  const NQ_TDict all = Dict(json);
  for (NQ_TConstIterator i(all); !i.IsDone(); i.Next()) Reply(Text(i.Key()), i.Value());
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

NQ_TAny Office::Answer(const std::string& service, const NQ_TDict& request) {
  const std::lock_guard guard(lock_);
  const std::string method = Text(request.At("M"));
  const bool isRead = method == "[]";
  std::string key = service + " " + (isRead ? Text(request.At("P1")) : method);
  const auto reply = replies_.find(key);
  if (isRead && request.HasKey("PZIPPED")) key += " zipped";
  ++counts_[key];
  const auto* const arguments = request.Get<NQ_TArray>("Parameters");
  if (!isRead && request.HasKey("P1")) key += " " + Text(request.At("P1"));
  if (arguments != nullptr) key += " " + Text(*arguments->At(0));
  asked_ += (asked_.empty() ? "" : "; ") + key;
  lastRequest_ = Text(NQ_TAny(request));
  if (reply == replies_.end()) nq::Throw(NQ_EException("There is no reply"));
  return reply->second;
}

}  // namespace system_test
