#include <gtest/gtest.h>

#include "support/RuntimeError.h"
#include "support/mdlFunctions.h"

using namespace saltmarrow;
using namespace saltmarrow::vb;

namespace {
int errorOf(void (*f)()) {
    try {
        f();
    } catch (const RuntimeError &e) {
        return e.number();
    }
    return 0;
}
}  // namespace

TEST(Strings, SearchIsOneBasedAndHonoursCompareMode) {
    EXPECT_EQ(InStr("Wrote 5 of 10 MB", "of"), 9u);
    EXPECT_EQ(InStr("abc", "d"), 0u);
    EXPECT_EQ(InStr(3, "abcabc", "a"), 4u);
    EXPECT_EQ(InStr(7, "abcabc", "a"), 0u);
    EXPECT_EQ(InStr("", ""), 0u);
    EXPECT_EQ(InStr(2, "abc", ""), 2u);
    EXPECT_EQ(InStr("Writing FINISHED", "finished"), 0u);
    EXPECT_EQ(InStr("Writing FINISHED", "finished", Compare::Text), 9u);
    EXPECT_EQ(InStrRev("a\\b\\c.toc", "\\"), 4u);
    EXPECT_EQ(InStrRev("a\\b\\c.toc", "\\", 3), 2u);
    EXPECT_EQ(InStrRev("abc", "abcd"), 0u);
    EXPECT_EQ(InStrRev("x.TOC", ".toc", 0, Compare::Text), 2u);
    EXPECT_EQ(errorOf([] { InStr(0, "a", "a"); }), err::InvalidProcedureCall);
}

TEST(Strings, PiecesOfText) {
    EXPECT_EQ(Mid("0,6,0: HL-DT-ST", 1, 5), "0,6,0");
    EXPECT_EQ(Mid("abc", 2), "bc");
    EXPECT_EQ(Mid("abc", 4), "");
    EXPECT_EQ(Mid("abc", 2, 100), "bc");
    EXPECT_EQ(errorOf([] { Mid("abc", 0); }), err::InvalidProcedureCall);
    EXPECT_EQ(Left("abc", 5), "abc");
    EXPECT_EQ(Right("abcdef", 4), "cdef");
    EXPECT_EQ(Right("ab", 4), "ab");
    EXPECT_EQ(Trim("  a b  "), "a b");
    EXPECT_EQ(Trim("\ta\t"), "\ta\t");  // only blanks are trimmed
    EXPECT_EQ(UCase("sheet.cue ä"), "SHEET.CUE ä");
    EXPECT_TRUE(equalsText("@echo off", "@ECHO OFF"));
    EXPECT_FALSE(equalsText("abc", "abcd"));
}

TEST(Strings, ReplaceSplitJoin) {
    EXPECT_EQ(Replace("a\\b\\c", "\\", "/"), "a/b/c");
    EXPECT_EQ(Replace("File.BIN file.bin", "file", "X", Compare::Text), "X.BIN X.bin");
    EXPECT_EQ(Replace("aaa", "aa", "b"), "ba");
    EXPECT_EQ(Replace("abc", "", "x"), "abc");
    EXPECT_TRUE(Split("", "|").empty());
    EXPECT_EQ(Split("1|a||b", "|"), (std::vector<std::string>{"1", "a", "", "b"}));
    EXPECT_EQ(Split("a|", "|"), (std::vector<std::string>{"a", ""}));
    EXPECT_EQ(Join({"a", "", "b"}, "|"), "a||b");
}

TEST(Numbers, ValIsLenient) {
    EXPECT_EQ(Val("  12 MB"), 12);
    EXPECT_EQ(Val("1 2 3"), 123);
    EXPECT_EQ(Val("-3.5e2x"), -350);
    EXPECT_EQ(Val("abc"), 0);
    EXPECT_EQ(Val(""), 0);
    EXPECT_EQ(Val("&H1F"), 31);
    EXPECT_EQ(Val("&O17"), 15);
    EXPECT_EQ(Val("12."), 12);
    EXPECT_EQ(Val("1e"), 1);
    EXPECT_EQ(Val("4.7.1"), 4.7);
}

TEST(Numbers, StrictConversionsRaise) {
    EXPECT_EQ(CLng(" 42 "), 42);
    EXPECT_EQ(CLng("2.5"), 2);  // half to even
    EXPECT_EQ(CLng("3.5"), 4);
    EXPECT_EQ(CLng("-7"), -7);
    EXPECT_EQ(CInt("32767"), 32767);
    EXPECT_DOUBLE_EQ(CDbl("1.5E3"), 1500);
    EXPECT_EQ(CLng("&HFF"), 255);
    EXPECT_EQ(errorOf([] { CLng(""); }), err::TypeMismatch);
    EXPECT_EQ(errorOf([] { CLng("12 MB"); }), err::TypeMismatch);
    EXPECT_EQ(errorOf([] { CLng("1e"); }), err::TypeMismatch);
    EXPECT_EQ(errorOf([] { CInt("32768"); }), err::Overflow);
    EXPECT_EQ(errorOf([] { CLng("3000000000"); }), err::Overflow);
    EXPECT_EQ(errorOf([] { CDbl("1e999"); }), err::Overflow);
    EXPECT_TRUE(IsNumeric(" 1.5 "));
    EXPECT_FALSE(IsNumeric("1.5.2"));
    EXPECT_FALSE(IsNumeric(""));
}
