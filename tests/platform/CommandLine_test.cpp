#include <gtest/gtest.h>

#include "platform/CommandLine.h"

using saltmarrow::platform::quoteArgument;
using saltmarrow::platform::splitCommandLine;
using saltmarrow::platform::splitPipeline;
using Args = std::vector<std::string>;

TEST(CommandLineSplit, QuotesAndBlanks) {
    EXPECT_EQ(splitCommandLine(""), Args{});
    EXPECT_EQ(splitCommandLine("   \t "), Args{});
    EXPECT_EQ(splitCommandLine("cdrdao  write --device 0,1,0"), (Args{"cdrdao", "write", "--device", "0,1,0"}));
    EXPECT_EQ(splitCommandLine("\"/opt/my tools/cdrdao\" write \"/home/u/My Disc.toc\""),
              (Args{"/opt/my tools/cdrdao", "write", "/home/u/My Disc.toc"}));
    EXPECT_EQ(splitCommandLine("p a\"b c\"d"), (Args{"p", "ab cd"}));
    EXPECT_EQ(splitCommandLine("p \"\""), (Args{"p", ""}));
}

TEST(CommandLineSplit, BackslashRulesOfTheRuntime) {
    EXPECT_EQ(splitCommandLine(R"(p a\b c\\d)"), (Args{"p", R"(a\b)", R"(c\\d)"}));
    EXPECT_EQ(splitCommandLine(R"(p a\"b)"), (Args{"p", R"(a"b)"}));
    EXPECT_EQ(splitCommandLine(R"(p a\\"b c")"), (Args{"p", R"(a\b c)"}));
    EXPECT_EQ(splitCommandLine(R"(p a\\\"b)"), (Args{"p", R"(a\"b)"}));
    EXPECT_EQ(splitCommandLine(R"(p "C:\dir\" x)"), (Args{"p", R"(C:\dir" x)"}));
    EXPECT_EQ(splitCommandLine(R"(p "say ""hi""")"), (Args{"p", R"(say "hi")"}));
    // The program name takes backslashes literally.
    EXPECT_EQ(splitCommandLine(R"(C:\tools\cdrdao.exe x)"), (Args{R"(C:\tools\cdrdao.exe)", "x"}));
}

TEST(CommandLineSplit, UnbalancedQuoteGroupsToTheEnd) {
    EXPECT_EQ(splitCommandLine("p \"a b"), (Args{"p", "a b"}));
    EXPECT_EQ(splitCommandLine("\"p q"), (Args{"p q"}));
    EXPECT_EQ(splitCommandLine("p \\"), (Args{"p", "\\"}));
}

TEST(CommandLineSplit, QuotingRoundTrips) {
    for (std::string arg : {"plain", "two words", "", "q\"uote", "trail\\", "dir with\\\\", "$HOME `id` ; & | x",
                            "a\\\"b", "tab\there"}) {
        auto args = splitCommandLine("prog " + quoteArgument(arg));
        ASSERT_EQ(args.size(), 2u) << arg;
        EXPECT_EQ(args[1], arg);
    }
}

TEST(PipelineSplit, BarsOutsideQuotesOnly) {
    EXPECT_EQ(splitPipeline("a -x | b -y"), (Args{"a -x", "b -y"}));
    EXPECT_EQ(splitPipeline("a \"x | y\" | b"), (Args{"a \"x | y\"", "b"}));
    EXPECT_EQ(splitPipeline("a x|y"), (Args{"a x|y"}));
    EXPECT_EQ(splitPipeline("single"), (Args{"single"}));
    EXPECT_EQ(splitPipeline("a | b | c"), (Args{"a", "b", "c"}));
}
