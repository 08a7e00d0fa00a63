/// @file
/// Compares numbers to the last bit, where the machine allows it.
#pragma once

#include <cfloat>
#include <cmath>

namespace tolvarin::ondrel::test {

/// What numbers of a test may differ by, degrees and knots: 0 where a double is computed as a
/// double. The registers of x87 hold more bits, so that a result depends on when the compiler
/// stores it; 1e-12 degrees are a ten-thousandth of a millimetre.
constexpr double numberTolerance = FLT_EVAL_METHOD == 0 ? 0 : 1e-12;

/// For EXPECT_PRED2().
inline bool sameNumber(double found, double expected) {
    return std::fabs(found - expected) <= numberTolerance;
}

} // namespace tolvarin::ondrel::test
