// A JSON value that knows where it stands, so that what is wrong with it can be said in one place.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "JsonFile.h"
#include "NQ_TString.h"

/// A view of a value of a file: neither the file's name nor the value is copied. Refusals are TInputErrors:
///
///   shop.json: names.inputnr.Value: expected an integer, got a string
class TJsonNode {
 public:
  TJsonNode(const std::string& file, const TJson& value) : file_(file), value_(value) {}
  TJsonNode(const TJsonNode& parent, std::string_view key, const TJson& value)
      : file_(parent.file_), value_(value), parent_(&parent), key_(key) {}

  const TJson& Value() const { return value_; }
  std::string_view Key() const { return key_; }

  NQ_TString Text() const;
  std::int32_t Int32() const;
  const TJson::object_t& Members() const;

  /// The only member of an object such as {"$time": ...}, or null when the value is anything else.
  const TJson* Wrapped(std::string_view key) const;

  [[noreturn]] void Fail(const std::string& what) const;
  /// "expected ..., got ..."
  [[noreturn]] void FailKind(const std::string& expected) const;

 private:
  std::string Path() const;

  const std::string& file_;
  const TJson& value_;
  const TJsonNode* parent_ = nullptr;
  std::string_view key_;
};
