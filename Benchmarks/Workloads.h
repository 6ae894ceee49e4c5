// The workloads: names, a template over them, and the text that every engine must make of it.
//
//   W1  a file path: 4 tokens, 69 characters, one integer written with %03d
//   W2  1,000 tokens from 100 names, 20 bytes of literal text before each
//   W3  100,000 tokens from 100 names, 90 bytes of literal text before each: a 10 MB text
//   W4  nesting: 1 token, whose value is a template of 3 tokens, each of whose values is one too: 13 tokens
//   W5  W1 on two threads
//
// A workload is kept as pieces, because every engine writes its tokens in its own way.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace bench {

struct Piece {
  std::string literal;  // the text before the token
  int name = -1;        // index of the token's name; -1: no token follows
  bool padded = false;  // the token asks for %03d
};
using Pieces = std::vector<Piece>;

struct Name {
  std::string key;
  std::string value;
  int number = -1;     // the value as a number, for a name that holds one
  Pieces nested = {};  // the value as a template, for a name that holds one
};

struct Workload {
  std::vector<Name> names;
  Pieces pieces;
  std::size_t tokens = 0;

  // The pieces as text; tag(name, padded) writes a token.
  template <class Tag>
  std::string Write(const Pieces& parts, Tag tag) const {
    std::string text;
    for (const Piece& piece : parts) {
      text += piece.literal;
      if (piece.name >= 0) text += tag(names[std::size_t(piece.name)], piece.padded);
    }
    return text;
  }

  std::string Template(const Pieces& parts) const;  // with << and />>
  std::string Template() const { return Template(pieces); }
  std::string Value(const Name& name) const;  // what a registry holds: a template for nested names
  std::string Expected(const Pieces& parts) const;
  std::string Expected() const { return Expected(pieces); }
};

Workload FilePath();  // W1
Workload ManyTokens(std::size_t tokens,
                    std::size_t literal);  // W2, W3: 100 names, drawn at random, always the same
Workload Nested();                         // W4

// A template of 100 names, each once, over a registry of so many names (a power of ten from 100 to a million)
// among which they are spread evenly; the template is the same for every size.
inline constexpr std::size_t kLargestRegistry = 1'000'000;
Workload SpreadNames(std::size_t registry);

// The pieces with `number` written into their literal text, so that each number gives a text never seen
// before: in front of the first piece, and over the beginning of every literal that is long enough.
Pieces Stamped(const Pieces& pieces, unsigned number);

}  // namespace bench
