// The names of the groups, and under which keys their values stand in what the services reply.
#pragma once

#include "TName.h"

namespace systemnames {

struct TKeyName {
  const char* name;
  const char* key;
};

/// From what the job service says of a job.
inline constexpr TKeyName kJobNames[] = {
    {"job", "Name"},
    {"jobfolder", "Name"},
    {"joborderid", "OrderId"},
    {"jobsuborderid", "SubOrderId"},
    {"jobdescription", "Description"},
    {"jobduedate", "DueDate"},
    {"jobduetime", "DueDate"},
    {"jobcategory", "Category"},
    {"jobcategory2", "Category2"},
    {"jobcategory3", "Category3"},
    {"jobcategory4", "Category4"},
    {"jobcategory5", "Category5"},
    {"jobcategory6", "Category6"},
    {"jobcategory7", "Category7"},
    {"jobcustomer", "Customer"},
    {"jobcustomerref", "CustomerRef"},
    {"jobscopemode", "ScopeMode"},
    {"jobcsr", "CSR"},
    {"jobcsremail", "CSREMail"},
    {"jobprojectid", "ProjectId"},
    {"jobfolderurl", "Url"},
    {"joburl", "Url"},
    {"jobmasterlocation", "CloudML"},
};

struct TCustomerName {
  const char* name;
  const char* key;
  bool emptyWhenUnfit;  // what is no text counts as absent; else it fails the lookup
};

/// From what the job service says of a customer.
inline constexpr TCustomerName kCustomerNames[] = {
    {"jobcustomername", "Name", false},     {"jobcustomerdesc", "Description", false},
    {"customercontact1", "Contact1", true}, {"customercontact2", "Contact2", true},
    {"customercontact3", "Contact3", true}, {"customeremail1", "EMail1", true},
    {"customeremail2", "EMail2", true},     {"customeremail3", "EMail3", true},
    {"customerinfo1", "Info1", true},       {"customerinfo2", "Info2", true},
    {"customerinfo3", "Info3", true},       {"customerinfo4", "Info4", true},
    {"customerinfo5", "Info5", true},
};

/// From what the product service says of a product part: texts. The part's folder and the amount are computed.
inline constexpr TKeyName kProductNames[] = {
    {"vxtpr:productid", "p.prodid"},           {"vxtpr:productcat1", "p.category1"},
    {"vxtpr:productcat2", "p.category2"},      {"vxtpr:productcat3", "p.category3"},
    {"vxtpr:productcusdesc", "c.desc"},        {"vxtpr:productcusid", "c.id"},
    {"vxtpr:productcusname", "c.name"},        {"vxtpr:productcuscontact1", "c.contact1"},
    {"vxtpr:productcusemail1", "c.email1"},    {"vxtpr:productcusref", "p.cusref"},
    {"vxtpr:productdesc", "p.desc"},           {"vxtpr:productname", "p.name"},
    {"vxtpr:productomatname", "omat.name"},    {"vxtpr:productomatdescr", "omat.descr"},
    {"vxtpr:productpartcat1", "pp.category1"}, {"vxtpr:productpartcat2", "pp.category2"},
    {"vxtpr:productpartcat3", "pp.category3"}, {"vxtpr:productpartname", "pp.name"},
    {"vxtpr:productpartstatus", "pp.status"},
};

/// From what the container service says of a container.
inline constexpr const char* kContainerNames[] = {"containername", "containerurl"};

inline constexpr const char* kTicketNames[] = {"id", "shortid", "wfid", "taskname", "ticketname", "operator"};

struct TFileName {
  const char* name;
  void (*set)(TName& names, const NQ_TString& name, const NQ_TURL& file);
};

/// From the input's URL.
extern const TFileName kFileNames[6];

}  // namespace systemnames
