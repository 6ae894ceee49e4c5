#include "NQ_TDict.h"

#include <absl/container/flat_hash_set.h>

#include <atomic>
#include <iterator>
#include <memory>
#include <ostream>

#include "NQ_EException.h"
#include "NQ_Utf.h"

namespace {

/// A key that is looked for.
struct TWanted {
  explicit TWanted(const NQ_TString& key) : text(key.StringView()), hash(key.Hash()) {}
  TWanted(std::u16string_view keyText, std::uint64_t keyHash) : text(keyText), hash(keyHash) {}
  std::u16string_view text;
  std::uint64_t hash;
};

// Most dictionaries are small (the attributes of a name, the parameters of a request): below this many keys a walk
// over the hashes is as fast as an index and costs no memory.
constexpr unsigned int kKeysWithoutIndex = 8;

// One counter for all dictionaries: a version never comes back, even when contents are swapped or copied.
std::uint64_t NextVersion() {
  static std::atomic<std::uint64_t> last{0};
  thread_local std::uint64_t next = 0;
  thread_local std::uint64_t end = 0;
  if (next == end) {  // versions are handed out to threads in lots, so that threads do not contend for the counter
    constexpr std::uint64_t kLot = 1024;
    next = last.fetch_add(kLot, std::memory_order_relaxed) + 1;
    end = next + kLot;
  }
  return next++;
}

}  // namespace

/// The nodes in insertion order, and an index over them when they are many. Nodes never move.
class NQ_TDict::TContent {
 public:
  TContent() = default;
  TContent(const TContent& other) : TContent() {  // delegates, so that the nodes go when copying one throws
    Reserve(other.size_);
    for (const TNode* node = other.first_; node != nullptr; node = node->next) {
      Insert(node->key, node->hash).value = node->value;
    }
  }
  TContent& operator=(const TContent&) = delete;
  ~TContent() {
    while (first_ != nullptr) delete std::exchange(first_, first_->next);
  }

  void Reserve(unsigned int capacity) {
    if (capacity > kKeysWithoutIndex) index_.reserve(capacity);
  }

  TNode* Find(const NQ_TString& key) const { return Find(TWanted(key)); }

  TNode* Find(const TWanted& wanted) const {
    if (indexed_) {
      const auto found = index_.find(wanted);
      return found == index_.end() ? nullptr : *found;
    }
    for (TNode* node = first_; node != nullptr; node = node->next)
      if (TSameKey()(node, wanted)) return node;
    return nullptr;
  }

  TNode& FindOrInsert(const NQ_TString& key) {
    TNode* const found = Find(key);
    return found != nullptr ? *found : Insert(key, key.Hash());
  }

  void Remove(const NQ_TString& key) {
    TNode* const node = Find(key);
    if (node == nullptr) return;
    if (indexed_) index_.erase(node);
    (node->previous == nullptr ? first_ : node->previous->next) = node->next;
    (node->next == nullptr ? last_ : node->next->previous) = node->previous;
    --size_;
    version_ = NextVersion();
    delete node;
  }

  TNode* First() const { return first_; }
  unsigned int Size() const { return size_; }
  std::uint64_t Version() const { return version_; }

 private:
  struct THashOfNode {
    using is_transparent = void;
    std::size_t operator()(const TNode* node) const { return node->hash; }
    std::size_t operator()(const TWanted& wanted) const { return wanted.hash; }
  };

  struct TSameKey {
    using is_transparent = void;
    bool operator()(const TNode* a, const TNode* b) const { return a == b; }
    bool operator()(const TNode* node, const TWanted& wanted) const {
      return node->hash == wanted.hash && node->key.Equals(wanted.text);
    }
    bool operator()(const TWanted& wanted, const TNode* node) const { return (*this)(node, wanted); }
  };

  TNode& Insert(const NQ_TString& key, std::uint64_t hash) {
    std::unique_ptr<TNode> owned(new TNode{{key, {}}, hash, nullptr, last_});
    if (indexed_) index_.insert(owned.get());
    TNode* const node = owned.release();
    (last_ == nullptr ? first_ : last_->next) = node;
    last_ = node;
    ++size_;
    version_ = NextVersion();
    if (!indexed_ && size_ > kKeysWithoutIndex) BuildIndex();
    return *node;
  }

  void BuildIndex() {
    for (TNode* node = first_; node != nullptr; node = node->next) index_.insert(node);
    indexed_ = true;
  }

  absl::flat_hash_set<TNode*, THashOfNode, TSameKey> index_;
  TNode* first_ = nullptr;
  TNode* last_ = nullptr;
  unsigned int size_ = 0;
  bool indexed_ = false;
  std::uint64_t version_ = NextVersion();
};

NQ_TDict::NQ_TDict() = default;
NQ_TDict::NQ_TDict(unsigned int capacity) { shared_.Write().Reserve(capacity); }
NQ_TDict::NQ_TDict(const NQ_TDict& other) = default;
NQ_TDict::NQ_TDict(const NQ_TDict& other, unsigned int capacity) : shared_(other.shared_) {
  shared_.Write().Reserve(capacity);
}
NQ_TDict::NQ_TDict(NQ_TDict&& other) noexcept : shared_(std::move(other.shared_)) {}
NQ_TDict::NQ_TDict(std::initializer_list<NQ_TDictEntry> entries) {
  for (const auto& [key, value] : entries) Add(key, value);
}
NQ_TDict::~NQ_TDict() = default;
NQ_TDict& NQ_TDict::operator=(const NQ_TDict& other) {
  shared_ = other.shared_;
  return *this;
}
NQ_TDict& NQ_TDict::operator=(NQ_TDict&& other) noexcept {
  shared_ = std::move(other.shared_);
  return *this;
}

NQ_TDict& NQ_TDict::Add(const NQ_TString& key, NQ_TAny&& value) {
  shared_.Write(NextVersion()).FindOrInsert(key).value = std::move(value);
  return *this;
}

const NQ_TAny* NQ_TDict::ValueOfKey(const NQ_TString& key) const {
  const TContent* const content = shared_.Read();
  const TNode* const node = content == nullptr ? nullptr : content->Find(key);
  return node == nullptr ? nullptr : &node->value;
}

// A key of usual length needs no string of its own.
const NQ_TAny* NQ_TDict::ValueOfKey(const char* key) const {
  char16_t units[64];
  const std::string_view utf8(key == nullptr ? "" : key);
  if (utf8.size() > std::size(units)) return ValueOfKey(NQ_TString(utf8));
  const std::u16string_view text(units, nq::Utf8ToUtf16(utf8, units));
  return ValueOfText(text, NQ_TString::HashOf(text));
}

const NQ_TAny* NQ_TDict::ValueOfText(std::u16string_view key, std::uint64_t hash) const {
  const TContent* const content = shared_.Read();
  const TNode* const node = content == nullptr ? nullptr : content->Find(TWanted(key, hash));
  return node == nullptr ? nullptr : &node->value;
}

NQ_TAny* NQ_TDict::ValueOfKey(const NQ_TString& key) {
  if (!HasKey(key)) return nullptr;
  return &shared_.Lend().Find(key)->value;
}

NQ_TAny& NQ_TDict::operator[](const NQ_TString& key) { return shared_.Lend().FindOrInsert(key).value; }

const NQ_TAny& NQ_TDict::At(const NQ_TString& key) const {
  const NQ_TAny* const value = ValueOfKey(key);
  if (value == nullptr) nq::Throw(NQ_EException("The dictionary has no such key", key));
  return *value;
}

void NQ_TDict::Remove(const NQ_TString& key) {
  if (HasKey(key)) shared_.Write(NextVersion()).Remove(key);
}

void NQ_TDict::Clear() { shared_.Reset(); }

unsigned int NQ_TDict::Size() const { return shared_.Read() == nullptr ? 0 : shared_.Read()->Size(); }

std::uint64_t NQ_TDict::KeysVersion() const { return shared_.Read() == nullptr ? 0 : shared_.Read()->Version(); }

bool NQ_TDict::operator==(const NQ_TDict& other) const {
  if (shared_.Same(other.shared_)) return true;
  if (Size() != other.Size()) return false;
  for (const auto& [key, value] : *this) {
    const NQ_TAny* const theirs = other.ValueOfKey(key);
    if (theirs == nullptr || !(*theirs == value)) return false;
  }
  return true;
}

void NQ_TDict::PrintOn(std::ostream& out) const {
  const char* separator = "{";
  for (const auto& [key, value] : *this) {
    out << separator << key << " = " << value;
    separator = ", ";
  }
  out << (IsEmpty() ? "{}" : "}");
}

void NQ_TDict::NQ_Pack(NQ_IPacking& packing) const {
  packing.PackInt32(static_cast<std::int32_t>(Size()));
  for (const auto& [key, value] : *this) {
    packing.PackString(key);
    packing.PackAny(value);
  }
}

void NQ_TDict::NQ_Unpack(NQ_IUnpacking& unpacking) {
  Clear();
  for (std::uint32_t left = unpacking.UnpackCount(); left > 0; --left) {
    const NQ_TString key = unpacking.UnpackString();
    Add(key, unpacking.UnpackAny());
  }
}

NQ_TDict::TNode* NQ_TDict::FirstNode() const { return shared_.Read() == nullptr ? nullptr : shared_.Read()->First(); }

NQ_IIteratable::TPlace NQ_TDict::FirstPlace() const { return {FirstNode(), 0}; }

bool NQ_TDict::AtEnd(const TPlace& place) const { return place.node == nullptr; }

void NQ_TDict::Advance(TPlace& place) const { place.node = static_cast<const TNode*>(place.node)->next; }

NQ_TString NQ_TDict::KeyAt(const TPlace& place) const { return static_cast<const TNode*>(place.node)->key; }

const NQ_TAny& NQ_TDict::ValueAt(const TPlace& place) const { return static_cast<const TNode*>(place.node)->value; }

void NQ_TDict::PrepareToWrite() { shared_.Lend(); }
