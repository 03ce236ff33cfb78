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
// backslashes stand for themselves. The program name (the first argument) only
// knows quotes, as on Windows. An unbalanced quote groups to the end.
std::vector<std::string> splitCommandLine(std::string_view line);

// Splits the command of a batch file at " | " outside double quotes: the stages
// of a pipeline. Stages are trimmed; a line without a bar gives one stage.
std::vector<std::string> splitPipeline(std::string_view command);

// Quotes one argument so that splitCommandLine gives it back unchanged.
std::string quoteArgument(std::string_view argument);

}  // namespace saltmarrow::platform

#endif
