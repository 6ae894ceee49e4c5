#include "JsonNode.h"

#include <limits>

#include "Errors.h"

namespace {

std::string KindOf(const TJson& value) {
  switch (value.type()) {
    case TJson::value_t::null:
      return "null";
    case TJson::value_t::boolean:
      return value.get<bool>() ? "true" : "false";
    case TJson::value_t::string:
      return "a string";
    case TJson::value_t::array:
      return "an array";
    case TJson::value_t::object:
      return "an object";
    default:
      return value.dump();  // a number
  }
}

}  // namespace

NQ_TString TJsonNode::Text() const {
  if (!value_.is_string()) FailKind("a string");
  return NQ_TString(std::string_view(value_.get_ref<const std::string&>()));
}

std::int32_t TJsonNode::Int32() const {
  using TLimits = std::numeric_limits<std::int32_t>;
  if (!value_.is_number_integer()) FailKind("an integer");
  const bool tooLarge = value_.is_number_unsigned() && value_.get<std::uint64_t>() > TLimits::max();
  if (tooLarge || value_.get<std::int64_t>() < TLimits::min()) FailKind("an integer of 32 bits");
  return value_.get<std::int32_t>();
}

const TJson::object_t& TJsonNode::Members() const {
  if (!value_.is_object()) FailKind("an object");
  return value_.get_ref<const TJson::object_t&>();
}

const TJson* TJsonNode::Wrapped(std::string_view key) const {
  if (!value_.is_object() || value_.size() != 1) return nullptr;
  const auto& member = value_.get_ref<const TJson::object_t&>().front();
  return member.first == key ? &member.second : nullptr;
}

void TJsonNode::Fail(const std::string& what) const {
  const std::string path = Path();
  throw TInputError(file_ + ": " + (path.empty() ? "" : path + ": ") + what);
}

void TJsonNode::FailKind(const std::string& expected) const {
  Fail("expected " + expected + ", got " + KindOf(value_));
}

std::string TJsonNode::Path() const { return parent_ == nullptr ? std::string() : PathTo(parent_->Path(), key_); }
