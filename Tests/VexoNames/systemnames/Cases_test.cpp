// The cases of Cases.txt, which says how they are written.
#include <regex>
#include <sstream>

#include "NQ_TBoxed.h"
#include "systemnames/Office.h"

using namespace system_test;  // the cases use all of it

namespace {

/// "key=value category/userinfo", for all names with a dot.
std::string Parameters(TName& names) {
  std::string all;
  const NQ_TList keys = names.GetTNames();
  for (NQ_TConstIterator i(keys); !i.IsDone(); i.Next()) {
    const auto& key = *i.Value().As<NQ_TString>();
    if (key.Find('.') < 0) continue;
    all += (all.empty() ? "" : "; ") + Text(key) + "=" + Text(names.GetValue(key)) + " " +
           Text(names.GetCategory(key)) + "/" + Text(names.GetUserInfo(key)) +
           (names.GetVisibility(key) == "0" ? " hidden" : "");
  }
  return all;
}

std::string Keys(TName& names) {
  std::string all;
  const NQ_TList keys = names.GetTNames();
  for (NQ_TConstIterator i(keys); !i.IsDone(); i.Next()) {
    const auto& key = *i.Value().As<NQ_TString>();
    all += (all.empty() ? "" : " ") + Text(key) + (names.IsUserDefined(key) ? "*" : "");
  }
  return all;
}

std::string Context(TName& names, const AT_TTicket* ticket) {
  std::string all;
  for (const char* const key : {"filespec", "vexoid", "filetype", "containername", "jobid", "vxtpr:productid"})
    all += (all.empty() ? "" : " ") + Text(names.GetRawData(key));
  all += ",";
  for (const char* const key : {"id", "taskowner"}) {
    const void* const held = std::as_const(names).GetRawData(key).DynamicCast("AT_TTicket");
    all += held == nullptr ? " none" : held == ticket ? " ticket" : " another";
  }
  all += ",";
  for (const char* const key : {"jobid", "inputnr", "joburl", "jobfolderurl"}) all += " " + Text(names.GetValue(key));
  return all;
}

/// The log's lines on operations, short ("SetValue jp.a; GetTNames"), as far as the expression matches them.
std::string ShortLog(const std::string& log, const std::string& wanted) {
  static const std::regex line(R"re(TName::(\w+): (?:(?:\(\w+\) )?Key = "([^"]*)")?.*)re");
  std::istringstream lines(log);
  std::string all, one;
  for (std::smatch found; std::getline(lines, one);) {
    if (!std::regex_match(one, found, line)) continue;
    const std::string operation = found.str(1) + (found.length(2) == 0 ? "" : " " + found.str(2));
    if (std::regex_match(operation, std::regex(wanted))) all += (all.empty() ? "" : "; ") + operation;
  }
  return all;
}

/// One line, with what holds for it.
class Case {
 public:
  Case(std::string script, NQ_TDict given, std::string_view line)
      : script_(std::move(script)), given_(std::move(given)) {
    std::string* const parts[] = {nullptr, &text_, &result_, &requests_};
    for (std::string* const part : parts) {
      const std::size_t arrow = std::min(line.find(" =>"), line.size());
      if (part == nullptr)
        Merge(given_, line.substr(0, arrow));
      else
        *part = line.substr(0, arrow);
      line.remove_prefix(std::min(arrow + 4, line.size()));
    }
    script_ = Text(Given("names", S(script_)));
    const NQ_TAny* const ticket = given_.ValueOfKey("ticket");
    if (ticket == nullptr || !ticket->IsNull()) ticket_ = std::make_unique<AT_TDictTicket>(Given("ticket", NQ_TDict()));
  }

  static void Merge(NQ_TDict& all, std::string_view json) {
    const NQ_TDict more = Dict(json);
    for (NQ_TConstIterator i(more); !i.IsDone(); i.Next()) all.Add(i.Key(), NQ_TAny(i.Value()));
  }

  void Check() {
    Office office;
    Offer(office);
    given_.HasKey("log") ? CheckLog(office) : CheckResult(office);
  }

 private:
  void Offer(Office& office) const {
    for (NQ_TConstIterator i(given_); !i.IsDone(); i.Next()) {
      const auto* const reply = i.Value().As<NQ_TDict>();
      if (reply == nullptr || !reply->HasKey("$fails")) office.Reply(Text(i.Key()), i.Value());
    }
    Prepare(office);
  }

  void CheckLog(Office& office) const {
    Names names(script_);
    names.SetDebugLevel(2);
    Output output;
    Hand(office, names);
    Found(names);
    EXPECT_EQ(ShortLog(output.Take(), Text(Given("log", NQ_TString()))), result_);
  }

  void CheckResult(Office& office) const {
    Names names(script_);
    TNameLimits limits;
    limits.queries = Given("queries", NQ_TInt32(limits.queries)).Value();
    names.SetLimits(limits);
    std::string thrown;
    testing::internal::CaptureStderr();  // where failed definitions are told
    try {
      Hand(office, names);
    } catch (const NQ_EException& error) {
      thrown = std::string("throws ") + error.ClassName() + ": " + Text(error.NQ_Message());
      if (names.IsDefined("jobid")) thrown += ", jobid " + Text(names.GetRawData("jobid"));
    }
    testing::internal::GetCapturedStderr();
    const std::string atOnce = office.Asked();
    const std::string found = thrown.empty() ? Found(names) : thrown;
    const std::string later = office.Asked();
    const std::string asked =
        atOnce + (atOnce.empty() ? "" : " then") + (!atOnce.empty() && !later.empty() ? " " : "") + later;
    EXPECT_EQ(found, result_);
    EXPECT_EQ(requests_.starts_with("{") ? office.LastRequest() : asked, requests_);
    if (!thrown.empty() || found.starts_with("! ")) return;
    EXPECT_EQ(Found(names), result_);
    EXPECT_EQ(office.Asked(), "") << "once per reset";
    office.system.ResetVexoNames(names, U("file:///"), NQ_TDict(), NQ_TDict());
    EXPECT_TRUE(text_ != "parameters" || Parameters(names).empty()) << "the next task has its own";
  }

  void Prepare(Office& office) const {
    const std::string without = Text(Given("without", NQ_TString()));
    if (without == "cfs") office.system.SetCFSProxy(nullptr);
    if (without == "jobs") office.system.SetJobProxy(nullptr);
    if (without == "products") office.system.SetProductProxy(nullptr);
    if (without == "containers") office.system.SetContainerProxy(nullptr);
    if (without == "files") office.system.SetFileServerProxy(nullptr);
    if (without == "accounts") office.system.SetAAProxy(nullptr);
  }

  void Hand(Office& office, TName& names) const {
    const auto hand = [&](const auto&... context) {
      given_.HasKey("define") ? office.system.DefineVexoNames(names, context...)
                              : office.system.ResetVexoNames(names, context...);
    };
    const auto* const number = given_.Get<NQ_TInt32>("number");
    const auto* const job = given_.Get<NQ_TDict>("job");
    const NQ_TDict part = Given("product", NQ_TDict());
    const NQ_TURL url(Given("input", S("file://h/s/in/a")));
    if (const auto* const task = given_.Get<NQ_TString>("task"))
      office.system.DefineSystemVexoNames(names, *task);
    else if (number != nullptr)
      hand(*ticket_, static_cast<unsigned int>(number->Value()));
    else if (job == nullptr)
      hand(url, *ticket_);
    else if (ticket_ != nullptr)
      hand(url, *ticket_, *job, part);
    else
      hand(url, *job, part);
  }

  template <class T>
  T Given(const char* key, const T& otherwise) const {
    const NQ_TAny* const given = given_.ValueOfKey(key);
    return given == nullptr ? otherwise : given->ValueOr(otherwise);
  }

  std::string Found(TName& names) const {
    if (text_ == "parameters") return Parameters(names);
    if (text_ == "keys") return Keys(names);
    if (text_ == "reason") return Text(names.GetErrorReason());
    return text_ == "context" ? Context(names, ticket_.get()) : Resolved(names, text_);
  }

  std::string script_;
  NQ_TDict given_;
  std::string text_, result_, requests_;
  std::unique_ptr<const AT_TDictTicket> ticket_;
};

const rows_test::RowFile file("systemnames/Cases.txt", {"names:", "always:"}, [](const rows_test::Row& row) {
  const NQ_TTime::TClock before = NQ_TTime::SetClock([] { return 43'200'000.0; });
  const std::string always = row.Setting("always:");
  Case(row.Setting("names:"), always.empty() ? NQ_TDict() : Dict(always), row.text).Check();
  NQ_TTime::SetClock(before);
});

}  // namespace
