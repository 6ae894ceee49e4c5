#include "Services.h"

#include <charconv>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "CFS/Server/cfs_exceptions.h"
#include "JsonValue.h"
#include "KeyTable.h"
#include "NQ_TArray.h"
#include "NQ_TTree.h"

namespace {

constexpr const char* kConfiguration = "CFS";

bool SameValue(const NQ_TAny& a, const NQ_TAny& b);

bool SameMembers(const NQ_TDict& a, const NQ_TDict& b) {
  if (a.Size() != b.Size()) return false;
  for (NQ_TConstIterator i(a); !i.IsDone(); i.Next()) {
    const NQ_TAny* const other = b.ValueOfKey(i.Key());
    if (other == nullptr || !SameValue(i.Value(), *other)) return false;
  }
  return true;
}

bool SameElements(const NQ_TArray& a, const NQ_TArray& b) {
  if (a.Count() != b.Count()) return false;
  for (unsigned int i = 0; i < a.Count(); ++i) {
    if (!SameValue(*a.At(i), *b.At(i))) return false;
  }
  return true;
}

// A JSON object is a tree here, where a request may have a plain dictionary.
bool SameValue(const NQ_TAny& a, const NQ_TAny& b) {
  const auto* const members = a.As<NQ_TDict>();
  const auto* const otherMembers = b.As<NQ_TDict>();
  if (members != nullptr && otherMembers != nullptr) return SameMembers(*members, *otherMembers);
  const auto* const elements = a.As<NQ_TArray>();
  const auto* const otherElements = b.As<NQ_TArray>();
  if (elements != nullptr && otherElements != nullptr) return SameElements(*elements, *otherElements);
  return a == b;
}

/// What a service does with some of its requests.
struct TReplyRow {
  NQ_TString method{};
  NQ_TDict params{};
  std::optional<NQ_TAny> reply{};
  std::optional<NQ_TString> failure{};

  bool Fits(const NQ_TDict& request) const {
    const auto* const asked = request.Get<NQ_TString>("M");
    if (asked == nullptr || *asked != method) return false;
    for (NQ_TConstIterator i(params); !i.IsDone(); i.Next()) {
      const NQ_TAny* const given = request.ValueOfKey(i.Key());
      if (given == nullptr || !SameValue(i.Value(), *given)) return false;
    }
    return true;
  }
};

void ReadMethod(const TJsonNode& value, TReplyRow& row) { row.method = value.Text(); }
void ReadReply(const TJsonNode& value, TReplyRow& row) { row.reply = ReadValue(value); }
void ReadFailure(const TJsonNode& value, TReplyRow& row) { row.failure = value.Text(); }

void ReadParams(const TJsonNode& value, TReplyRow& row) {
  for (const auto& [key, param] : value.Members())
    row.params.Add(NQ_TString(std::string_view(key)), ReadValue(TJsonNode(value, key, param)));
}

constexpr TKeyRow<TReplyRow> kRowKeys[] = {
    {"Method", &ReadMethod},
    {"Params", &ReadParams},
    {"Reply", &ReadReply},
    {"Failure", &ReadFailure},
};

std::vector<TReplyRow> ReadRows(const TJsonNode& array) {
  if (!array.Value().is_array()) array.FailKind("an array of replies");
  std::vector<TReplyRow> rows;
  for (const TJson& value : array.Value()) {
    const std::string place = std::to_string(rows.size());
    const TJsonNode node(array, place, value);
    TReplyRow& row = rows.emplace_back();
    ReadMembers(node, kRowKeys, row);
    if (row.method.Empty()) node.Fail("\"Method\" is missing");
    if (row.reply.has_value() == row.failure.has_value()) node.Fail("expected either \"Reply\" or \"Failure\"");
  }
  return rows;
}

NQ_TAny Answer(const std::vector<TReplyRow>& rows, const NQ_TDict& request) {
  for (const TReplyRow& row : rows) {
    if (!row.Fits(request)) continue;
    if (row.failure) nq::Throw(NQ_EException(*row.failure));
    return *row.reply;
  }
  nq::Throw(NQ_EException("the context file has no reply to this request", request));
}

const NQ_TAny& ValueAt(const NQ_TTree& configuration, const NQ_TString& path) {
  try {
    return configuration.ValueAtPath(path.StartsWith("/") ? path.Substring(1) : path, "/");
  } catch (const NQ_EException&) {
    nq::Throw(CFS_EIllegalPath(NQ_TString("the configuration has no path ") + path, path));
  }
}

NQ_TAny ReadPaths(const NQ_TTree& configuration, const NQ_TDict& request) {
  if (const auto* const path = request.Get<NQ_TString>("P1")) return ValueAt(configuration, *path);
  const auto* const paths = request.Get<NQ_TArray>("P1");
  if (paths == nullptr) nq::Throw(NQ_EException("reading the configuration needs a path", request));
  NQ_TDict values;
  for (NQ_TConstIterator i(*paths); !i.IsDone(); i.Next()) {
    const auto path = i.Value().ValueOr<NQ_TString>({});
    values.Add(path, NQ_TAny(ValueAt(configuration, path)));
  }
  return values;
}

// 0 for a service with a name of its own.
std::uint16_t PortOf(const TJsonNode& service) {
  const std::string_view key = service.Key();
  if (!key.starts_with('#')) return 0;
  std::uint16_t port = 0;
  std::from_chars(key.data() + 1, key.data() + key.size(), port);
  if (port == 0 || key.substr(1) != std::to_string(port)) service.Fail("after # stands a port, 1 to 65535");
  return port;
}

}  // namespace

void ReadServices(const TJsonNode& object, NQM_TServices& services) {
  for (const auto& [key, value] : object.Members()) {
    const TJsonNode node(object, key, value);
    const NQ_TString name{std::string_view(key)};
    if (name.Empty()) node.Fail("a service needs a name, or # and a port");
    if (services.Find({{}, name}) != nullptr) node.Fail("this is the service of \"config\"");
    const NQM_TService service = [rows = ReadRows(node)](const NQ_TDict& request) { return Answer(rows, request); };
    services.Add({}, name, service);
    // Clients of the library ask a server at its port without a name.
    if (const std::uint16_t port = PortOf(node); port != 0) services.Add({}, port, service);
  }
}

void ReadConfiguration(const TJsonNode& object, NQM_TServices& services) {
  object.Members();  // has to be an object
  const NQ_TAny value = ReadValue(object);
  const auto* const tree = value.As<NQ_TTree>();
  if (tree == nullptr) object.Fail("expected a tree");
  if (services.Find({{}, kConfiguration}) != nullptr) object.Fail("\"services\" has a service CFS already");
  services.Add({}, kConfiguration, [tree = *tree](const NQ_TDict& request) {
    const auto* const method = request.Get<NQ_TString>("M");
    if (method != nullptr && *method == "ServerTreeName") return ValueAt(tree, *method);
    if (method == nullptr || *method != "[]")
      nq::Throw(NQ_EException("the configuration server of a context file only reads", request));
    return ReadPaths(tree, request);
  });
}
