// R, for tests that ask it.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>

namespace wq_test {

inline bool hasR() { return std::system("Rscript --version > /dev/null 2>&1") == 0; }

}  // namespace wq_test

#define WQ_SKIP_WITHOUT_R()                                                                                                                \
  if (!wq_test::hasR()) GTEST_SKIP() << "Rscript is not installed (Debian package: r-base-core)"
