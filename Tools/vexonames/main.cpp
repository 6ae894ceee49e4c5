// vexonames: tries templates without a program around them. README.md beside this file is its manual.
//
//   Options                     the command line
//   Context, Records, Task,
//   KeyTable                    the context file; JsonFile, JsonNode: JSON with good manners
//   *Command, Displayed         the commands
//   Resolution, ProblemText     a template with all there is to say about it; EngineLog: what the engine logs
//   Streams, Text, TimeText, Suggest, Errors
#include <csignal>
#include <iostream>

#include "Commands.h"
#include "Context.h"
#include "Errors.h"
#include "NQM_TClient.h"
#include "NQM_TGrpcTransport.h"
#include "NQ_EException.h"
#include "Text.h"
#include "TimeText.h"

namespace {

// Counted in UTF-16 units, per template: room for any text that a person would look at, and a value that doubles
// itself again and again ends before it takes all memory.
constexpr std::int64_t kMostCharacters = std::int64_t{16} * 1024 * 1024;

double fixedNow = 0;

void UseNow(const NQ_TTime& now) {
  fixedNow = now.Milliseconds();
  NQ_TTime::SetClock([] { return fixedNow; });
}

int Run(const TOptions& options) {
  if (options.zone && !UseZone(*options.zone))
    throw TInputError("--zone: the system knows no time zone '" + Printable(*options.zone) + "'");
  if (options.now) UseNow(*options.now);
  TTask task;  // outlives the names
  TName names;
  TNameLimits limits;
  limits.characters = kMostCharacters;
  names.SetLimits(limits);
  TEngineLog log(options.debug > 0);
  names.SetDebugLevel(options.debug);
  const auto services = std::make_shared<NQM_TServices>();
  std::shared_ptr<NQM_ITransport> transport = services;
  if (options.connect) transport = std::make_shared<NQM_TGrpcTransport>();
  const auto calls = std::make_shared<TServiceCalls>(transport, options.connect.value_or(NQM_TAddress()));
  NQM_TClient::SetTransport(calls);
  TContext context{names, *services, task};
  if (options.context) ReadContext(*options.context, context);
  if (options.command == TOptions::TCommand::Serve) return RunServe(services, options);
  calls->Say(options.requests);
  LoadDefinitions(context, *calls, log);
  if (options.connect || services->Find({{}, "CFS"}) != nullptr) task.Define(names, *calls);
  task.Reset(names, 0, *calls);
  switch (options.command) {
    case TOptions::TCommand::Resolve:
      return RunResolve(names, task, log, *calls, options);
    case TOptions::TCommand::Names:
      return RunNames(names, options);
    case TOptions::TCommand::Serve:
      break;
    case TOptions::TCommand::Translate:
      return RunTranslate(names, options);
  }
  return kExitBadInput;
}

}  // namespace

int main(int argc, char** argv) {
  std::signal(SIGPIPE, SIG_IGN);        // writing then fails, which is said
  setenv("GRPC_VERBOSITY", "NONE", 0);  // what fails on the network is said here, in one line
  try {
    TOptions options;
    if (const std::optional<int> end = ParseOptions(argc, argv, options)) return *end;
    return Run(options);
  } catch (const TInputError& error) {
    std::cerr << "vexonames: " << error.what() << '\n';
  } catch (const TServiceError& error) {
    std::cerr << "vexonames: " << error.what() << '\n';
    return kExitServiceFailed;
  } catch (const NQ_EException& error) {
    std::cerr << "vexonames: " << error << '\n';
  } catch (const std::exception& error) {
    std::cerr << "vexonames: " << error.what() << '\n';
  }
  return kExitBadInput;
}
