#ifndef SALTMARROW_PLATFORM_COMMANDLINE_H
#define SALTMARROW_PLATFORM_COMMANDLINE_H

#include <string>
#include <string_view>
#include <vector>

namespace saltmarrow::platform {

// Splits a command line into arguments by the rules of the Windows C runtime,
// which is how every command line of the program is written: blanks and tabs
// separate, double quotes group, 2n backslashes before a quote give n
// backslashes and a quote that toggles grouping, 2n+1 give n backslashes and a
// literal quote, a doubled quote inside a group is a literal quote, and other
// backslashes stand for themselves. The program name follows the same rules,
// so that quoteArgument serves it too. An unbalanced quote groups to the end.
std::vector<std::string> splitCommandLine(std::string_view line);

// Splits the command of a batch file at " | " outside double quotes: the stages
// of a pipeline. Quotes are walked exactly as splitCommandLine walks them, so a
// bar inside an argument never starts a stage. Stages are trimmed; a line
// without a bar gives one stage.
std::vector<std::string> splitPipeline(std::string_view command);

// Quotes one argument so that splitCommandLine, splitPipeline and a batch file
// give it back unchanged, whatever bytes it holds. Every path and every text of
// the user that enters a command line or a batch file goes through here. Paths
// stand in double quotes always; a drive address that needs none stays bare.
enum class Quoting { Always, WhenNeeded };
std::string quoteArgument(std::string_view argument, Quoting quoting = Quoting::Always);

// A batch file as the program writes it: "@ECHO OFF", then the command, CR LF
// after each. batchCommand is its inverse: every line but "@ECHO OFF" and
// empty ones, joined by a blank; a line end inside quotes belongs to the
// argument it stands in.
std::string batchFileText(std::string_view command);
std::string batchCommand(std::string_view fileText);

}  // namespace saltmarrow::platform

#endif
