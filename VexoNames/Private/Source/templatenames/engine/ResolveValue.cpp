#include "engine/ResolveValue.h"

#include "text/Find.h"

namespace templatenames {
namespace {

bool ResolveElements(NQ_TAny& value, TName* names, int depth);

bool ResolveAt(const NQ_TAny& in, TName* names, NQ_TAny& out, int depth) {
  if (const auto* text = in.As<NQ_TString>()) {
    NQ_TString resolved;
    const bool ok = ResolveSplit(*text, kValueSeparator, names, resolved);
    out = std::move(resolved);
    return ok;
  }
  if (const auto* url = in.As<NQ_TURL>()) {
    NQ_TURL resolved;
    const bool ok = names->Resolve(*url, resolved);
    out = std::move(resolved);
    return ok;
  }
  // What is held by reference is copied, not written to.
  const auto* const object = in.As<NQ_IPackable>();
  out = object != nullptr && in.As<NQ_IIteratable>() != nullptr ? NQ_TAny(*object) : in;
  return ResolveElements(out, names, depth);
}

bool ResolveElements(NQ_TAny& value, TName* names, int depth) {
  const bool isContainer =
      std::as_const(value).As<NQ_IPackable>() != nullptr && std::as_const(value).As<NQ_IIteratable>() != nullptr;
  if (!isContainer) return true;
  if (depth >= names->GetLimits().nestedDepth) return false;
  for (NQ_TIterator i(*value.As<NQ_IIteratable>()); !i.IsDone(); i.Next()) {
    const NQ_TAny element = std::move(i.Value());
    if (!ResolveAt(element, names, i.Value(), depth + 1)) return false;
  }
  return true;
}

}  // namespace

bool ResolveSplit(const NQ_TString& text, std::u16string_view separator, TName* names, NQ_TString& result) {
  const NQ_TString source = text;  // result may be the same string
  const std::u16string_view units = source.StringView();
  result = NQ_TString();
  NQ_TString piece;
  for (std::size_t begin = 0;;) {
    const std::size_t end = units.find(separator, begin);
    const bool ok = names->Resolve(NQ_TString(units.substr(begin, end == kNone ? kNone : end - begin)), piece);
    result.Append(piece);
    if (end == kNone) return ok;
    result.Append(separator);
    if (!ok) return false;
    begin = end + separator.size();
  }
}

bool ResolveValue(const NQ_TAny& in, TName* names, NQ_TAny& out) {
  NQ_TAny resolved;
  const bool ok = ResolveAt(in, names, resolved, 0);
  out = std::move(resolved);
  return ok;
}

}  // namespace templatenames
