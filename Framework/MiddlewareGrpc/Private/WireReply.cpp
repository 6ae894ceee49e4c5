#include "Private/WireReply.h"

#include <zlib.h>

#include <exception>
#include <memory>

#include "Middleware.pb.h"
#include "NQM_ECallFailed.h"
#include "NQ_EException.h"
#include "NQ_TPacker.h"
#include "Private/WireText.h"
#include "Private/WireValue.h"

namespace nq::wire {

namespace {

namespace pb = vexonames::wire;

void Zip(const std::string& bytes, pb::Zipped& out) {
  std::string zipped(compressBound(bytes.size()), '\0');
  uLongf size = zipped.size();
  // The fastest level: the way is to become shorter, not the wait for the service longer.
  const int result = compress2(reinterpret_cast<Bytef*>(zipped.data()), &size,
                               reinterpret_cast<const Bytef*>(bytes.data()), bytes.size(), Z_BEST_SPEED);
  if (result != Z_OK) nq::Throw(NQ_EException("it cannot be compressed"));
  zipped.resize(size);
  out.set_size(static_cast<std::uint32_t>(bytes.size()));
  out.set_zlib(std::move(zipped));
}

std::string Unzipped(const pb::Zipped& zipped, const NQM_TGrpcLimits& limits) {
  if (zipped.size() > limits.maxMessageBytes) nq::Throw(NQ_EException("it is larger than allowed"));
  std::string bytes(zipped.size(), '\0');
  uLongf size = bytes.size();
  const int result = uncompress(reinterpret_cast<Bytef*>(bytes.data()), &size,
                                reinterpret_cast<const Bytef*>(zipped.zlib().data()), zipped.zlib().size());
  if (result != Z_OK || size != bytes.size()) nq::Throw(NQ_EException("its compressed form is malformed"));
  return bytes;
}

void WriteException(const NQ_EException& exception, pb::Exception& out) {
  out.set_class_name(exception.ClassName());
  out.set_message(FromText(exception.NQ_Message()));
  out.set_file(FromText(exception.NQ_ExceptionFile()));
  out.set_line(exception.NQ_ExceptionLine());
  try {
    out.set_data(FromValue(exception.NQ_Data()));
  } catch (const NQ_EException&) {  // data that cannot travel stays behind; the text matters
  }
}

std::unique_ptr<NQ_EException> NewException(const std::string& className) {
  const NQ_TClass* const known = NQ_TClass::Find(className);
  if (known == nullptr || known->Factory() == nullptr || !known->HasSuperclass(NQ_EException::NQ_ClassName()))
    return std::make_unique<NQ_EException>();
  std::unique_ptr<NQ_TObject> object(known->Factory()());
  auto* const exception = dynamic_cast<NQ_EException*>(object.get());
  if (exception == nullptr) return std::make_unique<NQ_EException>();
  static_cast<void>(object.release());
  return std::unique_ptr<NQ_EException>(exception);
}

std::unique_ptr<NQ_EException> ToException(const pb::Exception& in, const NQM_TGrpcLimits& limits) {
  auto exception = NewException(in.class_name());
  exception->NQ_Message() = ToText(in.message());
  if (!in.data().empty()) exception->NQ_Data() = ToValue(in.data(), limits);
  exception->__PREPARE_FOR_THROW__(in.line(), ToText(in.file()).c_str());
  return exception;
}

void WriteValue(const NQ_TAny& value, bool zip, pb::Reply& out) {
  std::string bytes = FromValue(value);
  if (zip) {
    Zip(bytes, *out.mutable_zipped_value());
  } else {
    out.set_value(std::move(bytes));
  }
}

}  // namespace

void WriteReply(const std::function<NQ_TAny()>& service, bool zip, pb::Reply& out) {
  NQ_TAny value;
  try {
    value = service();
  } catch (const NQ_EException& exception) {
    return WriteException(exception, *out.mutable_exception());
  } catch (const std::exception& error) {
    return out.set_error(FromText(error.what()));
  } catch (...) {
    return out.set_error("an unknown exception");
  }
  try {
    WriteValue(value, zip, out);
  } catch (const NQ_EException& unfit) {
    out.set_error(FromText(NQ_TString("the service's reply cannot travel: ") + unfit.NQ_Message()));
  }
}

void RegisterExceptions() {
  NQM_ECallFailed::NQ_ClassObject();
  NQ_TUnpacker registersTheBasicClasses({});
}

NQ_TAny ReadReply(const pb::Reply& reply, const NQM_TGrpcLimits& limits) {
  NQ_TAny value;
  std::unique_ptr<NQ_EException> exception;
  try {
    switch (reply.outcome_case()) {
      case pb::Reply::kValue:
        value = ToValue(reply.value(), limits);
        break;
      case pb::Reply::kZippedValue:
        value = ToValue(Unzipped(reply.zipped_value(), limits), limits);
        break;
      case pb::Reply::kException:
        exception = ToException(reply.exception(), limits);
        break;
      case pb::Reply::kError:
        throw TFailed{ToText(reply.error())};
      case pb::Reply::OUTCOME_NOT_SET:
        throw TUnfit{"the reply is empty"};
    }
  } catch (const NQ_EException& unfit) {
    throw TUnfit{NQ_TString("the reply is malformed: ") + unfit.NQ_Message()};
  }
  if (exception != nullptr) exception->NQ_Throw();
  return value;
}

}  // namespace nq::wire
