#include "VexoEngines.h"

namespace bench {
namespace {

// Told apart from every expected text: a run in which a token failed must not count as right.
constexpr const char* kTokenFailed = "(Resolve reported a failed token)";

NQ_TString Wide(std::string_view text) { return NQ_TString(text.data(), int(text.size())); }

}  // namespace

Registry MakeRegistry(const Workload& w) {
  auto registry = std::make_shared<TName>();
  for (const Name& name : w.names) {
    const NQ_TString key = Wide(name.key);
    const bool number = name.number >= 0;
    registry->Define(key, number ? TName::TName_TypeNumber : TName::TName_TypeString, TName::TName_LookupValue);
    if (number)
      registry->SetValue(key, name.number);
    else
      registry->SetValue(key, Wide(w.Value(name)));
  }
  return registry;
}

VexoString::VexoString(Registry registry, const std::string& text) : registry_(std::move(registry)), in_(Wide(text)) {}

std::string VexoString::Text() const { return resolved_ ? out_.c_str() : kTokenFailed; }

void VexoUtf8::Resolve(std::string_view text) {
  const NQ_TString in(text.data(), int(text.size()));
  resolved_ &= registry_->Resolve(in, out_);
  text_ = out_.c_str();
}

std::string VexoUtf8::Text() const { return resolved_ ? text_ : kTokenFailed; }

}  // namespace bench
