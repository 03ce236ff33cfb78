#include "platform/CommandLine.h"

#include <gtest/gtest.h>

using namespace saltmarrow::platform;
using Args = std::vector<std::string>;

// Quoted and empty arguments: the round trip of every byte string below.
TEST(CommandLineSplit, QuotesAndBlanks) {
    EXPECT_EQ(splitCommandLine(""), Args{});
    EXPECT_EQ(splitCommandLine("   \t "), Args{});
    EXPECT_EQ(splitCommandLine("cdrdao  write --device 0,1,0"),
              (Args{"cdrdao", "write", "--device", "0,1,0"}));
    EXPECT_EQ(splitCommandLine("p a\"b c\"d"), (Args{"p", "ab cd"}));
}

TEST(CommandLineSplit, BackslashRulesOfTheRuntime) {
    EXPECT_EQ(splitCommandLine(R"(p a\b c\\d)"), (Args{"p", R"(a\b)", R"(c\\d)"}));
    EXPECT_EQ(splitCommandLine(R"(p a\"b)"), (Args{"p", R"(a"b)"}));
    EXPECT_EQ(splitCommandLine(R"(p a\\"b c")"), (Args{"p", R"(a\b c)"}));
    EXPECT_EQ(splitCommandLine(R"(p a\\\"b)"), (Args{"p", R"(a\"b)"}));
    EXPECT_EQ(splitCommandLine(R"(p "C:\dir\" x)"), (Args{"p", R"(C:\dir" x)"}));
    EXPECT_EQ(splitCommandLine(R"(p "say ""hi""")"), (Args{"p", R"(say "hi")"}));
    // So does the program name: a backslash before anything but a quote is itself.
    EXPECT_EQ(splitCommandLine(R"(C:\tools\cdrdao.exe x)"), (Args{R"(C:\tools\cdrdao.exe)", "x"}));
}

TEST(CommandLineSplit, UnbalancedQuoteGroupsToTheEnd) {
    EXPECT_EQ(splitCommandLine("p \"a b"), (Args{"p", "a b"}));
    EXPECT_EQ(splitCommandLine("\"p q"), (Args{"p q"}));
    EXPECT_EQ(splitCommandLine("p \\"), (Args{"p", "\\"}));
}

// Whatever bytes a name holds, it comes back from the command line, from a
// stage of a pipeline and from a batch file exactly as it went in: every string
// of up to four of the ten bytes that matter (the rest behave as "a" does).
TEST(CommandLineQuote, EveryByteStringComesBackWhole) {
    for (int n = 0; n < 10000; ++n) {
        std::string s;
        for (int k = n; k > 0; k /= 10) s += std::string_view("\0\\\"| \t\r\na\xff", 10)[k % 10];
        const std::string q = quoteArgument(s), line = q + " " + q;
        ASSERT_EQ(splitCommandLine(line), (Args{s, s})) << q;
        ASSERT_EQ(splitPipeline(q + " | " + line), (Args{q, line})) << q;
        ASSERT_EQ(batchCommand(batchFileText(line)), line) << q;
    }
}

TEST(PipelineSplit, BarsOutsideQuotesOnly) {
    EXPECT_EQ(splitPipeline("a -x | b -y"), (Args{"a -x", "b -y"}));
    EXPECT_EQ(splitPipeline("a \"x | y\" | b"), (Args{"a \"x | y\"", "b"}));
    EXPECT_EQ(splitPipeline("a x|y"), (Args{"a x|y"}));
    EXPECT_EQ(splitPipeline(R"(a "x\" | touch PWNED \"y")"), (Args{R"(a "x\" | touch PWNED \"y")"}));
}
