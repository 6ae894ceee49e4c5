// The ticket of a task.
//
// A host derives its own tickets from AT_TTicket and overrides the eleven Get operations; everything else is done here:
//
//   class THostTicket final : public AT_TTicket {
//    public:
//     NQ_TString GetTicketPath() const override { return task_.path; }
//     ...
//   };
//   THostTicket ticket(task);
//   NQ_TAny(&ticket);       // holds it by reference: the ticket stays until the last copy of the variant is gone
//
// A subclass of this kind is an "AT_TTicket" to everybody. One that is to be found under its own name too overrides
// NQ_DynamicInfo, as this class does. AT_TDictTicket is a ticket that is ready to use.
#pragma once

#include <vector>

#include "NQ_TDict.h"
#include "NQ_TURL.h"

/// Who runs a task.
struct AT_TOperator {
  NQ_TString userName;
  NQ_TString domain;  // empty: an account of the system itself
};

/// What is known of one task. A variant holds a ticket by reference, and gives it back when asked for an "AT_TTicket".
/// The operations may throw NQ_EException; any thread may call them as long as nobody changes the ticket.
class NQ_EXPORT AT_TTicket : public virtual NQ_TObject {
 public:
  static NQ_TClass& NQ_ClassObject();
  static const char* NQ_ClassName() { return NQ_ClassObject().Name(); }
  const void* NQ_MostDerivedObject() const override { return dynamic_cast<const void*>(this); }
  const void* NQ_DynamicInfo(const char* name) const override;

  /// The text after its last "/" is the ticket's name.
  virtual NQ_TString GetTicketPath() const = 0;
  virtual NQ_TString GetTicketID() const = 0;
  virtual NQ_TString GetTaskName() const = 0;
  /// Empty for a task outside any job.
  virtual NQ_TString GetJobID() const = 0;
  /// Empty for a task that works on no product part.
  virtual NQ_TString GetProductPartID() const = 0;
  virtual AT_TOperator GetOperator() const = 0;
  virtual std::vector<NQ_TURL> GetInputURLs() const = 0;
  /// Among them "WFLab", the workflow's label (NQ_TString), and "Inputfolder" (NQ_TURL).
  virtual NQ_TDict GetSettings() const = 0;
  virtual NQ_TString GetShortID() const = 0;
  virtual NQ_TString GetWorkflowID() const = 0;
  /// Texts by their keys; "--LiveXMLList--" holds URLs of XML files to read them from instead (NQ_TArray of NQ_TURL).
  virtual NQ_TDict GetWorkflowParameters() const = 0;
};
