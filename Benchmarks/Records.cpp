#include "Records.h"

#include "CFS/Server/cfs_tproxy.h"
#include "NQM_TServices.h"

namespace bench {
namespace {

NQ_TString Key(std::size_t number) { return NQ_TString("name" + std::to_string(number)); }

NQ_TTree Records() {
  NQ_TTree records;
  for (std::size_t i = 0; i < kRecords; ++i) {
    NQ_TTree record;
    record.Add("Type", "Name").Add("Value", NQ_TString("value " + std::to_string(i)));
    record.Add("Category", "job").Add("Description", NQ_TString("Description " + std::to_string(i)));
    record.Add("Info", NQ_TString("info" + std::to_string(i))).Add("LocalizationFile", "shop");
    records.Add(Key(i), std::move(record));
  }
  return records;
}

std::string Text(std::size_t count, const NQ_TString& last) {
  return std::to_string(count) + ' ' + std::string(last.Narrow());
}

void LoadInto(TName& names, CFS_TProxy& configuration) {
  names.Define(configuration, "tree", "set", "scope", "*", false);
}

}  // namespace

std::string RecordsExpected() { return Text(kRecords, NQ_TString("value " + std::to_string(kRecords - 1))); }

// ---- dictionaries

DictionariesAlone::DictionariesAlone() : records_(Records()) {}

void DictionariesAlone::Run() {
  static const NQ_TString type("Type"), value("Value"), format("Format"), category("Category"),
      typeHandler("TypeHandler"), lookupHandler("LookupHandler"), description("Description"), info("Info"),
      localizationFile("LocalizationFile"), userDefined("UserDefined");
  entries_ = NQ_TDict(128);
  for (NQ_TConstIterator i(records_); !i.IsDone(); i.Next()) {
    const auto& record = *i.Value().As<NQ_TTree>();
    NQ_TDict entry;
    entry.Add(format, "%s").Add(category, NQ_TAny(record.At(category))).Add(type, 0);
    entry.Add(typeHandler, 1).Add(value, NQ_TAny(record.At(value))).Add(lookupHandler, 1);
    entry.Add(info, NQ_TAny(record.At(info))).Add(description, NQ_TAny(record.At(description)));
    entry.Add(localizationFile, NQ_TAny(record.At(localizationFile))).Add(userDefined, false);
    entries_.Add(i.Key(), std::move(entry));
  }
}

std::string DictionariesAlone::Text() const {
  const auto* const last = entries_.Get<NQ_TDict>(Key(kRecords - 1));
  return bench::Text(entries_.Size(), last == nullptr ? NQ_TString() : *last->Get<NQ_TString>("Value"));
}

// ---- records

RecordsLoaded::RecordsLoaded() : configuration_(std::make_unique<CFS_TProxy>()) {
  // Read once, by the first run: what a server takes to answer is not what is measured.
  configuration_->AddCacheRoot("Resources");
  configuration_->SetConnectionAddress({}, "bench records", 0, TLocationMode_Default);
  NQM_TServices::OfProcess()->Add({}, "bench records", [](const NQ_TDict&) {
    NQ_TTree resources, tree, set;
    set.Add("scope", "records");
    tree.Add("set", std::move(set));
    resources.Add("tree", std::move(tree)).Add("records", Records());
    return NQ_TAny(std::move(resources));
  });
}

RecordsLoaded::~RecordsLoaded() { NQM_TServices::OfProcess()->Remove({}, "bench records"); }

void RecordsLoaded::Run() {
  names_ = std::make_unique<TName>();
  LoadInto(*names_, *configuration_);
}

std::string RecordsLoaded::Text() const {
  NQ_TString last;
  names_->ResolveTokenEx(Key(kRecords - 1), last);
  return bench::Text(names_->GetTNames().Count(), last);
}

// ---- kept replies

Registry CachedRegistry(const Workload& w) {
  auto registry = std::make_shared<TName>();
  NQM_TServices::OfProcess()->Add({}, "bench replies", [](const NQ_TDict& request) { return request.At("P1"); });
  NQ_TString ignored;
  for (const Name& name : w.names) {
    const NQ_TString key(name.key);
    NQ_TTree record;
    record.Add("Type", "Name").Add("Server", "bench replies").Add("Method", "Get").Add("Cached", true);
    record.Add("P1", NQ_TString(w.Value(name)));
    registry->Define(key, record, false);
    registry->ResolveTokenEx(key, ignored);
  }
  NQM_TServices::OfProcess()->Remove({}, "bench replies");  // nothing is to be asked any more
  return registry;
}

}  // namespace bench
