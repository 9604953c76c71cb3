// A file of millions of empty lines is refused with a sentence instead of
// filling the memory of the machine.
#include <gtest/gtest.h>

#include "harness.h"

TEST(SourceLimits, FileOfTwentyMillionEmptyLinesIsRefused) {
  e2e::RunSpec spec;
  spec.ini = e2e::Ini();
  spec.files["src/blank.txt"] = std::string(20'000'000, '\n');
  spec.input = "\n1\nsrc/blank.txt\n\n123\n";
  e2e::RunResult r = e2e::run(spec);
  EXPECT_EQ(r.status, 0);
  EXPECT_NE(r.out.find("The file \"src/blank.txt\" has more than 4000000 lines. A file of so many lines is not read. *"),
            std::string::npos);
  EXPECT_EQ(r.out.find("error"), std::string::npos);  // no stage ran
}
