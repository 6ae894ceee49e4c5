#include "Context.h"

#include <algorithm>
#include <filesystem>
#include <iostream>

#include "Errors.h"
#include "KeyTable.h"
#include "Records.h"
#include "Services.h"
#include "Text.h"

namespace {

void ReadNames(const TJsonNode& object, TContext& context) {
  for (const auto& [key, value] : object.Members()) ReadRecord(TJsonNode(object, key, value), context.names);
}

void ReadContextServices(const TJsonNode& object, TContext& context) { ReadServices(object, context.services); }
void ReadContextConfiguration(const TJsonNode& object, TContext& context) {
  ReadConfiguration(object, context.services);
}

// ---- loads

void ReadServerTree(const TJsonNode& value, TLoad& load) { load.serverTree = value.Text(); }
void ReadNameSet(const TJsonNode& value, TLoad& load) { load.nameSet = value.Text(); }
void ReadScope(const TJsonNode& value, TLoad& load) { load.scope = value.Text(); }
void ReadName(const TJsonNode& value, TLoad& load) { load.name = value.Text(); }

constexpr TKeyRow<TLoad> kLoadKeys[] = {
    {"serverTree", &ReadServerTree},
    {"nameSet", &ReadNameSet},
    {"scope", &ReadScope},
    {"name", &ReadName},
};

void ReadLoads(const TJsonNode& array, TContext& context) {
  if (!array.Value().is_array()) array.FailKind("an array of objects");
  for (const TJson& value : array.Value()) {
    const std::string place = std::to_string(context.loads.size());
    const TJsonNode node(array, place, value);
    TLoad& load = context.loads.emplace_back();
    ReadMembers(node, kLoadKeys, load);
    if (load.serverTree.Empty()) node.Fail("\"serverTree\" is missing");
    if (load.nameSet.Empty()) node.Fail("\"nameSet\" is missing");
  }
}

void ReadTask(const TJsonNode& object, TContext& context) { context.task.Read(object, context.folder); }

constexpr TKeyRow<TContext> kKeys[] = {
    {"names", &ReadNames},
    {"services", &ReadContextServices},
    {"config", &ReadContextConfiguration},
    {"load", &ReadLoads},
    {"task", &ReadTask},
};

void Say(std::string_view lines) {
  while (!lines.empty()) {
    const std::string_view line = lines.substr(0, lines.find('\n'));
    std::cerr << "vexonames: " << Printable(Shortened(line)) << '\n';
    lines.remove_prefix(std::min(line.size() + 1, lines.size()));
  }
}

}  // namespace

void ReadContext(const std::string& file, TContext& context) {
  const TJson json = ReadJsonFile(file);
  context.folder = std::filesystem::path(file).parent_path().string();
  ReadMembers(TJsonNode(file, json), kKeys, context);
}

void LoadDefinitions(const TContext& context, TServiceCalls& calls, TEngineLog& log) {
  for (const TLoad& load : context.loads) {
    context.names.SetError(TName::TName_ErrorNone);
    log.Take();
    const bool ok = context.names.Define(load.serverTree, load.nameSet, load.scope, load.name, false);
    for (const std::string& lines : log.Take()) {
      if (context.names.GetDebugLevel() == 0) Say(lines);  // else it was said already
    }
    if (ok) continue;
    const NQ_TString set = load.serverTree + "/" + load.nameSet + "/" + load.scope;
    const std::string what = "loading the definitions of " + Printable(set.Narrow()) + ": ";
    if (const std::string failure = calls.TakeFailure(); !failure.empty()) throw TServiceError(what + failure);
    throw TInputError(what + Printable(context.names.GetErrorReason().Narrow()));
  }
}
