// VexoNameUtils: names of the workflow's parameters, which XML files may override while the job runs.
#include "Handlers.h"
#include "NQ_TArray.h"
#include "NameGroups.h"
#include "Reading.h"
#include "SimpleXMLValueLookup.h"
#include "Ticket/AT_TTicket.h"
#include "text/Log.h"

using systemnames::Held;
using templatenames::Log;

namespace {

constexpr char kPrefix[] = "wfp.";
constexpr char kCategory[] = "wfp";
constexpr char kFiles[] = "--LiveXMLList--";  // among the parameters: an array of URLs

NQ_TString NameOf(const NQ_TString& parameter) { return TName::Encode(NQ_TString(kPrefix) + parameter); }

// Reads one parameter; what goes wrong is told, and the next one follows.
void UpdateWorkflowParameterFromXML(int debugLevel, const NQ_TURL& file, const NQ_TString& parameter, TName& names,
                                    const xmlvalues::TValueIndex& values) {
  try {
    if (debugLevel > 5) Log(6, "Looking up Workflow Parameter ", parameter);
    NQ_TString value;
    if (!xmlvalues::LookupXMLValue(values, parameter, value)) return;
    if (debugLevel > 3) Log(4, "Updating Workflow Parameter ", parameter, " with value=", value, " from ", file);
    names.SetValue(NameOf(parameter), value);
  } catch (const NQ_EException& error) {
    Log(0, "Lookup of '", parameter, "' in ", file, " failed\n", error);
  } catch (...) {
    Log(0, "Lookup of '", parameter, "' in ", file, " failed");
  }
}

}  // namespace

void VexoNameUtils::RedefineWorkflowParameterVexoNames(TName& names, const NQ_TDict& parameters) const {
  systemnames::UndefineCategory(names, kCategory);
  const bool live = parameters.HasKey(kFiles);
  for (NQ_TConstIterator i(parameters); !i.IsDone(); i.Next()) {
    const NQ_TString parameter = i.Key();
    const auto* const value = i.Value().As<NQ_TString>();
    if (parameter == kFiles || value == nullptr) continue;
    const NQ_TString name = NameOf(parameter);
    names.Define(name, TName::TName_TypeString, TName::TName_LookupValue);
    names.SetCategory(name, kCategory);
    if (live) {
      names.SetRawData(name, *value);
      names.SetLookupHandler(name, &handlers_->liveParameter, true);
    } else {
      names.SetValue(name, *value);
    }
  }
}

bool VexoNameUtils::LookupLiveXMLWorkflowParameter(const NQ_TString& key, NQ_TDict&, TName& names, NQ_TAny& value) {
  try {
    if (!names.HasValue(key)) {
      const NQ_TAny ticket = names.GetRawData("id");
      CalculateLiveWFPVexoNames(Held<AT_TTicket>(ticket).GetWorkflowParameters(), names);
    }
    value = names.GetValue(key);
    return true;
  } catch (const NQ_EException& error) {
    Log(0, "Looking up XML Workflow Parameters failed.  Caused by:\n", error);
  } catch (...) {
    Log(0, "Looking up XML Workflow Parameters failed.  Caused by:");
  }
  return false;
}

void VexoNameUtils::CalculateLiveWFPVexoNames(const NQ_TDict& parameters, TName& names) const {
  if (debugLevel_ > 0) Log(1, "Resolving XML Workflow Parameters");
  const NQ_TList keys = names.GetTNames();
  for (NQ_TConstIterator i(keys); !i.IsDone(); i.Next()) {
    const auto& key = *i.Value().As<NQ_TString>();
    if (names.GetCategory(key) == kCategory) names.SetValue(key, Held<NQ_TString>(names.GetRawData(key)));
  }
  const NQ_TAny* const list = parameters.ValueOfKey(kFiles);
  if (list == nullptr) return;
  for (NQ_TConstIterator i(Held<NQ_TArray>(*list)); !i.IsDone(); i.Next())
    UpdateWorkflowParametersFromXML(Held<NQ_TURL>(i.Value()), parameters, names);
}

void VexoNameUtils::UpdateWorkflowParametersFromXML(const NQ_TURL& file, const NQ_TDict& parameters,
                                                    TName& names) const {
  try {
    static const xmlvalues::TXMLPlatform platform;
    if (debugLevel_ > 1) Log(2, "Looking up XML Workflow Parameters in ", file);
    const xmlvalues::TXMLUse use;  // the process may end meanwhile, and the platform with it
    const xmlvalues::TDocument document(xmlvalues::LoadXMLDocument(file, names.GetLimits()));
    const xmlvalues::TValueIndex values = xmlvalues::IndexXMLValues(document->getDocumentElement());
    for (NQ_TConstIterator i(parameters); !i.IsDone(); i.Next()) {
      const NQ_TString parameter = i.Key();
      if (!(parameter == kFiles)) UpdateWorkflowParameterFromXML(debugLevel_, file, parameter, names, values);
    }
  } catch (const NQ_EException& error) {
    Log(0, "Failed to update Workflow Parameter values from '", file, "'.  Caused by:\n", error);
  } catch (...) {
    Log(0, "Failed to update Workflow Parameter values from ", file);
  }
}
