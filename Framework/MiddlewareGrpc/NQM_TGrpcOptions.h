// What the network transport and the server have in common.
#pragma once

#include <cstddef>
#include <string>

/// Certificates for TLS, in PEM form. With none of them given, connections are neither encrypted nor authenticated.
struct NQM_TGrpcCredentials {
  /// Whom to trust. A client that gives none trusts what the system trusts; a server that gives some asks its clients
  /// for certificates and serves no other.
  std::string rootCertificates;
  /// One's own certificate and its key; a server needs both.
  std::string certificateChain;
  std::string privateKey;

  bool AreGiven() const { return !rootCertificates.empty() || !certificateChain.empty() || !privateKey.empty(); }
};

/// Bounds on what is taken from the other side, and sent to it. Values in values in a message are bounded to 200 deep.
struct NQM_TGrpcLimits {
  /// Bytes of a request or a reply, also after a compressed one is unpacked.
  /// A server takes requests of twice as many bytes at a time; what comes beyond is refused.
  std::size_t maxMessageBytes = 64 * 1024 * 1024;
  /// Values and texts in a request or a reply: two bytes of a message may become a hundred in memory.
  std::size_t maxValues = 4'000'000;
};
