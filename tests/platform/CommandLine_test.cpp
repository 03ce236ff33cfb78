#include "platform/CommandLine.h"

#include <gtest/gtest.h>

#include <random>

using saltmarrow::platform::batchCommand;
using saltmarrow::platform::batchFileText;
using saltmarrow::platform::quoteArgument;
using saltmarrow::platform::splitCommandLine;
using saltmarrow::platform::splitPipeline;
using Args = std::vector<std::string>;

TEST(CommandLineSplit, QuotesAndBlanks) {
    EXPECT_EQ(splitCommandLine(""), Args{});
    EXPECT_EQ(splitCommandLine("   \t "), Args{});
    EXPECT_EQ(splitCommandLine("cdrdao  write --device 0,1,0"),
              (Args{"cdrdao", "write", "--device", "0,1,0"}));
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

// Whatever bytes a name holds, it comes back from the command line, from a
// stage of a pipeline and from a batch file exactly as it went in.
TEST(CommandLineQuote, EveryByteStringComesBackWhole) {
    std::vector<std::string> names{"plain",
                                   "two words",
                                   "",
                                   "q\"uote",
                                   "trail\\",
                                   "dir with\\\\",
                                   "tab\there",
                                   "x\" | touch PWNED \"y.toc",
                                   "a\\\"b",
                                   "$(touch PWNED)",
                                   "a;b",
                                   "line\nbreak\r\n",
                                   "|",
                                   "\"\"",
                                   std::string("nul\0byte", 8)};
    std::mt19937 random(12);
    for (int i = 0; i < 20000; ++i) {
        std::string s(random() % 12, ' ');
        for (char &c : s)
            c = "\\\"| \t\r\nab"[random() % 9] + (random() % 4 == 0 ? static_cast<char>(random()) : 0);
        names.push_back(s);
    }
    for (const std::string &s : names) {
        const std::string q = quoteArgument(s);
        ASSERT_EQ(splitCommandLine(q + " " + q), (Args{s, s})) << q;
        ASSERT_EQ(splitPipeline(q + " | " + q), (Args{q, q})) << q;
        ASSERT_EQ(batchCommand(batchFileText(q + " " + q)), q + " " + q) << q;
    }
}

TEST(PipelineSplit, BarsOutsideQuotesOnly) {
    EXPECT_EQ(splitPipeline("a -x | b -y"), (Args{"a -x", "b -y"}));
    EXPECT_EQ(splitPipeline("a \"x | y\" | b"), (Args{"a \"x | y\"", "b"}));
    EXPECT_EQ(splitPipeline("a x|y"), (Args{"a x|y"}));
    EXPECT_EQ(splitPipeline("single"), (Args{"single"}));
    EXPECT_EQ(splitPipeline("a | b | c"), (Args{"a", "b", "c"}));
    // An escaped quote does not end the group: the bar stays in the argument.
    EXPECT_EQ(splitPipeline(R"(a "x\" | touch PWNED \"y")"), (Args{R"(a "x\" | touch PWNED \"y")"}));
}
