#include "Ticket/AT_TTicket.h"

#include <gtest/gtest.h>

#include "NQ_TAny.h"
#include "Ticket/AT_TDictTicket.h"

namespace ticket_test {
namespace {

// AT_TDictTicket overrides what a host's ticket must, and nothing else.
TEST(AT_TTicket, IsGivenBackByTheVariantThatHoldsIt) {
  const AT_TDictTicket ticket(NQ_TDict{{"TicketID", "4711"}});
  const NQ_TAny held(&ticket);
  const auto* const found = static_cast<const AT_TTicket*>(held.DynamicCast("AT_TTicket"));
  ASSERT_EQ(found, &ticket);
  EXPECT_EQ(found->GetTicketID(), "4711");
  EXPECT_EQ(found->NQ_MostDerivedObject(), dynamic_cast<const void*>(&ticket));
  EXPECT_STREQ(held.ClassName(), "AT_TTicket");
}

}  // namespace
}  // namespace ticket_test
