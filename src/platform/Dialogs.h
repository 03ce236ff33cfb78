#ifndef SALTMARROW_PLATFORM_DIALOGS_H
#define SALTMARROW_PLATFORM_DIALOGS_H

#include <optional>
#include <string>
#include <vector>

namespace saltmarrow::platform {

// Message box styles and results, with the platform's numbers.
namespace mb {
constexpr int OKOnly = 0;
constexpr int OKCancel = 1;
constexpr int YesNoCancel = 3;
constexpr int YesNo = 4;
constexpr int Critical = 16;
constexpr int Question = 32;
constexpr int Exclamation = 48;
constexpr int Information = 64;

constexpr int OK = 1;
constexpr int Cancel = 2;
constexpr int Yes = 6;
constexpr int No = 7;
}  // namespace mb

struct FileRequest {
    std::string title;
    std::string folder;    // where the dialog opens
    std::string fileName;  // proposed name
    std::string filter;    // "Text (*.x;*.y)|*.x;*.y|..." as the program writes it
    int flags = 0;
    bool multiSelect = false;
};

struct FolderChoice {
    std::string folder;
    bool checked = false;  // the extra check box
};

struct FontChoice {
    std::string name;
    int size = 0;
};

// Every question the program asks the user goes through here, so that tests
// can answer them. A cancelled dialog gives no value.
class Dialogs {
public:
    virtual ~Dialogs() = default;
    // The message box over the owner form; style and result as in mb.
    virtual int MsgBoxOverMe(const std::string &text, int style, const std::string &title) = 0;
    virtual std::optional<std::vector<std::string>> openFile(const FileRequest &request) = 0;
    virtual std::optional<std::string> saveFile(const FileRequest &request) = 0;
    virtual std::optional<FolderChoice> browseFolder(const std::string &title, const std::string &folder,
                                                     const std::string &checkBoxCaption, bool checked) = 0;
    virtual std::optional<std::string> inputBox(const std::string &prompt, const std::string &title,
                                                const std::string &defaultText) = 0;
    virtual std::optional<FontChoice> chooseFont(const FontChoice &current) = 0;
};

}  // namespace saltmarrow::platform

#endif
