// VexoNameUtils: names of the container that the input lies in.
#include "EngineAccess.h"
#include "Handlers.h"
#include "NameGroups.h"
#include "NameTables.h"
#include "Reading.h"
#include "Services/CW_TProxy.h"

using systemnames::Ask;
using systemnames::AttemptIfDefined;
using systemnames::Entry;
using systemnames::Held;
using systemnames::TextOrEmpty;

void VexoNameUtils::SetContainerLookupHandler(TName& names) const {
  systemnames::InstallAll(names, systemnames::kContainerNames, handlers_->container);
}

bool VexoNameUtils::LookupContainerInfo(const NQ_TString& key, NQ_TDict&, TName& names, NQ_TAny& value) {
  return systemnames::ValueOf(key, names, value, [&] {
    const NQ_TAny input = names.GetRawData("containername");
    const auto& url = Held<NQ_TURL>(input);
    CW_TProxy* const containers = containers_;
    const auto request = [&] { return containers->Call("FindParentContainer", url, false); };
    const NQ_TAny reply = containers == nullptr ? NQ_TAny() : Ask(names, request);
    CalculateContainerVexoNames(reply.ValueOr(NQ_TDict()), names);
  });
}

void VexoNameUtils::CalculateContainerVexoNames(const NQ_TDict& container, TName& names) {
  AttemptIfDefined(names, "containername",
                   [&](const NQ_TString& name) { names.SetValue(name, TextOrEmpty(container, "Name")); });
  AttemptIfDefined(names, "containerurl", [&](const NQ_TString& name) {
    const bool known = container.HasKey("URL");
    names.SetValue(name, known ? Entry<NQ_TURL>(container, "URL") : NQ_TURL(NQ_TString("file:///")));
  });
}
