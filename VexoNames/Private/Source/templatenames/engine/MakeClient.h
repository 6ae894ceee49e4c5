// Clients by host and server.
#pragma once

#include <memory>

#include "NQM_TClient.h"

namespace templatenames {

/// Throws NQ_EException, which says what is wrong, unless these can be a host (empty: the local one) and a server; see
/// TNameProxyProvider.
void CheckAddress(const NQ_TString& host, const NQ_TString& server);

/// A client of the server, "#" and a port number or the name of a service, on the host. Throws as `CheckAddress`.
std::shared_ptr<NQM_TClient> MakeClient(const NQ_TString& host, const NQ_TString& server);

}  // namespace templatenames
