#ifndef SALTMARROW_TESTS_SCRIPTEDDIALOGS_H
#define SALTMARROW_TESTS_SCRIPTEDDIALOGS_H

#include <deque>
#include <variant>

#include "platform/Dialogs.h"

namespace saltmarrow::test {

using platform::FileRequest;
using platform::FolderChoice;
using platform::FontChoice;

// Answers from a queue and records every prompt, for tests. A prompt with no
// answer queued gets OK, or a cancel for dialogs.
class ScriptedDialogs : public platform::Dialogs {
public:
    using Answer =
        std::variant<int, std::vector<std::string>, std::string, FolderChoice, FontChoice, std::monostate>;

    struct Prompt {
        std::string kind;  // "msgbox", "open", "save", "folder", "input", "font"
        std::string text;  // message, or title of a dialog
        int style = 0;
        std::string title;
        FileRequest request;
    };

    void answer(Answer a) { answers_.push_back(std::move(a)); }
    void cancelNext() { answers_.emplace_back(std::monostate{}); }

    std::vector<Prompt> prompts;

    int MsgBoxOverMe(const std::string &text, int style, const std::string &title) override;
    std::optional<std::vector<std::string>> openFile(const FileRequest &request) override;
    std::optional<std::string> saveFile(const FileRequest &request) override;
    std::optional<FolderChoice> browseFolder(const std::string &title, const std::string &folder,
                                             const std::string &checkBoxCaption, bool checked) override;
    std::optional<std::string> inputBox(const std::string &prompt, const std::string &title,
                                        const std::string &defaultText) override;
    std::optional<FontChoice> chooseFont(const FontChoice &current) override;

private:
    std::optional<Answer> next();
    std::deque<Answer> answers_;
};

}  // namespace saltmarrow::test

#endif
