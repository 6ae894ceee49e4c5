// What the types make of the values that lookups give.
#include "NQ_TBoxed.h"
#include "Support.h"

namespace names_test {
namespace {

NQ_TAny answer;
bool Answer(const NQ_TString&, NQ_TDict*, TName*, NQ_TAny& value) {
  value = answer;
  return true;
}

TEST(Production, ValuesOfLookups) {
  const struct {
    const char* definition;
    NQ_TAny answer;
    const char *token, *resolved, *stored = nullptr;  // none: the value stays
  } rows[] = {
      {"text A = x", 5, "A", "!"},
      {"text A = x", NQ_TAny::Illegal(), "A", "!"},
      {"text A = x", NQ_TURL(S("ftp://h/a/b")), "A format=\"%d%d\"", "file://h/a/b"},
      {"url A = file://h/a", "<N/>y", "A", "7y"},
      {"number A = 5", 41, "A format=\"%03d\"", "041", "41"},  // numbers are stored as shown
      {"number A = 5", "41", "A", "!"},
      {"number A = 5", 4.0, "A", "!"},
      {"number A = 5", true, "A", "!"},
      {"auto A = 5", 41, "A", "42", "42"},
      {"auto A = 5", "x", "A", "!"},
      {"auto A = 5; format A = %n", 41, "A", "!"},
      {"time A", 5, "A", "!"},
      {"time A", NQ_TTime::FromMilliseconds(1.6e12), "A format=\"%Y\"", "2020"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.definition) + ", answer " + Text(row.answer) + ": " + row.token);
    Names names(std::string("number N = 7; ") + row.definition);
    const NQ_TAny before = names.GetValue("A");
    answer = row.answer;
    names.SetLookupHandler("A", Answer, false);
    EXPECT_EQ(ResolvedToken(names, row.token), row.resolved);
    EXPECT_EQ(Text(names.GetValue("A")), row.stored == nullptr ? Text(before) : row.stored);
  }
  const auto clock = NQ_TTime::SetClock([] { return 1.7e12; });
  Names names("time T");
  EXPECT_EQ(Resolved(names, "<T/>"), Text(NQ_TTime().Format("%X")));
  NQ_TTime::SetClock(clock);
}

}  // namespace
}  // namespace names_test
