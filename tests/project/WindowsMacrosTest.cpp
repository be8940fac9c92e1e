// A program that includes the Windows headers first still calls the functions under the library's own names.
#include "windows_macros.h"

#include "ZnClassLib.h"

#include <gtest/gtest.h>

TEST(WindowsMacros, MembersKeepTheirNames)
{
    Zn_Result result;
    result.AddMsg(-7, __FILE__, __LINE__, u"a.xml", nullptr);
    ASSERT_NE(result.GetMessage(0), nullptr);
    EXPECT_EQ(result.GetMessage(0)->code, -7);
}
