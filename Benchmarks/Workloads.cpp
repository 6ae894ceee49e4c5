#include "Workloads.h"

#include <cstdint>
#include <cstdio>

namespace bench {
namespace {

constexpr std::size_t kStampLength = 8;
constexpr std::size_t kNames = 100;

std::string Numbered(const char* prefix, std::size_t number, int digits) {
  char text[32];
  std::snprintf(text, sizeof text, "%s%0*zu", prefix, digits, number);
  return text;
}

// Not <random>: its distributions differ between libraries, and the texts must not.
class Random {
 public:
  std::uint32_t Below(std::uint32_t bound) { return ((state_ = state_ * 1664525u + 1013904223u) >> 8) % bound; }

 private:
  std::uint32_t state_ = 12345;
};

std::string RandomValue(Random& random) {
  std::string value(8 + random.Below(13), 'a');
  for (char& c : value) c = char('a' + random.Below(26));
  return value;
}

std::string RandomLiteral(Random& random, std::size_t length) {
  std::string literal(length, ' ');
  for (char& c : literal) {
    const std::uint32_t k = random.Below(32);
    if (k < 26) c = char('A' + k);
  }
  return literal;
}

}  // namespace

std::string Workload::Template(const Pieces& parts) const {
  return Write(
      parts, [](const Name& name, bool padded) { return "<<" + name.key + (padded ? " format=\"%03d\"/>>" : "/>>"); });
}

std::string Workload::Value(const Name& name) const { return name.nested.empty() ? name.value : Template(name.nested); }

std::string Workload::Expected(const Pieces& parts) const {
  return Write(parts,
               [this](const Name& name, bool) { return name.nested.empty() ? name.value : Expected(name.nested); });
}

Workload FilePath() {
  Workload w;
  w.names = {{"customer", "Acme Printing"}, {"job", "J-20240517"}, {"sheet", "front_A"}, {"version", "007", 7}};
  w.pieces = {{"out/", 0}, {"/", 1}, {"/", 2}, {"_v", 3, true}, {".pdf"}};
  w.tokens = 4;
  return w;
}

Workload ManyTokens(std::size_t tokens, std::size_t literal) {
  Workload w;
  Random random;
  for (std::size_t i = 0; i < kNames; ++i) w.names.push_back({Numbered("name", i, 3), RandomValue(random)});
  for (std::size_t i = 0; i < tokens; ++i) {
    std::string text = RandomLiteral(random, literal);
    w.pieces.push_back({std::move(text), int(random.Below(kNames))});
  }
  w.tokens = tokens;
  return w;
}

Workload Nested() {
  Workload w;
  for (std::size_t i = 0; i < 9; ++i) w.names.push_back({Numbered("leaf", i, 1), Numbered("value-", i, 1)});
  for (int part = 0; part < 3; ++part) {
    const int leaf = 3 * part;
    w.names.push_back({Numbered("part", std::size_t(part), 1),
                       "",
                       -1,
                       {{"<a ", leaf}, {", b ", leaf + 1}, {", c ", leaf + 2}, {">"}}});
  }
  w.names.push_back({"root", "", -1, {{"one ", 9}, {" two ", 10}, {" three ", 11}, {" end"}}});
  w.pieces = {{"path/", 12}, {".pdf"}};
  w.tokens = 13;
  return w;
}

Workload SpreadNames(std::size_t registry) {
  Workload w;
  const std::size_t step = kLargestRegistry / registry;
  for (std::size_t i = 0; i < registry; ++i) {
    w.names.push_back({Numbered("name", i * step, 7), Numbered("value ", i * step, 7)});
  }
  for (std::size_t i = 0; i < kNames; ++i) {
    w.pieces.push_back({" literal text no. " + std::to_string(i) + " ", int(i * registry / kNames)});
  }
  w.tokens = kNames;
  return w;
}

Pieces Stamped(const Pieces& pieces, unsigned number) {
  char stamp[16];
  std::snprintf(stamp, sizeof stamp, "%0*u", int(kStampLength), number);
  Pieces stamped = pieces;
  for (Piece& piece : stamped) {
    if (piece.literal.size() >= 2 * kStampLength) piece.literal.replace(0, kStampLength, stamp);
  }
  stamped.front().literal.insert(0, stamp);
  return stamped;
}

}  // namespace bench
