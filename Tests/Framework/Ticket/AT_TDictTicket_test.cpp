#include "Ticket/AT_TDictTicket.h"

#include <gtest/gtest.h>

#include "Base/Support.h"
#include "NQ_TArray.h"

using base_test::Printed;
using base_test::Thrown;

namespace {

constexpr struct {
  const char* key;
  NQ_TString (AT_TTicket::*get)() const;
} kTexts[] = {
    {"TicketPath", &AT_TTicket::GetTicketPath},
    {"TicketID", &AT_TTicket::GetTicketID},
    {"TaskName", &AT_TTicket::GetTaskName},
    {"JobID", &AT_TTicket::GetJobID},
    {"ShortID", &AT_TTicket::GetShortID},
    {"WorkflowID", &AT_TTicket::GetWorkflowID},
    {"ProductPartID", &AT_TTicket::GetProductPartID},
};

TEST(Ticket, TextsComeFromTheirKeys) {
  for (const auto& row : kTexts) {
    NQ_TDict content;
    EXPECT_TRUE((AT_TDictTicket(content).*row.get)().Empty()) << row.key;
    content.Add(row.key, "x");
    EXPECT_STREQ((AT_TDictTicket(content).*row.get)().c_str(), "x") << row.key;
    content.Add(row.key, 5);
    EXPECT_EQ(Thrown([&] { (AT_TDictTicket(content).*row.get)(); }), std::string("NQ_EIllegalCastFromAny: ") + row.key);
  }
}

TEST(Ticket, WhatHasParts) {
  NQ_TDict who;
  who.Add("UserName", "ann").Add("Domain", "north");
  NQ_TArray urls;
  urls.Add(NQ_TURL(NQ_TString("file://h/1")));
  urls.Add(NQ_TURL(NQ_TString("file://h/2")));
  NQ_TDict content;
  content.Add("Operator", who).Add("InputURLs", urls).Add("Settings", who).Add("WorkflowParameters", who);
  const AT_TDictTicket ticket(content);
  EXPECT_STREQ(ticket.GetOperator().userName.c_str(), "ann");
  EXPECT_STREQ(ticket.GetOperator().domain.c_str(), "north");
  ASSERT_EQ(ticket.GetInputURLs().size(), 2U);
  EXPECT_EQ(Printed(ticket.GetInputURLs()[1]), "file://h/2");
  EXPECT_EQ(ticket.GetSettings(), who);
  EXPECT_EQ(ticket.GetWorkflowParameters(), who);
  const AT_TDictTicket empty{NQ_TDict()};
  EXPECT_TRUE(empty.GetOperator().userName.Empty());
  EXPECT_TRUE(empty.GetInputURLs().empty());
  urls.Add(5);
  content.Add("InputURLs", urls);
  EXPECT_EQ(Thrown([&] { AT_TDictTicket(content).GetInputURLs(); }), "NQ_EIllegalCastFromAny: InputURLs");
}

TEST(Ticket, AVariantGivesItBack) {
  const AT_TDictTicket ticket{NQ_TDict()};
  const NQ_TAny any(&ticket);
  EXPECT_EQ(any.DynamicCast("AT_TTicket"), static_cast<const AT_TTicket*>(&ticket));
  EXPECT_EQ(any.As<AT_TTicket>(), &ticket);
  EXPECT_EQ(any.DynamicCast("NQ_TDict"), nullptr);
  EXPECT_STREQ(any.ClassName(), "AT_TTicket");
  EXPECT_TRUE(ticket.HasSuperclass("NQ_TObject"));
}

}  // namespace
