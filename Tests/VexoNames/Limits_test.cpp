// Templates, values and definitions that mean harm, where a row of Cases.txt cannot hold them.
#include "Support.h"

namespace names_test {
namespace {

TEST(Limits, ValuesThatDoubleEachOther) {
  Names names("number N = 7; text d0 = 0123456789");
  for (int i = 1; i <= 60; ++i) {
    const std::string below = "<d" + std::to_string(i - 1) + "/>";
    Do(names, "text d" + std::to_string(i) + " = " + below + below);
  }
  for (const char* limit : {"limit tokens = 10000", "limit characters = 10000"}) {
    names.SetLimits({});
    Do(names, limit);
    const std::string resolved = Resolved(names, "<d55/><N/>");
    EXPECT_TRUE(resolved.starts_with("! ") && resolved.size() < 200'000U);
    EXPECT_EQ(Resolved(names, "<d5/><N/>"), Repeated("0123456789", 32) + "7");
  }
}

// Of searches that each take their time, some end before all of it is over; one that takes longer is stopped.
TEST(Limits, SlowExpressionsEndTogether) {
  for (const int length : {4'000, 65'000}) {
    Names names("number N = 7; limit regexMilliseconds = 100; text A = " + Repeated("x", length));
    const Output messages;
    const std::string token = "<A regex=\"()(?=x*[yw])\"/>",
                      resolved = Resolved(names, Repeated(token, 2'000) + "<N/>");
    EXPECT_TRUE(resolved.starts_with("! " + token) && resolved.ends_with(token + "7")) << length;
    EXPECT_EQ(resolved.size() < 2'000 * token.size(), length == 4'000) << length;
  }
}

TEST(Limits, HarmfulExpressionsEnd) {
  for (const std::string& pattern :
       {std::string("(a*)*b"), std::string("((a?){3000})a{3000}b"), Repeated("(a?", 200) + Repeated(")", 200) + "b()",
        std::string("((?:a|(?1)a)*)b"), Repeated("(", 5000), std::string("((((a{1,1000}){1,1000}){1,1000}){1,1000})"),
        std::string("(\\C)\xC3")}) {
    Names names("number N = 7; text A = " + Repeated("a", 3000));
    Do(names, "limit regexMatch = 10000; limit regexRecursion = 1000; regex A = " + pattern);
    Output messages;
    const std::string resolved = Resolved(names, "<A/><N/>");
    EXPECT_TRUE(resolved == "! <A/>7" || resolved == "7") << pattern.substr(0, 40) << resolved;
    EXPECT_LT(messages.Take().size(), 40'000U);
  }
}

}  // namespace
}  // namespace names_test
