#include "testlib/ScriptedDialogs.h"

namespace saltmarrow::test {

namespace mb = platform::mb;

namespace {
template <typename T>
std::optional<T> take(const std::optional<ScriptedDialogs::Answer> &a) {
    if (a && std::holds_alternative<T>(*a)) return std::get<T>(*a);
    return std::nullopt;
}
}  // namespace

std::optional<ScriptedDialogs::Answer> ScriptedDialogs::next() {
    if (answers_.empty()) return std::nullopt;
    Answer a = std::move(answers_.front());
    answers_.pop_front();
    return a;
}

int ScriptedDialogs::MsgBoxOverMe(const std::string &text, int style, const std::string &title) {
    prompts.push_back({"msgbox", text, style, title, {}});
    auto a = next();
    if (auto v = take<int>(a)) return *v;
    if (a && std::holds_alternative<std::monostate>(*a)) return mb::Cancel;
    return mb::OK;
}

std::optional<std::vector<std::string>> ScriptedDialogs::openFile(const FileRequest &request) {
    prompts.push_back({"open", request.title, 0, request.title, request});
    auto a = next();
    if (auto v = take<std::vector<std::string>>(a)) return v;
    if (auto v = take<std::string>(a)) return std::vector<std::string>{*v};
    return std::nullopt;
}

std::optional<std::string> ScriptedDialogs::saveFile(const FileRequest &request) {
    prompts.push_back({"save", request.title, 0, request.title, request});
    return take<std::string>(next());
}

std::optional<FolderChoice> ScriptedDialogs::browseFolder(const std::string &title, const std::string &folder,
                                                          const std::string &checkBoxCaption, bool checked) {
    // The request carries the box: its caption as the file name, its state as the flags.
    const FileRequest r{
        .title = title, .folder = folder, .fileName = checkBoxCaption, .flags = checked ? 1 : 0};
    prompts.push_back({"folder", title, 0, title, r});
    return take<FolderChoice>(next());
}

std::optional<std::string> ScriptedDialogs::inputBox(const std::string &prompt, const std::string &title,
                                                     const std::string &defaultText) {
    prompts.push_back({"input", prompt, 0, title, {.fileName = defaultText}});
    return take<std::string>(next());
}

std::optional<FontChoice> ScriptedDialogs::chooseFont(const FontChoice &current) {
    prompts.push_back({"font", current.name, current.size, {}, {.fileName = current.name}});
    return take<FontChoice>(next());
}

}  // namespace saltmarrow::test
