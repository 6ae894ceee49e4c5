// The task of a context file: the system names, as a workflow server has them.
//
//   "task": {
//     "ticket": {"TicketID": "T-1", "JobID": "J-2041", "InputURLs": [{"$url": "file://ps-storage/in/cover.pdf"}]},
//     "inputs": [1, {"$url": "file://ps-storage/in/inside.pdf"}],
//     "job": {...}, "product": {...}
//   }
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "JsonNode.h"
#include "ServiceCalls.h"
#include "TName.h"

class AT_TTicket;

/// Keeps what the names of the task refer to: a registry that was reset with it must not outlive it.
class TTask {
 public:
  TTask();
  ~TTask();
  TTask(const TTask&) = delete;
  TTask& operator=(const TTask&) = delete;

  /// Names of XML files are relative to that folder. Throws TInputError.
  void Read(const TJsonNode& object, const std::string& folder);
  bool IsGiven() const { return !inputs_.empty(); }

  /// Loads the definitions of the system names from the configuration; what cannot be read there is passed over, and
  /// said when nothing was defined. Throws TServiceError when the configuration server fails.
  void Define(TName& names, TServiceCalls& calls);
  /// How many inputs the templates are resolved for; at least one.
  std::size_t Inputs() const { return inputs_.empty() ? 1 : inputs_.size(); }
  /// Makes the names those of that input, counted from 0; does nothing without a task. Throws TServiceError, and
  /// TInputError when the job or the product holds an identifier that is no text.
  void Reset(TName& names, std::size_t input, TServiceCalls& calls);
  /// Its URL.
  NQ_TString InputText(std::size_t input) const;

 private:
  struct TSystem;
  using TInput = std::variant<unsigned int, NQ_TURL>;  // a number of the ticket's, or any URL

  struct TReading;
  static void ReadTicket(const TJsonNode& value, TReading& reading);
  static void ReadInputs(const TJsonNode& value, TReading& reading);
  static void ReadJob(const TJsonNode& value, TReading& reading);
  static void ReadProduct(const TJsonNode& value, TReading& reading);

  void ResetTo(TName& names, const TInput& input) const;
  NQ_TURL UrlOf(const TInput& input) const;

  std::unique_ptr<TSystem> system_;
  std::unique_ptr<const AT_TTicket> ticket_;
  std::vector<TInput> inputs_;
  std::optional<NQ_TDict> job_;
  std::optional<NQ_TDict> product_;
};
