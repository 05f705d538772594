#include "server/client.h"

namespace qv::tests {
namespace {

TEST(ErrorState, Set_then_check_then_reset) {
  const auto global = create_global();
  Value number(20000);
  Value source(L"here");
  Value description(L"text");
  VARIANT_BOOL failed = VARIANT_FALSE;
  EXPECT_EQ(global->Error_Set(&number, &source, &description, nullptr, nullptr, nullptr, nullptr),
            S_OK);
  EXPECT_EQ(global->Check_Error(&failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  EXPECT_EQ(global->Reset_Error(), S_OK);
  EXPECT_EQ(global->Check_Error(&failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
}

}  // namespace
}  // namespace qv::tests
