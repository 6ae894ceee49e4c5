// A concrete packer: objects as bytes, and back.
//
//   NQ_TPacker packer;
//   packer.PackAny(value);
//   NQ_TAny again = NQ_TUnpacker(packer.Bytes()).UnpackAny();
#pragma once

#include <cstddef>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "NQ_IPackable.h"
#include "NQ_TAny.h"
#include "NQ_TString.h"

/// Collects the packed form in memory. One thread at a time.
///
/// Format: every item is one tag byte and its content. 'b' and one byte; 'i' and four, 'd' and eight bytes, the lowest
/// first; 's', a four-byte length and UTF-16 units, the low byte first; '{' or '}' and a class name as 's' item; a
/// variant is '0' (null), '-' (illegal), or '*', the class identity and the content between '{' and '}' of the class.
class NQ_EXPORT NQ_TPacker final : public NQ_IPacking {
 public:
  void BeginClass(const char* name) override;
  void EndClass(const char* name) override;
  void PackBool(bool value) override;
  void PackInt32(std::int32_t value) override;
  void PackDouble(double value) override;
  void PackString(const NQ_TString& value) override;
  /// An object held by reference is packed like a copy of it; one that cannot be packed throws NQ_EException.
  void PackAny(const NQ_TAny& value) override;

  const std::string& Bytes() const { return bytes_; }

 private:
  void Put(char tag, std::uint64_t value, unsigned size);

  std::string bytes_;
};

/// Reads what an NQ_TPacker wrote. The bytes are not trusted: whatever does not fit throws NQ_EException, and objects
/// nest at most 200 deep, and there are no more items than allowed. One thread at a time.
class NQ_EXPORT NQ_TUnpacker final : public NQ_IUnpacking {
 public:
  /// The bytes must stay in place while they are read. Items are variants and texts, names of classes included: one
  /// byte of them may become a hundred in memory.
  explicit NQ_TUnpacker(std::string_view bytes, std::size_t maxItems = std::numeric_limits<std::size_t>::max());

  void BeginClass(const char* name) override;
  void EndClass(const char* name) override;
  bool UnpackBool() override;
  std::int32_t UnpackInt32() override;
  double UnpackDouble() override;
  NQ_TString UnpackString() override;
  NQ_TAny UnpackAny() override;

  bool AtEnd() const { return rest_.empty(); }
  std::size_t ItemsLeft() const { return itemsLeft_; }

 private:
  std::string_view Take(std::size_t count);
  char TakeTag();
  void Expect(char tag);
  void CountItem();
  std::uint64_t Number(char tag, unsigned size);

  std::string_view rest_;
  std::size_t itemsLeft_;
  int depth_ = 0;
};
