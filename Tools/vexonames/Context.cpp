#include "Context.h"

#include "KeyTable.h"
#include "Records.h"

namespace {

void ReadNames(const TJsonNode& object, TName& names) {
  for (const auto& [key, value] : object.Members()) ReadRecord(TJsonNode(object, key, value), names);
}

constexpr TKeyRow<TName> kKeys[] = {
    {"names", &ReadNames},
};

}  // namespace

void ReadContext(const std::string& file, TName& names) {
  const TJson json = ReadJsonFile(file);
  ReadMembers(TJsonNode(file, json), kKeys, names);
}
