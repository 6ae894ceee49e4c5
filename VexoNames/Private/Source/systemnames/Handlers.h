// The handler objects that a TName is given.
#pragma once

#include "TNameLookupHandler.h"
#include "TNameWarnLookupHandler.h"
#include "VexoNameUtils.h"

/// Calls a lookup member of its owner.
template <auto Member>
class VexoNameUtils::TLookupHandler final : public TNameLookupHandler {
 public:
  explicit TLookupHandler(VexoNameUtils& owner) : owner_(&owner) {}
  bool Lookup(const NQ_TString& key, NQ_TDict* entry, TName* names, NQ_TAny& value) const override {
    return (owner_->*Member)(key, *entry, *names, value);
  }

 private:
  VexoNameUtils* owner_;
};

class VexoNameUtils::TWarnHandler final : public TNameWarnLookupHandler {
 public:
  explicit TWarnHandler(VexoNameUtils& owner) : owner_(&owner) {}
  void WarnLookup(const NQ_TString& key, TName* names) override { owner_->WarnLookup(key, *names); }

 private:
  VexoNameUtils* owner_;
};

/// One of each, for as long as their owner lives.
struct VexoNameUtils::THandlers {
  explicit THandlers(VexoNameUtils& owner)
      : job(owner),
        product(owner),
        customer(owner),
        file(owner),
        vexoId(owner),
        taskOwner(owner),
        fileType(owner),
        ticket(owner),
        container(owner),
        warn(owner),
        liveParameter(owner) {}

  TLookupHandler<&VexoNameUtils::LookupJobInfo> job;
  TLookupHandler<&VexoNameUtils::LookupProductInfo> product;
  TLookupHandler<&VexoNameUtils::LookupCustomerInfo> customer;
  TLookupHandler<&VexoNameUtils::LookupFile> file;
  TLookupHandler<&VexoNameUtils::LookupVexoID> vexoId;
  TLookupHandler<&VexoNameUtils::LookupTaskOwner> taskOwner;
  TLookupHandler<&VexoNameUtils::LookupFileType> fileType;
  TLookupHandler<&VexoNameUtils::LookupTicket> ticket;
  TLookupHandler<&VexoNameUtils::LookupContainerInfo> container;
  mutable TWarnHandler warn;  // a TName takes it as one that it may change
  TLookupHandler<&VexoNameUtils::LookupLiveXMLWorkflowParameter> liveParameter;
};
