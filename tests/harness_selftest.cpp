// Checks of the end-to-end harness itself. They hold whatever the program
// prints, so they stay valid while its behaviour grows.
#include "harness.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include <gtest/gtest.h>

namespace {

TEST(HarnessSelfTest, EndedInputFinishesCleanlyAndLeavesNoDirectory) {
    e2e::RunSpec spec;
    spec.no_ini = true;
    spec.timeout_seconds = 20;
    e2e::RunResult r = e2e::run(spec);

    EXPECT_FALSE(r.timed_out) << r.out;
    EXPECT_FALSE(r.signaled) << r.out;
    EXPECT_EQ(r.status, 0) << r.out;
    EXPECT_EQ(r.out.find("e2e harness: exec failed"), std::string::npos);
    ASSERT_FALSE(r.dir.empty());
    if (!std::getenv("E2E_KEEP")) {
        EXPECT_FALSE(std::filesystem::exists(r.dir));
    }
}

TEST(HarnessSelfTest, WrittenFilesComeBackByteForByte) {
    e2e::RunSpec spec;
    spec.ini = "[General]\r\nkey=value\r\n";
    const std::string binary("\x00\x81\x40\xff\r\n", 6);
    spec.files = {{"src/prog.txt", "PROG\tSTART\n\tRET\n\tEND\n"},
                  {"deep/er/data.bin", binary}};
    e2e::RunResult r = e2e::run(spec);

    ASSERT_FALSE(r.timed_out) << r.out;
    ASSERT_TRUE(r.files.count("src/prog.txt"));
    EXPECT_EQ(r.files.at("src/prog.txt"), "PROG\tSTART\n\tRET\n\tEND\n");
    ASSERT_TRUE(r.files.count("deep/er/data.bin"));
    EXPECT_EQ(r.files.at("deep/er/data.bin"), binary);
    EXPECT_TRUE(r.files.count("drillasm.ini"));
    for (const auto& [path, bytes] : r.files) {
        EXPECT_NE(path.front(), '/') << path;  // relative, never absolute
        EXPECT_EQ(path.find('\\'), std::string::npos) << path;
    }
}

// The harness mechanics proper, with a shell standing in for the program:
// merged output order, stdin contents, the default environment, the kill.
TEST(HarnessSelfTest, MechanicsWithShell) {
    {
        e2e::RunSpec spec;
        spec.no_ini = true;
        spec.input = "line one\nline two";
        spec.env = {{"SOURCE_DATE_EPOCH", "42"}};
        spec.argv = {"/bin/sh", "-c",
                     "echo a; echo b >&2; echo c; cat; echo;"
                     "printf '%s|%s|%s|%s|%s\\n' \"$EDITOR\" \"${VISUAL-unset}\" "
                     "\"$SOURCE_DATE_EPOCH\" \"$LANG\" \"${DISPLAY-unset}\"; exit 3"};
        e2e::RunResult r = e2e::run(spec);
        EXPECT_FALSE(r.signaled);
        EXPECT_EQ(r.status, 3);
        EXPECT_EQ(r.out, "a\nb\nc\nline one\nline two\ncat|unset|42|C.UTF-8|unset\n");
        EXPECT_TRUE(r.files.empty());
    }
    {
        e2e::RunSpec spec;
        spec.no_ini = true;
        spec.timeout_seconds = 0.5;
        spec.argv = {"/bin/sh", "-c", "echo started; sleep 30 & wait"};
        auto t0 = std::chrono::steady_clock::now();
        e2e::RunResult r = e2e::run(spec);
        auto took = std::chrono::steady_clock::now() - t0;
        EXPECT_TRUE(r.timed_out);
        EXPECT_TRUE(r.signaled);
        EXPECT_EQ(r.status, -1);
        EXPECT_EQ(r.out, "started\n");
        EXPECT_LT(took, std::chrono::seconds(10));
    }
    EXPECT_EQ(e2e::count_occurrences("abababa", "aba"), 2u);
    EXPECT_EQ(e2e::count_occurrences("abc", ""), 0u);
    EXPECT_THROW(e2e::read_file(e2e::source_path("no/such/file")), std::runtime_error);
}

}  // namespace
