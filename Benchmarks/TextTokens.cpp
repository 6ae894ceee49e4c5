#include "TextTokens.h"

#include <array>

#include "NQ_TArray.h"

namespace bench {
namespace {

constexpr std::array<const char*, 4> kLines = {
    "Brochure <Spring & Summer> \"final\", 48 pages + cover, for O'Neill & Sons",
    "Poster A1, 4/4 colours, paper 170 g/m2 'silk', trimmed; proof by e-mail only",
    "Label 60 x 40 mm, 20,000 pieces, die cut, white ink < 2 passes, roll of 1,000",
    "jobs/2024/05/Catalogue Autumn (corrected) v12 - pages 1-64 and cover.pdf"};

void AppendXml(std::string_view value, std::string& out) {
  for (const char c : value) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '"':
        out += "&quot;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '\'':
        out += "&apos;";
        break;
      default:
        out += c;
    }
  }
}

bool IsKept(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '.' ||
         c == '_' || c == '~' || c == '/';
}

void AppendUrl(std::string_view value, std::string& out) {
  static const std::array<bool, 256> kept = [] {
    std::array<bool, 256> made{};
    for (unsigned c = 0; c < 256; ++c) made[c] = IsKept(char(c));
    return made;
  }();
  constexpr char kHex[] = "0123456789ABCDEF";
  for (const char c : value) {
    const auto byte = static_cast<unsigned char>(c);
    if (kept[byte]) {
      out += c;
    } else {
      const char escape[] = {'%', kHex[byte >> 4], kHex[byte & 15]};
      out.append(escape, sizeof escape);
    }
  }
}

void AppendCustom(std::string_view value, std::string& out) {
  for (const char c : value) {
    switch (c) {
      case ' ':
        out += '_';
        break;
      case '&':
        out += "and";
        break;
      case '<':
        out += '(';
        break;
      case '>':
        out += ')';
        break;
      default:
        out += c;
    }
  }
}

NQ_TDict TextOptions(const char* encoding) {
  NQ_TDict options;
  options.Add("DataFormat", NQ_TString("TEXT"));
  options.Add("Encoding", NQ_TString(encoding));
  return options;
}

NQ_TDict CustomOptions() {
  NQ_TArray pairs;
  const auto add = [&pairs](const char* find, const char* replace) {
    NQ_TDict pair;
    pair.Add("Find", NQ_TString(find));
    pair.Add("Replace", NQ_TString(replace));
    pairs.Add(pair);
  };
  add(" ", "_");
  add("&", "and");
  add("<", "(");
  add(">", ")");
  NQ_TDict options = TextOptions("CUSTOM");
  options.Add("CustomEncoding", pairs);
  return options;
}

}  // namespace

const Encoding kXml = {
    [] { return TextOptions("XML"); }, AppendXml,
    "Brochure &lt;Spring &amp; Summer&gt; &quot;final&quot;, 48 pages + cover, for O&apos;Neill &amp; Sons\n"
    "Poster A1, 4/4 colours, paper 170 g/m2 &apos;silk&apos;, trimmed; proof by e-mail only\n"
    "Label 60 x 40 mm, 20,000 pieces, die cut, white ink &lt; 2 passes, roll of 1,000\n"
    "jobs/2024/05/Catalogue Autumn (corrected) v12 - pages 1-64 and cover.pdf\n"};

const Encoding kUrl = {
    [] { return TextOptions("URL"); }, AppendUrl,
    "Brochure%20%3CSpring%20%26%20Summer%3E%20%22final%22%2C%2048%20pages%20%2B%20cover%2C%20for%20O%27Neill%20%26%"
    "20Sons\n"
    "Poster%20A1%2C%204/4%20colours%2C%20paper%20170%20g/m2%20%27silk%27%2C%20trimmed%3B%20proof%20by%20e-mail%20only\n"
    "Label%2060%20x%2040%20mm%2C%2020%2C000%20pieces%2C%20die%20cut%2C%20white%20ink%20%3C%202%20passes%2C%20roll%20of%"
    "201%2C000\n"
    "jobs/2024/05/Catalogue%20Autumn%20%28corrected%29%20v12%20-%20pages%201-64%20and%20cover.pdf\n"};

const Encoding kCustom = {CustomOptions, AppendCustom,
                          "Brochure_(Spring_and_Summer)_\"final\",_48_pages_+_cover,_for_O'Neill_and_Sons\n"
                          "Poster_A1,_4/4_colours,_paper_170_g/m2_'silk',_trimmed;_proof_by_e-mail_only\n"
                          "Label_60_x_40_mm,_20,000_pieces,_die_cut,_white_ink_(_2_passes,_roll_of_1,000\n"
                          "jobs/2024/05/Catalogue_Autumn_(corrected)_v12_-_pages_1-64_and_cover.pdf\n"};

Workload FourLines() {
  Workload w;
  for (const char* line : kLines) {
    const int name = int(w.names.size());
    w.pieces.push_back({name == 0 ? "" : "\n", name});
    w.names.push_back({"line" + std::to_string(name), line});
  }
  w.pieces.push_back({"\n"});
  w.tokens = kLines.size();
  return w;
}

Registry TextRegistry(const Encoding& encoding) {
  const Workload w = FourLines();
  Registry registry = MakeRegistry(w);
  for (const Name& name : w.names) registry->SetFormattingOptions(NQ_TString(name.key.c_str()), encoding.options());
  return registry;
}

EncodedByHand::EncodedByHand(const Encoding& encoding)
    : append_(encoding.append), lines_(kLines.begin(), kLines.end()) {
  out_.reserve(2 * std::string_view(encoding.expected).size());
}

void EncodedByHand::Run() {
  out_.clear();
  for (const std::string& line : lines_) {
    append_(line, out_);
    out_ += '\n';
  }
}

}  // namespace bench
