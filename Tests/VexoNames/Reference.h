// Resolution and translation as they are worded, one step after the other, without any care for speed: what random
// templates are compared with.
#pragma once

#include <map>
#include <optional>
#include <string>

namespace names_test {

class Reference {
 public:
  using Str = std::u16string;

  struct Name {
    char type = 's';  // s: text, n: number, a: auto number, u: URL
    Str text;         // of a text; of a URL what stands after "file://"
    int number = 0;
    Str format = u"%s";
    std::optional<Str> elem, extract;
  };

  std::map<Str, Name> names;
  int error = 0;
  Str warned;               // every key a warn handler would be told, each followed by ";"
  bool marksRegex = false;  // the regex stage is the test's own: it appends "~" and its attribute, or fails for "%"

  Str Resolve(const Str& text, int& count);
  Str Scan(const Str& text, const Str& begin, const Str& end, int& count);
  bool Token(const Str& text, Str& result, int& count);
  /// With a translator that appends "'" to a name.
  Str Translate(const Str& text, const Str& prefix, const Str& suffix) const;
  static Str BackTranslate(const Str& text, const Str& prefix, const Str& suffix);

 private:
  bool Stages(const Name& name, const Str& elem, const Str& extract, const Str& regex, Str& result);
};

}  // namespace names_test
