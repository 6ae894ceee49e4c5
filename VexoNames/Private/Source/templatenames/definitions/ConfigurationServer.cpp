#include "definitions/ConfigurationServer.h"

#include "NQ_TArray.h"
#include "definitions/Held.h"

namespace templatenames {
namespace {

/// Reads, and tells of which place it was that could not be read.
template <class Read>
NQ_TAny Reading(const NQ_TString& place, Read read) {
  try {
    return read();
  } catch (const NQ_EException&) {
    nq::Throw(NQ_EException(place + " cannot be read: " + ReasonInHand()));
  }
}

}  // namespace

NQ_TAny ReadPath(CFS_TProxy& cfs, const NQ_TString& path, bool zipped) {
  return Reading(path, [&]() -> NQ_TAny {
    const NQ_TAny& kept = cfs.GetCached(path, zipped);
    if (!kept.IsIllegal()) return kept;
    NQ_TDict request;
    request.Add("M", "[]").Add("P1", path).Add("P2", false);
    if (zipped) request.Add("PZIPPED", true);
    return cfs.Call(request);
  });
}

NQ_TAny ReadPaths(CFS_TProxy& cfs, const NQ_TArray& paths, const NQ_TString& place) {
  return Reading(place, [&] { return cfs.Call("[]", paths, false); });
}

const NQ_TString& ListIn(const NQ_TAny& value, const NQ_TString& path) {
  return Held<NQ_TString>(value, path, "a text such as \"A,B\"");
}

const NQ_TTree& RecordsIn(const NQ_TAny& value, const NQ_TString& path) {
  return Held<NQ_TTree>(value, path, "a tree of records");
}

NQ_TString ReasonInHand() {
  try {
    throw;
  } catch (const CFS_EIllegalPath&) {
    return "there is no such path";
  } catch (const CFS_EValueNotSet&) {
    return "it has no value";
  } catch (const NQ_EException& error) {
    return error.NQ_Message().Empty() ? NQ_TString(error.ClassName()) : error.NQ_Message();
  } catch (const std::exception& error) {
    return error.what();
  } catch (...) {
    return "an unknown exception";
  }
}

}  // namespace templatenames
