#include "shell/LanguageFile.h"

#include <algorithm>
#include <array>
#include <filesystem>

#include "shell/TextLines.h"
#include "support/mdlFunctions.h"

namespace saltmarrow {

namespace {

constexpr std::string_view kCrLf = "\r\n";
constexpr std::string_view kGlobalMessages = "[Global Messages]";
constexpr std::string_view kLineBreakMark = "<cr>";

bool isSectionHeader(std::string_view line) {
    return line.size() >= 2 && line.front() == '[' && line.back() == ']';
}

// The header box: 67 "#" wide, indented by four blanks, 71 characters a line.
constexpr std::size_t kBoxWidth = 71;
constexpr std::string_view kIndent = "    ";

std::string boxRule() {
    return std::string(kIndent) + std::string(kBoxWidth - kIndent.size(), '#');
}

// "    #" + text, blanks up to the closing "#" (a text too long for the box
// simply pushes it out).
std::string boxLine(std::string_view text) {
    std::string line = std::string(kIndent) + "#" + std::string(text);
    if (line.size() < kBoxWidth - 1) line.append(kBoxWidth - 1 - line.size(), ' ');
    return line + "#";
}

constexpr std::string_view kGuidelinesTitle = "Guidelines for translating saltmarrow - Please Read";

constexpr std::array<std::string_view, 10> kRules{{
    "01. saltmarrow automatically generates a template language file for the current language if none "
    "already "
    "exists",
    "02. All strings are in the format: string name=local string",
    "03. Start a line with # if you wish to add commments",
    "04. The english should be kept for terminology that has no exact equivilent in your language",
    "05. For words that are not translated please keep them the same - ie, do not change 'saltmarrow' to "
    "'Saltmarrow'",
    "06. Translate the strings as closely as possible - if you think a string could be improved then suggest "
    "the "
    "change for all languages.",
    "07. <cr> means a carriage return (in global messages only)",
    "08. %n is used as a data marker - please do not remove it",
    "09. & is placed before the letter used for keyboard shortcuts",
    "10. Send the finished file to the saltmarrow project's issue tracker so that it ships with the next "
    "release",
}};

constexpr std::array<std::string_view, 8> kUntranslated{{"", "-", ".", "..", ">|", "|<", ">>", "<<"}};

std::string captionKey(const CaptionLine &c) {
    return c.index ? c.control + "(" + std::to_string(*c.index) + ")" : c.control;
}

}  // namespace

std::string languagePath(std::string_view appDir, std::string_view language) {
    std::string path(appDir);
    if (!path.empty() && path.back() != '/') path += '/';
    return path + "languages/" + std::string(language) + ".txt";
}

std::pair<std::string, std::optional<int>> splitControlKey(std::string_view key) {
    std::size_t open = vb::InStr(key, "(");
    if (open == 0) return {std::string(key), std::nullopt};
    std::size_t close = vb::InStr(open, key, ")");
    std::string number = close ? vb::Mid(key, open + 1, close - open - 1) : vb::Mid(key, open + 1);
    // Lenient, as a hand-edited file may hold anything between the brackets.
    return {vb::Left(key, open - 1), static_cast<int>(vb::Val(number))};
}

LanguageSection readLanguage(std::string_view bytes, std::string_view formName, bool messagesToo) {
    LanguageSection section;
    const std::string formHeader = "[" + std::string(formName) + "]";
    const bool isMainForm = formName == kMainFormName;
    bool inMessages = false;
    bool inForm = false;

    for (std::string_view raw : splitLines(bytes)) {
        std::string trimmed = vb::Trim(raw);
        if (trimmed.empty() || trimmed.front() == '#') continue;

        std::size_t eq = vb::InStr(raw, "=");
        if (eq == 0) {
            if (trimmed == kGlobalMessages && messagesToo) {
                inMessages = true;
            } else {
                inMessages = false;
                if (inForm && isSectionHeader(trimmed)) break;
                if (trimmed == formHeader) inForm = true;
            }
            continue;
        }

        std::string key = vb::Trim(raw.substr(0, eq - 1));
        std::string value(raw.substr(eq));
        if (inMessages) section.messages.emplace_back(key, vb::Replace(value, kLineBreakMark, kCrLf));
        if (!inForm) continue;
        // The main form keeps its product caption whatever the file says.
        if (key == formName) {
            if (!isMainForm) section.formCaption = value;
            continue;
        }
        // In form sections "<cr>" stays as it is written.
        auto [control, index] = splitControlKey(key);
        section.captions.push_back({std::move(control), index, std::move(value)});
    }
    return section;
}

std::vector<std::string> availableLanguages(std::string_view appDir) {
    namespace fs = std::filesystem;
    std::vector<std::string> names;
    std::error_code ec;
    fs::path folder = fs::path(std::string(appDir)) / "languages";
    for (auto it = fs::directory_iterator(folder, ec); !ec && it != fs::directory_iterator();
         it.increment(ec)) {
        const fs::path &p = it->path();
        if (p.extension() != ".txt" || !it->is_regular_file(ec)) continue;
        std::string name = p.stem().string();
        if (name != kEnglish) names.push_back(name);
    }
    std::sort(names.begin(), names.end());
    names.insert(names.begin(), std::string(kEnglish));
    return names;
}

bool isUntranslatedCaption(std::string_view caption) {
    if (caption.size() >= 5 && caption.substr(caption.size() - 5) == "[dis]") return true;
    return std::find(kUntranslated.begin(), kUntranslated.end(), caption) != kUntranslated.end();
}

std::string composeLanguageTemplate(std::string_view name, std::string_view date, std::string_view version,
                                    const MessageTable &messages, const std::vector<FormCaptions> &forms) {
    std::string out;
    auto line = [&out](std::string_view text) {
        out += text;
        out += kCrLf;
    };

    line(boxRule());
    line(boxLine(""));
    line(boxLine("   saltmarrow Localization File"));
    line(boxLine("   Language: " + std::string(name)));
    {
        std::string head = std::string(kIndent) + "#   Date:     " + std::string(date);
        std::string tail = "Version: " + std::string(version) + "   #";
        std::size_t used = head.size() + tail.size();
        std::size_t gap = used + 4 < kBoxWidth ? kBoxWidth - used : 4;
        line(head + std::string(gap, ' ') + tail);
    }
    line(std::string(kIndent) + "#   Author:   saltmarrow generated template - please translate.   #");
    line(boxLine(""));
    line(boxLine("       " + std::string(kGuidelinesTitle)));
    line(boxLine("       " + std::string(kGuidelinesTitle.size(), '-')));
    line(boxLine(""));
    for (std::string_view rule : kRules) line(std::string(kIndent) + "#   " + std::string(rule));
    line(boxLine(""));
    line(boxRule());

    line("");
    line("");
    line(kGlobalMessages);
    for (const std::string &key : messages.keys())
        line(key + "=" + vb::Replace(messages.text(key), kCrLf, kLineBreakMark));

    for (const FormCaptions &form : forms) {
        if (form.formName == "frmAbout") continue;
        line("");
        line("[" + form.formName + "]");
        if (form.formName != kMainFormName) line(form.formName + "=" + form.caption);
        for (const CaptionLine &c : form.controls)
            if (!isUntranslatedCaption(c.caption)) line(captionKey(c) + "=" + c.caption);
    }
    return out;
}

}  // namespace saltmarrow
