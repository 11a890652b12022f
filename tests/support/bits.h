// Doubles compared bit for bit, every NaN equal to every other.
#pragma once

#include <gtest/gtest.h>

#include "same_bits.h"

namespace wq_test {

inline ::testing::AssertionResult SameBits(const char* exprA, const char* exprB, double a, double b)
{
    if (sameBits(a, b)) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << exprA << " is " << ::testing::PrintToString(a) << ", " << exprB << " is "
                                         << ::testing::PrintToString(b);
}

}  // namespace wq_test

#define EXPECT_SAME_BITS(a, b) EXPECT_PRED_FORMAT2(::wq_test::SameBits, a, b)
