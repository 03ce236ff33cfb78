#include "shell/SettingsStore.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "shell/TextLines.h"
#include "support/AtomicFile.h"
#include "support/RuntimeError.h"
#include "support/mdlFunctions.h"

namespace saltmarrow {

namespace {

constexpr std::string_view kCrLf = "\r\n";

// Keys whose value is a device key, kept as the text it is.
bool isDeviceSelection(std::string_view key) {
    return key == "WriterDevice" || key == "ReaderDevice";
}

// The file's canonical text of a value of the given form; raises 13/6 for a
// value that is not of that form.
std::string canonical(SettingForm form, std::string_view value) {
    switch (form) {
        case SettingForm::Int:
            return value.empty() ? "0" : std::to_string(vb::CInt(value));
        case SettingForm::Bool:
            return value.empty() ? "False" : booleanText(textToBoolean(value));
        case SettingForm::Real:
            return singleText(vb::Val(value));
        case SettingForm::Text:
        case SettingForm::Fields:
            return std::string(value);
    }
    return std::string(value);
}

std::optional<std::string> readWholeFile(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return std::nullopt;
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

// Runs each line through handle; a run-time error of one line does not stop
// the others, and the first one is raised when all lines are done.
template <typename Handler>
void forEachEntry(std::string_view bytes, Handler handle) {
    std::optional<RuntimeError> first;
    for (std::string_view line : splitLines(bytes)) {
        std::size_t eq = vb::InStr(line, "=");
        if (eq == 0) continue;  // section headers, blank lines and stray text
        try {
            handle(line.substr(0, eq - 1), line.substr(eq));
        } catch (const RuntimeError &e) {
            if (!first) first = e;
        }
    }
    if (first) throw *first;
}

// A line break inside a value would end the entry early and turn the rest of
// the value into a line of its own; the value is cut there instead.
std::string oneLine(std::string_view value) {
    std::size_t end = value.find_first_of("\r\n");
    return std::string(value.substr(0, end));
}

std::string joinFields(std::initializer_list<std::string_view> fields) {
    std::string out;
    bool first = true;
    for (std::string_view f : fields) {
        if (!first) out += '|';
        out += oneLine(f);
        first = false;
    }
    return out;
}

const std::string &deviceId(const DeviceInfo &d, bool useSPTI) {
    return useSPTI ? d.SPTIDeviceID : d.ASPIDeviceID;
}

// Ids are "b,t,l": an entry of a device list begins with its device's id.
bool entryHasId(std::string_view entry, std::string_view id) {
    return !id.empty() && vb::Left(entry, id.size()) == id;
}

}  // namespace

// --- conversions --------------------------------------------------------------

bool textToBoolean(std::string_view text) {
    std::string t = vb::Trim(text);
    if (vb::equalsText(t, "True")) return true;
    if (vb::equalsText(t, "False")) return false;
    if (vb::IsNumeric(t)) return vb::CDbl(t) != 0;
    raiseError(err::TypeMismatch);
}

std::string booleanText(bool value) {
    return value ? "True" : "False";
}

std::string singleText(double value) {
    // Seven significant digits, as the text of a single-precision number.
    char buf[32];
    std::snprintf(buf, sizeof buf, "%.7G", static_cast<double>(static_cast<float>(value)));
    return buf;
}

// --- defaults -----------------------------------------------------------------

// The scratch folder of decoding and compiling. Elsewhere it stood at the root
// of the program's drive; here that role is /var/tmp, the disk-backed scratch
// place of the system (/tmp may live in memory, too small for a disc of wave
// files). It is a folder of the program's own, since shutdown offers to delete
// the folder with everything in it.
std::string defaultTempFolder() {
    return "/var/tmp/saltmarrow";
}

// Extracted tracks went to the root of the program's drive; the root here is
// not the user's to write to, the home folder is.
std::string defaultExtractFolder() {
    const char *home = std::getenv("HOME");
    std::string folder = (home && *home) ? home : "";
    if (folder.empty() || folder.back() != '/') folder += '/';
    return folder;
}

std::string settingsPath(std::string_view appDir) {
    std::string path(appDir);
    if (!path.empty() && path.back() != '/') path += '/';
    return path + "saltmarrow.ini";
}

// --- Settings -----------------------------------------------------------------

Settings::Settings() {
    setDefaults();
}

void Settings::setDefaults() {
    values_.clear();
    legacyRead_.clear();
    for (const auto &r : kSettingsTable)
        values_[std::string(r.key)] =
            isDeviceSelection(r.key) ? std::string(r.defaultValue) : canonical(r.form, r.defaultValue);
    for (const auto &r : kLegacySettings) values_[std::string(r.key)] = canonical(r.form, r.defaultValue);
    values_["TempFolder"] = defaultTempFolder();
    values_["MRUExtract"] = defaultExtractFolder();
}

const SettingRow *Settings::row(std::string_view key) {
    for (const auto &r : kSettingsTable)
        if (r.key == key) return &r;
    return nullptr;
}

const LegacySettingRow *Settings::legacyRow(std::string_view key) {
    for (const auto &r : kLegacySettings)
        if (r.key == key) return &r;
    return nullptr;
}

bool Settings::isKnown(std::string_view key) {
    return row(key) || legacyRow(key);
}

std::string &Settings::slot(std::string_view key) {
    auto it = values_.find(key);
    // Asking for a key that is in neither table is a slip of the caller.
    if (it == values_.end()) raiseError(err::InvalidProcedureCall);
    return it->second;
}

const std::string &Settings::text(std::string_view key) const {
    return const_cast<Settings *>(this)->slot(key);
}

bool Settings::boolean(std::string_view key) const {
    const std::string &v = text(key);
    return v.empty() ? false : textToBoolean(v);
}

std::int16_t Settings::integer(std::string_view key) const {
    const std::string &v = text(key);
    return v.empty() ? 0 : vb::CInt(v);
}

double Settings::real(std::string_view key) const {
    return vb::Val(text(key));
}

void Settings::setText(std::string_view key, std::string value) {
    slot(key) = std::move(value);
}
void Settings::setBoolean(std::string_view key, bool value) {
    slot(key) = booleanText(value);
}
void Settings::setInteger(std::string_view key, int value) {
    slot(key) = std::to_string(value);
}
void Settings::setReal(std::string_view key, double value) {
    slot(key) = singleText(value);
}

bool Settings::wasRead(std::string_view legacyKey) const {
    auto it = legacyRead_.find(legacyKey);
    return it != legacyRead_.end() && it->second;
}

void Settings::store(std::string_view key, std::string_view value) {
    if (const SettingRow *r = row(key)) {
        if (r->form == SettingForm::Fields) return;  // records: see loadSettings
        slot(key) = isDeviceSelection(key) ? std::string(value) : canonical(r->form, value);
    } else if (const LegacySettingRow *l = legacyRow(key)) {
        slot(key) = canonical(l->form, value);
        legacyRead_[std::string(key)] = true;
    }
}

// --- reading ------------------------------------------------------------------

void preloadSettings(const std::string &path, Settings &settings) {
    auto bytes = readWholeFile(path);
    if (!bytes) return;
    forEachEntry(*bytes, [&](std::string_view key, std::string_view value) {
        if (key == "SPTI Interface" || key == "UseProDVD" || key == "Language") settings.store(key, value);
    });
}

LoadResult loadSettings(const std::string &path, Settings &settings, std::optional<EncoderTable> &encoders,
                        const LoadContext &context) {
    LoadResult result;
    auto bytes = readWholeFile(path);
    if (!bytes) return result;
    result.fileFound = true;
    bool firstEncoderLine = true;

    forEachEntry(*bytes, [&](std::string_view key, std::string_view value) {
        if (key == "Device") {
            if (!context.devices) return;
            std::vector<std::string> f = vb::Split(value, "|");
            DeviceInfo *d = f.empty() ? nullptr : context.devices->find(f[0]);
            if (!d) return;
            if (f.size() < 2) raiseError(err::SubscriptOutOfRange);
            // Another drive may have taken the number since; only the same
            // drive gets its options back.
            if (d->DeviceName != f[1]) return;
            if (f.size() < 7) raiseError(err::SubscriptOutOfRange);
            bool writer = textToBoolean(f[4]);
            d->Driver = f[2];
            d->DriverOptions = f[3];
            d->isWriter = writer;
            d->isWriterKnown = true;  // a drive known not to write is not asked again
            d->ReaderOptions = f[5];
            d->WriterOptions = f[6];
        } else if (key == "EncoderSettings") {
            std::vector<std::string> f = vb::Split(value, "|");
            if (f.size() < EncoderTable::kFields) raiseError(err::SubscriptOutOfRange);
            // Encoder lines in the file stand for the whole table: the first
            // one drops the rows that were there, the defaults included.
            if (firstEncoderLine || !encoders) encoders = EncoderTable{};
            firstEncoderLine = false;
            EncoderTable::Row row;
            for (std::size_t i = 0; i < EncoderTable::kFields; ++i) row[i] = f[i];
            encoders->rows.push_back(std::move(row));
        } else {
            settings.store(key, value);
            if (key == "ReaderDevice" && context.devices) {
                if (auto index = entryOfDevice(*context.devices, settings.text("ReaderDevice"),
                                               context.readerEntries, settings.ticked("SPTI Interface")))
                    result.readerIndex = index;
            }
        }
    });
    return result;
}

// --- writing ------------------------------------------------------------------

std::string composeSettings(const Settings &settings, const DeviceTable &devices,
                            const std::optional<EncoderTable> &encoders) {
    std::string out;
    auto line = [&out](std::string_view text) {
        out += text;
        out += kCrLf;
    };
    std::string_view section;
    for (const auto &r : kSettingsTable) {
        if (r.section != section) {
            // Without an encoder table the file ends after the disc database.
            if (r.section == "[Encoder Settings]" && !encoders) break;
            if (!section.empty()) line("");
            section = r.section;
            line(section);
        }
        const std::string key(r.key);
        if (r.key == "Device") {
            for (const DeviceInfo &d : devices.Items())
                line(key + "=" +
                     joinFields({d.DeviceNumber, d.DeviceName, d.Driver, d.DriverOptions,
                                 booleanText(d.isWriter), d.ReaderOptions, d.WriterOptions}));
        } else if (r.key == "EncoderSettings") {
            for (const auto &e : encoders->rows) line(key + "=" + joinFields({e[0], e[1], e[2], e[3], e[4]}));
        } else if (isDeviceSelection(r.key)) {
            line(key + "=" + oneLine(settings.text(r.key)));
        } else {
            line(key + "=" + oneLine(canonical(r.form, settings.text(r.key))));
        }
    }
    return out;
}

void saveSettings(const std::string &path, bool formLoaded, const Settings &settings,
                  const DeviceTable &devices, const std::optional<EncoderTable> &encoders) {
    if (!formLoaded) return;
    // Composed in full first: a bad value raises before the old file is touched.
    std::string bytes = composeSettings(settings, devices, encoders);
    replaceFileAtomically(path, bytes);
}

// --- device selections ----------------------------------------------------------

std::string deviceNumberOfEntry(const DeviceTable &devices, std::string_view entry, bool useSPTI) {
    if (entry.empty()) return {};
    for (const DeviceInfo &d : devices.Items())
        if (entryHasId(entry, deviceId(d, useSPTI))) return d.DeviceNumber;
    return {};
}

std::optional<std::size_t> entryOfDevice(const DeviceTable &devices, std::string_view deviceNumber,
                                         std::span<const std::string> entries, bool useSPTI) {
    const DeviceInfo *d = devices.find(deviceNumber);
    if (!d) return std::nullopt;
    for (std::size_t i = 0; i < entries.size(); ++i)
        if (entryHasId(entries[i], deviceId(*d, useSPTI))) return i;
    return std::nullopt;
}

}  // namespace saltmarrow
