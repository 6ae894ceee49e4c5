// vexonames serve
#include <csignal>

#include "Commands.h"
#include "Errors.h"
#include "NQM_TGrpcServer.h"
#include "Streams.h"

int RunServe(const std::shared_ptr<NQM_TServices>& services, const TOptions& options) {
  // Blocked before the server starts its threads, so that nobody else takes them.
  sigset_t ends;
  sigemptyset(&ends);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&ends, signal);
  pthread_sigmask(SIG_BLOCK, &ends, nullptr);

  NQM_TGrpcServerOptions place;
  place.host = options.serveHost;
  place.port = options.servePort;
  NQM_TGrpcServer server(services, place);
  {
    TData data;
    data.Line("serving at " + place.host + ':' + std::to_string(server.Port()));
  }
  int signal = 0;
  sigwait(&ends, &signal);
  server.Stop(std::chrono::seconds(1));
  return kExitResolved;
}
