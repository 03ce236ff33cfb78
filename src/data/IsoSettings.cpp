#include "data/IsoSettings.h"

#include "platform/FolderListing.h"
#include "support/mdlFunctions.h"

namespace saltmarrow::data {

namespace {

enum class KeyAction { Keep, Blank, Punctuation, Lower, Control, Other };

struct KeyClass {
    unsigned char from, to;
    KeyAction action;
};

// Characters by code; whatever no row names (#, $, @, and all above 127) is Other.
constexpr KeyClass kKeyClasses[] = {
    {95, 95, KeyAction::Keep},        {48, 57, KeyAction::Keep},        {65, 90, KeyAction::Keep},
    {32, 32, KeyAction::Blank},       {33, 34, KeyAction::Punctuation}, {37, 47, KeyAction::Punctuation},
    {58, 63, KeyAction::Punctuation}, {97, 122, KeyAction::Lower},      {0, 31, KeyAction::Control},
    {127, 127, KeyAction::Control},
};

KeyAction classOf(char key) {
    const auto c = static_cast<unsigned char>(key);
    for (const KeyClass &k : kKeyClasses)
        if (c >= k.from && c <= k.to) return k.action;
    return KeyAction::Other;
}

char upper(char c) {
    return static_cast<char>(c - ('a' - 'A'));
}

constexpr std::size_t at(IsoBox b) {
    return static_cast<std::size_t>(b);
}

void enable(IsoControls &c, IsoBox b, bool enabled) {
    c.enabled[at(b)] = enabled;
}

}  // namespace

IsoSettings::IsoSettings() {
    for (const IsoFieldRow &row : kIsoFields) text(row.field) = row.designText;
}

IsoControls::IsoControls() {
    enabled.fill(true);
    for (IsoBox b :
         {IsoBox::LongJoliet, IsoBox::Import, IsoBox::NoEmulation, IsoBox::LoadSize, IsoBox::BootInfoTable})
        enable(*this, b, false);
}

void setBox(IsoControls &c, IsoBox box, bool ticked) {
    if (c.values.boxes[at(box)] == ticked) return;
    c.values.boxes[at(box)] = ticked;
    boxRules(c, box);
}

void boxRules(IsoControls &c, IsoBox box) {
    const bool on = c.values.checked(box);
    switch (box) {
        case IsoBox::ISOLevel2:
            if (on) setBox(c, IsoBox::ISO1999, false);
            break;
        case IsoBox::ISO1999:
            // That level lifts the limits these three would ease.
            if (on) setBox(c, IsoBox::ISOLevel2, false);
            for (IsoBox b : {IsoBox::DontRelocate, IsoBox::VersionNo, IsoBox::RelaxISO}) {
                if (on) setBox(c, b, false);
                enable(c, b, !on);
            }
            break;
        case IsoBox::Joliet:
            if (!on) setBox(c, IsoBox::LongJoliet, false);
            enable(c, IsoBox::LongJoliet, on);
            break;
        case IsoBox::Multi:
            setBox(c, IsoBox::Import, on);
            enable(c, IsoBox::Import, on);
            break;
        case IsoBox::BootImage:
            c.bootImageEnabled = on;
            enable(c, IsoBox::NoEmulation, on);
            enable(c, IsoBox::BootInfoTable, on);
            if (!on) c.values.strBootImage.clear();
            [[fallthrough]];
        case IsoBox::NoEmulation:
            enable(c, IsoBox::LoadSize,
                   c.enabledBox(IsoBox::NoEmulation) && c.values.checked(IsoBox::NoEmulation));
            [[fallthrough]];
        case IsoBox::LoadSize:
            c.loadSizeEnabled = c.enabledBox(IsoBox::LoadSize) && c.values.checked(IsoBox::LoadSize);
            break;
        default:
            break;
    }
}

void loadIsoSettings(IsoControls &c, const SettingRead &read, bool blnDVD, bool blnDVDVideo) {
    for (const IsoBoxRow &row : kIsoBoxes) {
        if (row.fixedByVideo) enable(c, row.box, !blnDVDVideo);
        if (!row.cdKey.empty())
            c.values.boxes[at(row.box)] = vb::settingIsTrue(read(blnDVD ? row.dvdKey : row.cdKey));
        else if (blnDVDVideo && row.fixedByVideo)
            c.values.boxes[at(row.box)] = false;
    }
    for (const IsoBoxRow &row : kIsoBoxes) boxRules(c, row.box);
    if (blnDVDVideo)
        for (const IsoBoxRow &row : kIsoBoxes)
            if (row.fixedByVideo) enable(c, row.box, false);
}

void saveIsoSettings(const IsoControls &c, const SettingWrite &write, bool blnDVD, bool blnDVDVideo) {
    for (const IsoBoxRow &row : kIsoBoxes) {
        if (row.cdKey.empty() || (blnDVDVideo && row.fixedByVideo)) continue;
        write(blnDVD ? row.dvdKey : row.cdKey, c.values.checked(row.box) ? "True" : "False");
    }
}

std::optional<char> checkASCII(char key, bool wide, bool compliantPVD) {
    if (!compliantPVD) return key;
    switch (classOf(key)) {
        case KeyAction::Keep:
        case KeyAction::Control:
            return key;
        case KeyAction::Blank:
        case KeyAction::Punctuation:
            return wide ? key : '_';
        case KeyAction::Lower:
            return upper(key);
        case KeyAction::Other:
            break;
    }
    return std::nullopt;
}

std::optional<char> checkDigit(char key) {
    if ((key >= '0' && key <= '9') || key == '\b') return key;
    return std::nullopt;
}

std::string filterText(std::string_view text, bool allowPunctuation, bool allowSpace, bool allowLowerCase,
                       bool allowAll) {
    std::string out;
    for (const char c : text) {
        switch (classOf(c)) {
            case KeyAction::Keep:
                out += c;
                break;
            case KeyAction::Blank:
                out += allowSpace || allowAll ? c : '_';
                break;
            case KeyAction::Punctuation:
                out += allowPunctuation || allowAll ? c : '_';
                break;
            case KeyAction::Lower:
                out += allowLowerCase || allowAll ? c : upper(c);
                break;
            case KeyAction::Control:
                break;
            case KeyAction::Other:
                if (allowAll) out += c;
                break;
        }
    }
    return out;
}

std::string leaveField(IsoField field, std::string_view text, bool compliantPVD) {
    const IsoFieldRow &row = kIsoFields[static_cast<std::size_t>(field)];
    if (!compliantPVD || !row.filteredOnLeave) return std::string(text);
    const bool wide = row.filter == TextFilter::Wide;
    return filterText(text, wide, wide, false, false);
}

void clearFields(IsoSettings &settings) {
    for (const IsoFieldRow &row : kIsoFields)
        if (row.field != IsoField::Label && row.field != IsoField::LoadSize)
            settings.text(row.field) = row.designText;
}

bool bootImageValid(const IsoSettings &settings) {
    return !settings.checked(IsoBox::BootImage) ||
           platform::inspectPath(settings.strBootImage).kind == platform::EntryKind::File;
}

}  // namespace saltmarrow::data
