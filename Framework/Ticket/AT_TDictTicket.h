// A ticket made from a dictionary.
#pragma once

#include "Ticket/AT_TTicket.h"

/// Reads each operation's answer from the dictionary, under the operation's name without "Get":
///
///   {TicketPath, TicketID, TaskName, JobID, ProductPartID, ShortID, WorkflowID   texts
///    Operator = {UserName, Domain}                                               texts in a dictionary
///    InputURLs                                                                   array of URLs
///    Settings, WorkflowParameters}                                               dictionaries
///
/// What is missing is empty; what is of another kind throws NQ_EIllegalCastFromAny with the key.
class NQ_EXPORT AT_TDictTicket final : public AT_TTicket {
 public:
  explicit AT_TDictTicket(const NQ_TDict& content) : content_(content) {}

  NQ_TString GetTicketPath() const override;
  NQ_TString GetTicketID() const override;
  NQ_TString GetTaskName() const override;
  NQ_TString GetJobID() const override;
  NQ_TString GetProductPartID() const override;
  AT_TOperator GetOperator() const override;
  std::vector<NQ_TURL> GetInputURLs() const override;
  NQ_TDict GetSettings() const override;
  NQ_TString GetShortID() const override;
  NQ_TString GetWorkflowID() const override;
  NQ_TDict GetWorkflowParameters() const override;

 private:
  NQ_TDict content_;
};
