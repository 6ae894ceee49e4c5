#include "Reference.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "Support.h"

namespace names_test {
namespace {

using Str = Reference::Str;
constexpr auto kNone = Str::npos;
const Str kMark = u"<<CDATA/>>";

std::string Narrow(const Str& text) { return Text(NQ_TString(std::u16string_view(text))); }
Str Wide(const std::string& text) { return Str(S(text).StringView()); }

/// From b + lb up to e; empty where the markers overlap.
Str Between(const Str& text, std::size_t from, std::size_t to) {
  return from < to ? text.substr(from, to - from) : u"";
}

std::pair<Str, Str> Markers(const Str& text) {
  const std::size_t p = text.find(u"/>>");
  if (p != kNone && text.rfind(u"<<", p) != kNone) return {u"<<", u"/>>"};
  return {u"<", u"/>"};
}

struct Parts {
  Str key, format, elem, extract, regex;
};

Parts Split(const Str& t) {
  const int length = int(t.size());
  int start = 0;
  while (start < length && t[std::size_t(start)] == u' ') ++start;
  int end = length - 1;
  if (const std::size_t e = t.find(u'='); e == kNone) {
    while (end > start && t[std::size_t(end)] == u' ') --end;
  } else {
    end = int(e);
    while (end > start && t[std::size_t(end)] != u' ') --end;
    if (t[std::size_t(end)] == u' ') {
      while (end > start && t[std::size_t(--end)] == u' ') {
      }
    }
  }
  Parts parts;
  parts.key = Between(t, std::size_t(start), std::size_t(end + 1));
  const auto attribute = [&t](const Str& literal, Str& out) {
    const std::size_t a = t.find(literal);
    if (a == kNone) return;
    const Str rest = t.substr(a + literal.size());
    out = rest.substr(0, rest.find(u'"'));
  };
  attribute(u"format=\"", parts.format);
  attribute(u"elem=\"", parts.elem);
  attribute(u"extract=\"", parts.extract);
  attribute(u"regex=\"", parts.regex);
  return parts;
}

/// printf with at most one conversion out of the given ones, plain widths and precisions up to 4096, and "%%".
template <class Argument>
bool Format(const std::string& format, const char* conversions, Argument argument, Str& result) {
  std::size_t i = 0, found = 0;
  const auto number = [&] {
    const std::size_t from = i;
    while (i < format.size() && format[i] >= '0' && format[i] <= '9') ++i;
    return i - from <= 4 && std::atoi(format.substr(from, i - from).c_str()) <= 4096;
  };
  while ((i = format.find('%', i)) != format.npos) {
    if (++i < format.size() && format[i] == '%') {
      ++i;
      continue;
    }
    i = std::min(format.find_first_not_of("-+ #0", i), format.size());
    if (!number()) return false;
    if (i < format.size() && format[i] == '.' && (++i, !number())) return false;
    if (i >= format.size() || std::string(conversions).find(format[i]) == std::string::npos) return false;
    if (++i; ++found > 1) return false;
  }
  std::vector<char> text(20'000);
  std::snprintf(text.data(), text.size(), format.c_str(), argument);
  result = Wide(text.data());
  return true;
}

}  // namespace

Str Reference::Resolve(const Str& text, int& count) {
  if (text.starts_with(kMark)) return text.substr(kMark.size());
  const auto [begin, end] = Markers(text);
  return Scan(text, begin, end, count);
}

Str Reference::Scan(const Str& s, const Str& begin, const Str& end, int& count) {
  Str result;
  std::size_t done = 0;
  for (std::size_t e = s.find(end); e != kNone; e = s.find(end, done)) {
    const std::size_t b = s.rfind(begin, e);
    if (b == kNone || b < done) break;
    Str value;
    if (Token(Between(s, b + begin.size(), e), value, count))
      result += s.substr(done, b - done) + value;
    else
      result += s.substr(done, e + end.size() - done);
    done = e + end.size();
  }
  return result + s.substr(done);
}

bool Reference::Token(const Str& text, Str& result, int& count) {
  result.clear();
  if (text.empty()) return true;
  const Parts parts = Split(text);
  warned += parts.key + u";";
  const bool ok = [&] {
    const auto found = names.find(parts.key);
    if (found == names.end()) return false;
    Name& name = found->second;
    const std::string format = Narrow(parts.format.empty() ? name.format : parts.format);
    if (name.type == 'u') {
      result = u"file://" + name.text;
    } else if (name.type == 's') {
      const Str value = Resolve(name.text, count);
      if (format == "%s")
        result = value;
      else if (!Format(format, "s", Narrow(value).c_str(), result))
        return false;
    } else {
      Str formatted;
      if (name.type == 'a' && name.number == INT_MAX) return false;
      const int next = name.type == 'a' ? name.number + 1 : name.number;
      if (!Format(format, "diuxXo", next, formatted)) return false;
      name.number = next;
      result = formatted;
    }
    return Stages(name, parts.elem, parts.extract, parts.regex, result);
  }();
  if (!ok) ++count;
  return ok;
}

bool Reference::Stages(const Name& name, const Str& elem, const Str& extract, const Str& regex, Str& result) {
  if (!elem.empty() || name.elem) {
    const Str spec = elem.empty() ? *name.elem : elem;
    const std::size_t p = spec.rfind(u',');
    if (p == kNone || p < 1) return error = 4, false;
    const Str separator = spec.substr(0, p), input = result;
    const int index = std::atoi(Narrow(spec.substr(p + 1)).c_str());
    if (index < 0) return error = 5, false;
    int count = -1;
    std::size_t start = 0, found = 0;
    do {
      found = input.find(separator, start);
      result = input.substr(start, found == kNone ? kNone : found - start);
      ++count;
      start = found + 1;
    } while (count != index && found != kNone);
    if (count != index) result.clear();
  }
  if (!extract.empty() || name.extract) {
    const Str spec = extract.empty() ? *name.extract : extract;
    const std::size_t p = spec.find(u',');
    if (p == kNone || p < 1) return error = 7, false;
    const int start = std::atoi(Narrow(spec.substr(0, p)).c_str());
    const int length = std::atoi(Narrow(spec.substr(p + 1)).c_str());
    if (start < 0) return error = 6, false;
    result = std::size_t(start) >= result.size()
                 ? u""
                 : result.substr(std::size_t(start), length < 0 ? kNone : std::size_t(length));
  }
  if (marksRegex && !regex.empty()) {
    if (regex.find(u'%') != kNone) return false;
    result += u"~" + regex;
  }
  return true;
}

Str Reference::Translate(const Str& s, const Str& prefix, const Str& suffix) const {
  if (s.starts_with(kMark)) return s.substr(kMark.size());
  const auto [begin, end] = Markers(s);
  Str result;
  std::size_t done = 0;
  for (std::size_t e = s.find(end); e != kNone; e = s.find(end, done)) {
    const std::size_t b = s.rfind(begin, e);
    if (b == kNone || b < done) break;
    const Str text = Between(s, b + begin.size(), e), key = Split(text + u"").key;
    if (text.empty() || names.contains(key))
      result += s.substr(done, b - done) + prefix + (text.empty() ? u"" : key + u"'") + suffix;
    else
      result += s.substr(done, e + end.size() - done);
    done = e + end.size();
  }
  return result + s.substr(done);
}

Str Reference::BackTranslate(const Str& s, const Str& prefix, const Str& suffix) {
  Str result;
  std::size_t done = 0;
  for (std::size_t e = s.find(suffix); e != kNone; e = s.find(suffix, done)) {
    const std::size_t b = s.rfind(prefix, e);
    if (b == kNone || b < done) break;
    result += s.substr(done, b - done) + u"<<" + Between(s, b + prefix.size(), e) + u"'/>>";
    done = e + suffix.size();
  }
  result += s.substr(done);
  const std::size_t single = s.find(u"/>");
  if (done == 0 && s.find(u"/>>") == kNone && single != kNone && single > 0) result = kMark + result;
  return result;
}

}  // namespace names_test
