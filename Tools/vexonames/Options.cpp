#include "Options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <iostream>

#include "Errors.h"
#include "Suggest.h"
#include "Text.h"
#include "TimeText.h"

namespace {

constexpr const char* kFooter = R"(
A template that begins with "-" goes after "--". Results go to standard output, what is to be said about them to
standard error. Ends with 0 when all was resolved, 1 when a token failed, 2 when something is wrong with the arguments,
the context file or the input, 3 when a service failed. "vexonames --help" shows the options that all commands share.

  vexonames resolve --context shop.json 'out/<<customer/>>_v<<version format="%03d"/>>.pdf'
  vexonames resolve --context shop.json --json < templates.txt
  vexonames resolve --context shop.json --connect srv1:8088 '<<stock/>> sheets'
  vexonames names --context shop.json
  vexonames translate --context shop.json --back 'out/[Customer].pdf')";

// The parser takes an argument in brackets for a list, and loses what follows "--" in a subcommand. A mark before such
// an argument, and before one that begins with the mark, keeps it whole; no other argument begins with it.
constexpr char kMark = '\x01';

std::vector<std::string> Marked(int count, const char* const* arguments) {
  std::vector<std::string> marked;
  bool onlyTexts = false;
  for (int i = 1; i < count; ++i) {
    std::string argument = arguments[i];
    if (argument == "--" && !onlyTexts) {
      onlyTexts = true;
      continue;
    }
    const bool inBrackets = argument.starts_with('[') && argument.ends_with(']');
    if (onlyTexts || inBrackets || argument.starts_with(kMark)) argument.insert(0, 1, kMark);
    marked.push_back(std::move(argument));
  }
  std::ranges::reverse(marked);  // the parser takes them from the end
  return marked;
}

std::vector<std::string> TextsOf(const CLI::Option& option) {
  std::vector<std::string> texts = option.results();
  for (std::string& text : texts) {
    if (text.starts_with(kMark)) text.erase(0, 1);
  }
  return texts;
}

void ReadText(const CLI::Option& option, std::string& text) {
  if (option.count() > 0) text = TextsOf(option).back();
}

std::optional<std::string> TextOf(const CLI::Option& option) {
  if (option.count() == 0) return std::nullopt;
  return TextsOf(option).back();
}

/// The parser, and its options as far as they are read after parsing.
struct TParser {
  CLI::App app{"Resolves templates of named values.", "vexonames"};
  CLI::Option* context;
  CLI::Option* connect;
  CLI::Option* json;
  CLI::Option* now;
  CLI::Option* zone;
  CLI::App* resolve;
  CLI::App* names;
  CLI::App* translate;
  CLI::App* serve;
  CLI::Option* templates;
  CLI::Option* texts;
  CLI::Option* prefix;
  CLI::Option* suffix;
  CLI::Option* host;
  bool asTable = false;

  explicit TParser(TOptions& options) {
    app.footer(kFooter);
    app.require_subcommand(1);
    app.fallthrough();
    app.set_version_flag("--version", std::string("vexonames ") + VEXONAMES_VERSION);
    context = app.add_option("--context", "JSON file that describes the names")->type_name("FILE");
    connect = app.add_option("--connect", "ask services there, not those of the context")->type_name("HOST:PORT");
    json = app.add_flag("--json")->description("one JSON object per line, for programs");
    now =
        app.add_option("--now", "time to use as the current one: 2026-05-17T13:05:00+02:00, or ms")->type_name("TIME");
    zone = app.add_option("--zone", "time zone, such as Europe/Paris")->type_name("NAME");
    app.add_flag("--requests", options.requests, "say on standard error what services are asked");
    app.add_option("--debug", options.debug, "the engine's log on standard error: 1 templates, 2 tokens")
        ->type_name("LEVEL")
        ->check(CLI::Range(0, 9));

    resolve = app.add_subcommand("resolve", "print templates with their tokens resolved");
    templates =
        resolve->add_option("TEMPLATE")->description("templates; without any, each line of standard input is one");
    resolve->add_flag("--table", asTable, "a report: each template with its result and what failed")->excludes(json);
    names = app.add_subcommand("names", "print the names: key, type, category, description, value");
    names->add_flag("--table", asTable, "aligned columns, as on a terminal")->excludes(json);
    translate = app.add_subcommand("translate", "print templates with descriptions in place of tokens");
    texts = translate->add_option("TEXT")->description("texts; without any, each line of standard input is one");
    prefix = translate->add_option("--prefix", "before a description (default: [)")->type_name("TEXT");
    suffix = translate->add_option("--suffix", "after a description (default: ])")->type_name("TEXT");
    translate->add_flag("--back", options.back, "from descriptions to tokens");
    serve = app.add_subcommand("serve", "offer the services of the context to other processes");
    host = serve->add_option("--host", "interface to listen on (default: localhost)")->type_name("HOST");
    serve->add_option("--port", options.servePort, "port to listen on (default: any free one)")->type_name("PORT");
    for (CLI::Option* option : {templates, texts})
      option->type_name("")->expected(CLI::detail::expected_max_vector_size);
  }
};

int Refuse(const std::string& what) {
  std::cerr << "vexonames: " << what << '\n';
  return kExitBadInput;
}

// The parser would only say that a command is missing.
std::optional<int> RefuseCommand(const CLI::App& app) {
  const std::vector<std::string> others = app.remaining();
  if (!app.get_subcommands().empty() || others.empty() || others.front().starts_with('-')) return std::nullopt;
  std::vector<NQ_TString> commands;
  for (const CLI::App* command : app.get_subcommands({})) commands.emplace_back(std::string_view(command->get_name()));
  const NQ_TString given{std::string_view(others.front())};
  return Refuse("there is no command '" + Printable(others.front()) + '\'' + Suggestion(given, commands));
}

// "srv1:8088", "[::1]:8088"
std::optional<NQM_TAddress> ParseAddress(std::string_view text) {
  const std::size_t colon = text.rfind(':');
  if (colon == std::string_view::npos || colon == 0) return std::nullopt;
  std::string_view host = text.substr(0, colon);
  if (host.starts_with('[') && host.ends_with(']')) host = host.substr(1, host.size() - 2);
  const std::string_view digits = text.substr(colon + 1);
  std::uint16_t port = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), port);
  if (error != std::errc() || end != digits.data() + digits.size() || port == 0) return std::nullopt;
  return NQM_TAddress{NQ_TString(host), {}, port};
}

std::optional<int> ReadPlaces(const TParser& parser, TOptions& options) {
  const std::optional<std::string> connect = TextOf(*parser.connect);
  const bool serves = options.command == TOptions::TCommand::Serve;
  if (serves && connect) return Refuse("serve offers the services of the context; it does not --connect");
  if (serves && !options.context) return Refuse("serve needs --context");
  if (!connect) return std::nullopt;
  options.connect = ParseAddress(*connect);
  if (!options.connect) return Refuse("--connect: '" + Printable(*connect) + "' is no HOST:PORT such as srv1:8088");
  return std::nullopt;
}

std::optional<int> Read(const TParser& parser, TOptions& options) {
  using TCommand = TOptions::TCommand;
  options.command = parser.resolve->parsed()     ? TCommand::Resolve
                    : parser.translate->parsed() ? TCommand::Translate
                    : parser.serve->parsed()     ? TCommand::Serve
                                                 : TCommand::Names;
  if (parser.json->count() > 0) options.form = TOptions::TForm::Json;
  if (parser.asTable) options.form = TOptions::TForm::Table;
  options.texts = TextsOf(options.command == TCommand::Translate ? *parser.texts : *parser.templates);
  options.context = TextOf(*parser.context);
  options.zone = TextOf(*parser.zone);
  ReadText(*parser.prefix, options.prefix);
  ReadText(*parser.suffix, options.suffix);
  ReadText(*parser.host, options.serveHost);
  if (const std::optional<std::string> now = TextOf(*parser.now)) {
    options.now = ParseTime(*now);
    if (!options.now)
      return Refuse("--now: '" + Printable(*now) +
                    "' is no time such as 2026-05-17T13:05:00+02:00, nor milliseconds since 1970");
  }
  if (options.prefix.empty() || options.suffix.empty()) return Refuse("--prefix and --suffix cannot be empty");
  return ReadPlaces(parser, options);
}

}  // namespace

std::optional<int> ParseOptions(int count, const char* const* arguments, TOptions& options) {
  TParser parser(options);
  try {
    parser.app.parse(Marked(count, arguments));
  } catch (const CLI::ParseError& end) {
    if (const std::optional<int> code = RefuseCommand(parser.app)) return code;
    const int code = parser.app.exit(end);
    return code == 0 && std::cout.flush() ? 0 : kExitBadInput;
  }
  return Read(parser, options);
}
