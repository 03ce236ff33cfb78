#include "support/ErrorReport.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "support/RuntimeError.h"

using namespace saltmarrow;

namespace {
struct RecordingReporter : ErrorReporter {
    bool answer = true;
    std::vector<std::string> reports;
    bool ErrorReport(int number, const std::string &description, const std::string &module,
                     const std::string &procedure, int line) override {
        reports.push_back(
            errorReportText(number, description, module, procedure, line, "1.0", "6.1\tDebian"));
        return answer;
    }
};
}  // namespace

TEST(ErrorReport, TextWithAndWithoutLineAndDescription) {
    EXPECT_EQ(errorReportText(13, "Type mismatch", "frmMain", "loadSettings", 0, "0.1", "6.1.0\tDebian 12"),
              "Error 13: Type mismatch\r\nError occurred in: frmMain:loadSettings\r\nApp Version: 0.1\r\n"
              "Linux Version: 6.1.0\tDebian 12");
    std::string withLine = errorReportText(5, "", "frmMain", "cmdWrite_Click", 120, "0.1", "x");
    EXPECT_EQ(withLine.substr(0, withLine.find("\r\n")), "Error 5: ");
    EXPECT_NE(withLine.find("Error occurred in: frmMain:cmdWrite_Click:120\r\n"), std::string::npos);
}

TEST(ErrorReport, GuardReportsWhatEscapesAHandler) {
    RecordingReporter reporter;
    int terminated = 0;
    bool ran = false;
    guard(
        reporter, "frmMain", "ok_Click", [&] { ran = true; }, [&] { ++terminated; });
    EXPECT_TRUE(ran);
    EXPECT_TRUE(reporter.reports.empty());

    guard(
        reporter, "frmMain", "loadSettings", [] { raiseError(13); }, [&] { ++terminated; });
    ASSERT_EQ(reporter.reports.size(), 1u);
    EXPECT_EQ(reporter.reports[0].substr(0, 23), "Error 13: Type mismatch");
    EXPECT_NE(reporter.reports[0].find("frmMain:loadSettings"), std::string::npos);
    EXPECT_EQ(terminated, 0) << "Ignore goes on";

    reporter.answer = false;
    guard(
        reporter, "frmMain", "x", [] { throw std::runtime_error("disk gone"); }, [&] { ++terminated; });
    EXPECT_EQ(terminated, 1);
    EXPECT_NE(reporter.reports.back().find("disk gone"), std::string::npos);
}
