// Suggestions while names come, go and hide.
#include "engine/NameSuggestions.h"

#include "Support.h"
#include "engine/AttributeKeys.h"

namespace templatenames {
namespace {

TEST(NameSuggestions, FollowTheRegistry) {
  TNameStore store;
  TNameSuggestions suggestions;
  const auto nearest = [&](const char* key) { return suggestions.NearestName(NQ_TString(key), store); };
  const auto hide = [&](const char* name, const char* visibility) {
    store.Find(NQ_TString(name))->Add(Keys().visibility, NQ_TString(visibility));
  };
  EXPECT_EQ(nearest("jobcustmer"), "");
  store.Add(NQ_TString("jobcustomer"));
  EXPECT_EQ(nearest("jobcustmer"), "jobcustomer");
  store.Add(NQ_TString("jobcustmers"));
  EXPECT_EQ(nearest("jobcustmers"), "jobcustmers");
  hide("jobcustmers", "0");
  EXPECT_EQ(nearest("jobcustmers"), "jobcustomer");
  hide("jobcustmers", "1");
  EXPECT_EQ(nearest("jobcustmers"), "jobcustmers");
  store.Remove(NQ_TString("jobcustmers"));
  store.Add(NQ_TString("taskname"));
  EXPECT_EQ(nearest("jobcustmers"), "jobcustomer");
  EXPECT_EQ(nearest("tasknam"), "taskname");
  store.RemoveAll();
  for (const char* const name : {"file", "filespec"}) store.Add(NQ_TString(name));
  EXPECT_EQ(nearest("tasknam"), "");
  EXPECT_EQ(nearest("filespek"), "filespec");
}

}  // namespace
}  // namespace templatenames
