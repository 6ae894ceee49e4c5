#include "Groups.h"

#include "DateTokens.h"
#include "FormatterAlone.h"
#include "NumberTokens.h"
#include "Records.h"
#include "ReferenceEngines.h"
#include "RegexTokens.h"
#include "Subjects.h"
#include "Task.h"
#include "TextTokens.h"
#include "VexoEngines.h"
#include "formatting/date/DateTime.h"
#include "formatting/number/FormatNumber.h"
#include "formatting/text/FormatText.h"

namespace bench {
namespace {

template <class Engine>
std::unique_ptr<Subject> SteadyOn(const char* name, const Workload& w) {
  return std::make_unique<Steady<Engine>>(name, w.tokens, w.Expected(), std::make_unique<Engine>(w));
}

Subjects SteadySubjects(const Workload& w) {
  Subjects subjects;
  subjects.push_back(SteadyOn<Memcpy>("memcpy", w));
  subjects.push_back(SteadyOn<Hand8>("hand8", w));
  subjects.push_back(SteadyOn<CTemplate>("ctemplate", w));
  subjects.push_back(SteadyOn<VexoString>("vexo", w));
  subjects.push_back(SteadyOn<VexoUtf8>("vexo_utf8", w));
  return subjects;
}

template <class Engine>
std::unique_ptr<Subject> TwoThreads(const char* name, const Workload& w,
                                    const typename OnTwoThreads<Engine>::Make& make) {
  return std::make_unique<OnTwoThreads<Engine>>(name, w.tokens, w.Expected(), make);
}

template <class Engine>
std::unique_ptr<Subject> TwoThreads(const char* name, const Workload& w) {
  return TwoThreads<Engine>(name, w, [&w] { return std::make_unique<Engine>(w); });
}

Subjects ThreadedSubjects() {
  const Workload w = FilePath();
  const Registry shared = MakeRegistry(w);
  Subjects subjects;
  subjects.push_back(TwoThreads<Memcpy>("memcpy", w));
  subjects.push_back(TwoThreads<Hand8>("hand8", w));
  subjects.push_back(TwoThreads<CTemplate>("ctemplate", w));
  subjects.push_back(TwoThreads<VexoString>("vexo", w));
  subjects.push_back(TwoThreads<VexoUtf8>("vexo_utf8", w));
  subjects.push_back(
      TwoThreads<VexoString>("vexo_shared", w, [&] { return std::make_unique<VexoString>(shared, w.Template()); }));
  return subjects;
}

template <class Engine>
std::unique_ptr<Subject> FirstSightOn(const char* name, const Workload& w) {
  return std::make_unique<FirstSight<Engine>>(name, w, std::make_unique<Engine>(w));
}

Subjects FirstSightSubjects(const Workload& w) {
  Subjects subjects;
  subjects.push_back(FirstSightOn<Hand8>("hand8", w));
  subjects.push_back(FirstSightOn<VexoString>("vexo", w));
  subjects.push_back(FirstSightOn<VexoUtf8>("vexo_utf8", w));
  return subjects;
}

Subjects RegexSubjects(const Patterns& patterns) {
  const Workload w = FileNameRegistry();
  const auto steady = [&w]<class Engine>(const char* name, std::unique_ptr<Engine> engine) {
    return std::make_unique<Steady<Engine>>(name, w.tokens, RegexExpected(), std::move(engine));
  };
  const Registry registry = MakeRegistry(w);
  const std::string text = RegexTemplate(patterns);
  Subjects subjects;
  subjects.push_back(steady("pcre_each_time", std::make_unique<PcreEachTime>(patterns)));
  subjects.push_back(steady("vexo", std::make_unique<VexoString>(registry, text)));
  subjects.push_back(steady("vexo_utf8", std::make_unique<VexoUtf8>(registry, text)));
  return subjects;
}

Subjects DateSubjects(const DateTask& task) {
  const Workload w = FourDates(task);
  const auto steady = [&]<class Engine>(const char* name, std::unique_ptr<Engine> engine) {
    return std::make_unique<Steady<Engine>>(name, w.tokens, task.expected, std::move(engine));
  };
  const Registry registry = DateRegistry(task);
  Subjects subjects;
  subjects.push_back(steady("icu_each_time", std::make_unique<IcuEachTime>(task)));
  const auto format = [](const NQ_TDict& options, NQ_TString& value) {
    return templatenames::FormatDateTimeValue(options, value, nullptr).written;
  };
  subjects.push_back(steady("formatter", std::make_unique<FormatterAlone>(w, DateOptions(task), format)));
  subjects.push_back(steady("vexo", std::make_unique<VexoString>(registry, w.Template())));
  subjects.push_back(steady("vexo_utf8", std::make_unique<VexoUtf8>(registry, w.Template())));
  return subjects;
}

Subjects NumberSubjects() {
  const Workload w = FourNumbers();
  const auto steady = [&w]<class Engine>(const char* name, std::unique_ptr<Engine> engine) {
    return std::make_unique<Steady<Engine>>(name, w.tokens, NumbersExpected(), std::move(engine));
  };
  const Registry registry = NumberRegistry();
  Subjects subjects;
  subjects.push_back(steady("streams_each_time", std::make_unique<StreamsEachTime>()));
  const auto format = [](const NQ_TDict& options, NQ_TString& value) {
    return templatenames::FormatNumber(options, value).kind == templatenames::TNumberOutcome::TKind::Written;
  };
  subjects.push_back(steady("formatter", std::make_unique<FormatterAlone>(w, NumberOptions(), format)));
  subjects.push_back(steady("vexo", std::make_unique<VexoString>(registry, w.Template())));
  subjects.push_back(steady("vexo_utf8", std::make_unique<VexoUtf8>(registry, w.Template())));
  return subjects;
}

Subjects TextSubjects(const Encoding& encoding) {
  const Workload w = FourLines();
  const auto steady = [&]<class Engine>(const char* name, std::unique_ptr<Engine> engine) {
    return std::make_unique<Steady<Engine>>(name, w.tokens, encoding.expected, std::move(engine));
  };
  const Registry registry = TextRegistry(encoding);
  const auto format = [](const NQ_TDict& options, NQ_TString& value) {
    return templatenames::FormatText(options, std::size_t{64} * 1024 * 1024, value);
  };
  Subjects subjects;
  subjects.push_back(steady("by_hand", std::make_unique<EncodedByHand>(encoding)));
  subjects.push_back(steady("formatter", std::make_unique<FormatterAlone>(w, encoding.options(), format)));
  subjects.push_back(steady("vexo", std::make_unique<VexoString>(registry, w.Template())));
  subjects.push_back(steady("vexo_utf8", std::make_unique<VexoUtf8>(registry, w.Template())));
  return subjects;
}

Subjects KeptReplies() {
  const Workload w = ManyTokens(1'000, 20);
  const auto steady = [&w](const char* name, const Registry& registry) {
    return std::make_unique<Steady<VexoString>>(name, w.tokens, w.Expected(),
                                                std::make_unique<VexoString>(registry, w.Template()));
  };
  Subjects subjects;
  subjects.push_back(steady("plain", MakeRegistry(w)));
  subjects.push_back(steady("cached_query", CachedRegistry(w)));
  return subjects;
}

Subjects LoadedRecords() {
  const auto steady = []<class Engine>(const char* name, std::unique_ptr<Engine> engine) {
    return std::make_unique<Steady<Engine>>(name, kRecords, RecordsExpected(), std::move(engine));
  };
  Subjects subjects;
  subjects.push_back(steady("dictionaries", std::make_unique<DictionariesAlone>()));
  subjects.push_back(steady("records", std::make_unique<RecordsLoaded>()));
  return subjects;
}

Subjects TaskSubjects() {
  const auto steady = []<class Engine>(const char* name, const std::string& expected, std::unique_ptr<Engine> engine) {
    return std::make_unique<Steady<Engine>>(name, 1, expected, std::move(engine));
  };
  const auto services = std::make_shared<TaskServices>();
  Subjects subjects;
  subjects.push_back(steady("task", TaskExpected(), std::make_unique<WholeTask>(services)));
  subjects.push_back(steady("reset", "cover.pdf", std::make_unique<ResetAlone>(services)));
  subjects.push_back(steady("services_alone", RequestsExpected(), std::make_unique<ServicesAlone>(services)));
  return subjects;
}

Subjects RegistrySizes() {
  const Workload few = SpreadNames(100), many = SpreadNames(kLargestRegistry);
  const Registry fewNames = MakeRegistry(few), manyNames = MakeRegistry(many);
  const auto steady = [](const char* name, const Workload& w, const Registry& registry) {
    return std::make_unique<Steady<VexoString>>(name, w.tokens, w.Expected(),
                                                std::make_unique<VexoString>(registry, w.Template()));
  };
  const auto first = [](const char* name, const Workload& w, const Registry& registry) {
    return std::make_unique<FirstSight<VexoString>>(name, w, std::make_unique<VexoString>(registry, ""));
  };
  Subjects subjects;
  subjects.push_back(SteadyOn<Hand8>("hand8 100", few));
  subjects.push_back(SteadyOn<Hand8>("hand8 1M", many));
  subjects.push_back(steady("vexo 100", few, fewNames));
  subjects.push_back(steady("vexo 1M", many, manyNames));
  subjects.push_back(first("vexo first 100", few, fewNames));
  subjects.push_back(first("vexo first 1M", many, manyNames));
  return subjects;
}

Subjects TemplateSizes() {
  const Workload small = ManyTokens(1'000, 20), large = ManyTokens(1'000'000, 20);
  Subjects subjects;
  subjects.push_back(SteadyOn<Hand8>("hand8 1k", small));
  subjects.push_back(SteadyOn<Hand8>("hand8 1M", large));
  subjects.push_back(SteadyOn<VexoString>("vexo 1k", small));
  subjects.push_back(SteadyOn<VexoString>("vexo 1M", large));
  return subjects;
}

constexpr double kSlice = 1e6;
constexpr double kThreadSlice = 4e6;  // starting a thread must stay small beside it
constexpr double kLargeSlice = 2e7;   // near what one run of the largest text takes

constexpr Group kGroups[] = {
    {"W1", "a file path, 4 tokens, one %03d", [] { return SteadySubjects(FilePath()); }, kSlice, 1},
    {"W2", "1,000 tokens, 100 names", [] { return SteadySubjects(ManyTokens(1'000, 20)); }, kSlice, 1},
    {"W3", "10 MB of text, 100,000 tokens", [] { return SteadySubjects(ManyTokens(100'000, 90)); }, kSlice, 4},
    {"W4", "nested values, 13 tokens", [] { return SteadySubjects(Nested()); }, kSlice, 1},
    {"W5", "W1 on two threads", ThreadedSubjects, kThreadSlice, 1},
    {"first-W1", "W1, a new text in every run", [] { return FirstSightSubjects(FilePath()); }, kSlice, 1},
    {"first-W2", "W2, a new text in every run", [] { return FirstSightSubjects(ManyTokens(1'000, 20)); }, kSlice, 1},
    {"regex", "four regex tokens, one group each", [] { return RegexSubjects(kShortPatterns); }, kSlice, 1},
    {"regex-whole", "the same, each pattern for the whole value", [] { return RegexSubjects(kWholeNamePatterns); },
     kSlice, 1},
    {"date", "four dates, ISO to ISO", [] { return DateSubjects(kIsoDates); }, kSlice, 1},
    {"date-months", "four dates, digits to names of months", [] { return DateSubjects(kNamedMonths); }, kSlice, 1},
    {"date-zones", "four dates, digits to names of zones", [] { return DateSubjects(kNamedZones); }, kSlice, 1},
    {"number", "four numbers, converted from inches to millimetres", NumberSubjects, kSlice, 1},
    {"xml", "four lines of 75 characters as XML", [] { return TextSubjects(kXml); }, kSlice, 1},
    {"url", "the same lines as parts of a URL", [] { return TextSubjects(kUrl); }, kSlice, 1},
    {"custom", "the same lines, four characters replaced", [] { return TextSubjects(kCustom); }, kSlice, 1},
    {"queries", "W2, plain values and kept replies of services", KeptReplies, kSlice, 1},
    {"records", "10,000 definition records; a token is a record", LoadedRecords, kLargeSlice, 4},
    {"task", "a reset and 20 templates, services in this process; a token is a task", TaskSubjects, kSlice, 1, "tasks"},
    {"names", "100 tokens over registries of 100 and 1,000,000 names", RegistrySizes, kSlice, 1},
    {"tokens", "templates of 1,000 and 1,000,000 tokens", TemplateSizes, kLargeSlice, 10},
};

}  // namespace

std::span<const Group> AllGroups() { return kGroups; }

}  // namespace bench
