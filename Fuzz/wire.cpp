// Messages of the network from any bytes. The first byte chooses: a value, or a reply with a value, an exception or a
// compressed value in it. What is taken travels on unchanged; the rest is refused with a reason.
#include <cstdint>
#include <string>

#include "Fuzz.h"
#include "Middleware.pb.h"
#include "NQ_EException.h"
#include "Private/WireReply.h"
#include "Private/WireValue.h"

namespace {

using vexonames::wire::Reply;

constexpr NQM_TGrpcLimits kLimits = {.maxMessageBytes = 100'000, .maxValues = 10'000};

/// Each byte of a value comes back, and nothing of it is refused.
void CheckTravels(const NQ_TAny& value) {
  const std::string bytes = nq::wire::FromValue(value);
  fuzz::Check(nq::wire::FromValue(nq::wire::ToValue(bytes, {})) == bytes, "a value comes back unchanged");
  Reply reply;
  nq::wire::WriteReply([&] { return value; }, true, reply);
  fuzz::Check(nq::wire::FromValue(nq::wire::ReadReply(reply, {})) == bytes, "compressed, too");
}

void ReadOne(const Reply& reply) {
  try {
    CheckTravels(nq::wire::ReadReply(reply, kLimits));
  } catch (const NQ_EException& exception) {
    fuzz::Check(reply.has_exception(), "only what the service threw is thrown on");
    Reply again;
    nq::wire::WriteReply([&]() -> NQ_TAny { exception.NQ_Throw(); }, false, again);
    fuzz::Check(again.exception().class_name() == exception.ClassName(), "an exception travels as what it is");
  } catch (const nq::wire::TUnfit& unfit) {
    fuzz::Check(!unfit.reason.Empty(), "a refusal has a reason");
  } catch (const nq::wire::TFailed&) {
    fuzz::Check(reply.outcome_case() == Reply::kError, "a failure was one at the service");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::TInput input(data, size);
  Reply reply;
  if (input.Byte() % 2 == 0) {
    reply.set_value(std::string(input.Rest()));
  } else if (!reply.ParseFromString(std::string(input.Rest()))) {
    return 0;
  }
  ReadOne(reply);
  return 0;
}
