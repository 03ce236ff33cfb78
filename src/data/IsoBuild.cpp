#include "data/IsoBuild.h"

#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "platform/CommandLine.h"
#include "platform/Dialogs.h"
#include "support/mdlFunctions.h"

namespace saltmarrow::data {

namespace fs = std::filesystem;
namespace mb = platform::mb;
using vb::Replace;

namespace {

struct IsoSwitch {
    IsoBox box;
    std::string_view text;
};

// clang-format off
constexpr IsoSwitch kIsoSwitches[] = {
    {IsoBox::Joliet,       "-J "},
    {IsoBox::LongJoliet,   "-joliet-long "},
    {IsoBox::ISOLevel2,    "-iso-level 2 "},
    {IsoBox::VersionNo,    "-N "},
    {IsoBox::DontRelocate, "-D "},
    {IsoBox::RockRidge,    "-r "},
    {IsoBox::ISO1999,      "-iso-level 4 "},
    {IsoBox::RelaxISO,     "-allow-multidot -relaxed-filenames -allow-lowercase -d -L "},
};

struct IsoDescriptor {
    IsoField field;
    std::string_view option;
};

constexpr IsoDescriptor kIsoDescriptors[] = {
    {IsoField::Label,         "-volid "},
    {IsoField::SysID,         "-sysid "},
    {IsoField::VolSet,        "-volset "},
    {IsoField::VolSize,       "-volset-size "},
    {IsoField::VolNo,         "-volset-seqno "},
    {IsoField::Publisher,     "-publisher "},
    {IsoField::Preparer,      "-preparer "},
    {IsoField::Application,   "-appid "},
    {IsoField::Abstract,      "-abstract "},
    {IsoField::Bibliographic, "-biblio "},
    {IsoField::Copyright,     "-copyright "},
};

// What genisoimage reports while it builds, and what the form shows for it.
enum class BuildLine { Progress, NotISO, DupeName, TooDeep, NoAddress };
struct BuildPhrase {
    std::string_view text;
    BuildLine meaning;
};
constexpr BuildPhrase kBuildPhrases[] = {
    {"% done, estimate finish ",                     BuildLine::Progress},
    {"filesystem that does not conform to ISO-9660", BuildLine::NotISO},
    {"same Joliet name",                             BuildLine::DupeName},
    {"Directories too deep",                         BuildLine::TooDeep},
    {"Cannot read first writable address",           BuildLine::NoAddress},
};
// clang-format on

// genisoimage takes files of 4 GiB and more only with -allow-limited-size,
// and then only UDF shows them whole.
constexpr double kLargeFile = 4294967296.0;

// Appends a path as a graft point reads it, "=" escaped. In a source a "\"
// is doubled; in a destination it is the tree's separator and becomes "/".
void appendGraft(std::string &out, std::string_view path, bool source) {
    for (const char c : path) {
        if (c == '=')
            out += "\\=";
        else if (c == '\\')
            out += source ? "\\\\" : "/";
        else
            out += c;
    }
}

std::string graftSource(std::string_view path) {
    std::string out;
    appendGraft(out, path, true);
    return out;
}

// A number as the program prints one: no fraction when it has none.
std::string numberText(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.15g", value);
    return text;
}

}  // namespace

std::string IsoFiles::listFile(bool createISO) const {
    return tempFolder + (createISO ? "/isofilelist.txt" : "/filelist.txt");
}
std::string IsoFiles::emptyFolder() const {
    return tempFolder + "/~emptyfolder";
}
std::string IsoFiles::videoStaging() const {
    return tempFolder + "/dvdvideo";
}
std::string IsoFiles::bootImageCopy() const {
    return tempFolder + "/BootImage.img";
}

std::string pathListEntry(std::string_view relativePath, std::string_view name, std::string_view source,
                          bool isFolder, std::string_view emptyFolder) {
    // The escapes go in as the names are copied, so no "/=" needs putting back.
    std::string entry;
    entry.reserve(relativePath.size() + name.size() + source.size() + emptyFolder.size() + 8);
    appendGraft(entry, relativePath, false);
    entry += '/';
    appendGraft(entry, name, false);
    entry += '=';
    appendGraft(entry, isFolder ? emptyFolder : source, true);
    return entry;
}

std::string isoCharset(std::string_view codeset) {
    const std::string name = vb::LCase(codeset);
    // The C locale says ASCII, but the names the program holds are UTF-8 there too.
    if (name.empty() || name == "ansi_x3.4-1968" || name == "ascii") return "utf-8";
    if (name.starts_with("iso-8859-")) return "iso8859-" + name.substr(9);
    return name;
}

std::string getIsoCommand(const IsoCommandInput &in) {
    const IsoSettings &iso = in.iso;
    std::string command = " -input-charset " + in.charset + " -output-charset " + in.charset + " ";
    if (in.blnDVDVideo)
        command += " -dvd-video";
    else if (iso.checked(IsoBox::UDF) || in.largeFile)
        command += " -udf";
    if (in.largeFile) command += " -allow-limited-size";
    // genisoimage's -dvd-video reads a real folder only: the project stands as
    // links in one, which goes last, since a source ends the options.
    if (in.blnDVDVideo)
        command += " -f ";
    else
        command += " --path-list " + platform::quoteArgument(in.listFile) + " -graft-points ";
    for (const IsoSwitch &s : kIsoSwitches)
        if (iso.checked(s.box)) command += s.text;
    for (const IsoDescriptor &d : kIsoDescriptors)
        if (!iso.text(d.field).empty())
            command += std::string(d.option) + platform::quoteArgument(iso.text(d.field)) + " ";
    if (iso.checked(IsoBox::BootImage)) {
        command += "-b BootImage.img -c BootCatalog.cat -hide BootImage.img -hide BootCatalog.cat ";
        if (iso.checked(IsoBox::Joliet))
            command += " -hide-joliet BootImage.img -hide-joliet BootCatalog.cat ";
        if (iso.checked(IsoBox::NoEmulation)) command += "-no-emul-boot ";
        if (iso.checked(IsoBox::LoadSize))
            command += "-boot-load-size " + numberText(vb::Val(iso.text(IsoField::LoadSize))) + " ";
        if (iso.checked(IsoBox::BootInfoTable)) command += "-boot-info-table ";
        command += platform::quoteArgument("/BootImage.img=" + graftSource(in.bootImage)) + " ";
    }
    if (in.blnDVDVideo) command += platform::quoteArgument(in.videoSource);
    return command;
}

IsoBuild::IsoBuild(DataJob &job, IsoBuildHost host) : job_(job), host_(std::move(host)) {
    files_.tempFolder = host_.tempFolder;
}

void IsoBuild::status(const std::string &text) const {
    if (job_.host().showStatus) job_.host().showStatus(text);
}

bool IsoBuild::buildFileList(bool createISO) {
    DataProject &project = job_.project();
    listFile_ = files_.listFile(createISO);
    largeFile_ = false;
    std::error_code ec;
    const std::string emptyFolder = files_.emptyFolder();
    fs::remove_all(emptyFolder, ec);
    fs::create_directories(emptyFolder, ec);
    status(text("msgCompilingFileList"));
    fs::remove(listFile_, ec);
    std::ofstream list(listFile_, std::ios::binary | std::ios::trunc);
    const bool video = project.blnDVDVideo;
    const std::string staging = files_.videoStaging();
    if (video) {
        fs::remove_all(staging, ec);
        fs::create_directories(staging, ec);
    }
    bool written = false;
    auto lastPump = std::chrono::steady_clock::now();
    for (const NodeId node : project.nodeOrder()) {
        if (project.cancelFlag) {
            list.close();
            fs::remove(listFile_, ec);
            if (host_.ChangeCurrentMode) host_.ChangeCurrentMode(Mode::None);
            return false;
        }
        const std::string &tag = project.Tag(node);
        const std::size_t slash = tag.find('\\');
        const std::string relative = slash == std::string::npos ? std::string() : tag.substr(slash);
        for (const ItemView &item : project.items(node)) {
            if (const auto now = std::chrono::steady_clock::now();
                now - lastPump > std::chrono::milliseconds(10)) {
                lastPump = now;
                if (job_.host().letEventsRun) job_.host().letEventsRun();
            }
            const std::string source = item.SourcePath();
            if (video) {
                // The staging folder mirrors the disc: a folder for each folder, a link for each file.
                const std::string at =
                    staging + Replace(relative, "\\", "/") + "/" + std::string(item.Name());
                if (item.isFolder())
                    fs::create_directory(at, ec);
                else
                    fs::create_symlink(source, at, ec);
            } else {
                if (written) list << '\n';
                list << pathListEntry(relative, item.Name(), source, item.isFolder(), emptyFolder);
            }
            if (!item.isFolder() && item.Size() >= kLargeFile) largeFile_ = true;
            written = true;
        }
    }
    list.close();
    job_.updateSize();
    return written;
}

std::string IsoBuild::getIsoCommand(const IsoSettings &iso) const {
    IsoCommandInput in;
    in.iso = iso;
    in.blnDVDVideo = job_.project().blnDVDVideo;
    in.charset = host_.charset;
    in.listFile = listFile_;
    in.videoSource = files_.videoStaging();
    in.bootImage = files_.bootImageCopy();
    in.largeFile = largeFile_;
    return data::getIsoCommand(in);
}

void IsoBuild::cmdBurn_Click(const BurnClick &click) {
    DataProject &project = job_.project();
    const DataHost &host = job_.host();
    cancelled_ = false;
    job_.enableControls(false);
    // Whatever happens below, the form is given back.
    struct Restore {
        IsoBuild &build;
        ~Restore() {
            build.job_.enableControls(true);
            build.job_.updateSize();
            // A cancelled build says so, not what the project holds.
            if (build.cancelled_) build.status(build.text("msgWriteCancelled"));
        }
    } restore{*this};

    if (!buildFileList(click.chkCreateISO)) {
        if (!project.cancelFlag) host.msgBox(text("msgAddData"), mb::Information);
        return;
    }
    if (click.mnuISOSettings && click.showIsoSettings) click.showIsoSettings();
    const IsoSettings iso = click.isoSettings ? click.isoSettings() : IsoSettings();
    // genisoimage writes its boot table into the boot image: it gets a copy.
    std::error_code ec;
    fs::remove(files_.bootImageCopy(), ec);
    if (iso.checked(IsoBox::BootImage))
        fs::copy_file(iso.strBootImage, files_.bootImageCopy(), fs::copy_options::overwrite_existing, ec);
    std::string options = getIsoCommand(iso);

    std::string label;
    if (click.chkCreateISO) {
        platform::FileRequest request;
        request.filter = "ISO Image File (*.iso)|*.iso";
        const auto target = host.dialogs ? host.dialogs->saveFile(request) : std::nullopt;
        if (!target) return;
        project.strISOFilename = *target;
        // The image grows under a name of its own and takes the user's name
        // only when it is whole: an old file of that name survives a failed build.
        partFile_ =
            (fs::path(*target).parent_path() / (".saltmarrow-" + std::to_string(getpid()) + ".iso")).string();
        options = " -o " + platform::quoteArgument(partFile_) + options;
        label = vb::UCase(text("msgISOImage"));
    } else {
        label = vb::UCase(text(project.blnDVDVideo ? "msgDVDVideo"
                               : project.blnDVD    ? "msgDataDVD"
                                                   : "msgDataCD"));
    }
    if (host_.setMainProgressMax)
        host_.setMainProgressMax(project.total <= 1048576 ? 1
                                                          : static_cast<int>(project.total / 1024 / 1024));
    if (!click.mnuAutoWrite && !click.chkCreateISO) {
        std::string question = text("msgISOSize") + std::to_string(std::llround(project.total / 1048576)) +
                               text("msgDataLoadMain");
        if (largeFile_) question += "\r\n\r\n" + text("msgLargeFileUDF");
        if (host.msgBox(question, mb::OKCancel | mb::Question) != mb::OK) return;
    }
    if (!click.chkCreateISO) {
        if (host_.handOver) host_.handOver(discops::DataDisc{options, largeFile_}, label, click.mnuAutoWrite);
        return;
    }
    makeImage(options);
}

void IsoBuild::makeImage(const std::string &options) {
    const DataHost &host = job_.host();
    building_ = true;
    if (host.showProgress) host.showProgress(100, 0);
    status(text("msgScanningFiles"));
    const auto start = std::chrono::steady_clock::now();
    for (const char *line : {"", "--------------------------------------------------------------", ""})
        if (host_.writeCommandLog) host_.writeCommandLog(line);
    objDOS.ReceiveOutputs = [this](const std::string &line) { objDOS_ReceiveOutputs(line); };
    objDOS.pump = host.letEventsRun;
    objDOS.waitForEvents = host_.waitForEvents;
    const bool ok = objDOS.ExecuteCommand(platform::quoteArgument(host_.mkisofs) + " " + options);
    building_ = false;
    std::error_code ec;
    bool placed = false;
    if (ok && !cancelled_) {
        fs::rename(partFile_, job_.project().strISOFilename, ec);
        placed = !ec;
    }
    if (!placed) fs::remove(partFile_, ec);
    if (cancelled_) return;
    if (!placed) {
        host.msgBox(text("msgFileCheckFail"), mb::Information);
        return;
    }
    job_.updateSize();
    const long seconds = static_cast<long>(
        std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - start).count());
    host.msgBox(Replace(text("msgWriteSuccess"), "%1", host_.elapsedText ? host_.elapsedText(seconds) : ""),
                mb::Information);
}

bool IsoBuild::cancelClick(const std::string &caption) {
    if (!building_) return job_.cancelClick(caption);
    if (caption != text("msgCancel")) return false;
    // The partial image goes once the tool has ended.
    cancelled_ = true;
    objDOS.killInstantly();
    status(text("msgWriteCancelled"));
    return true;
}

void IsoBuild::objDOS_ReceiveOutputs(const std::string &line) {
    if (host_.writeCommandLog) host_.writeCommandLog(line);
    const DataHost &host = job_.host();
    for (const BuildPhrase &phrase : kBuildPhrases) {
        const std::size_t p = vb::InStr(line, phrase.text);
        if (p == 0) continue;
        switch (phrase.meaning) {
            case BuildLine::Progress: {
                const std::size_t q = vb::InStrRev(line, " ", p);
                if (q == 0) break;
                const std::string number = vb::Mid(line, q + 1, p - q - 1);
                const double percent = std::floor(vb::Val(number));
                if (host.showProgress) host.showProgress(100, percent);
                status(text("msgWritingISO") + numberText(percent) + "%");
                break;
            }
            case BuildLine::NotISO:
                status("Filesystem does not conform to ISO-9660");
                break;
            case BuildLine::DupeName:
                host.msgBox(text("msgDupeFileName"), mb::Exclamation);
                break;
            case BuildLine::TooDeep:
                status(text("msgFolderTooDeep"));
                break;
            case BuildLine::NoAddress:
                status(text("msgCannotReadAddress"));
                break;
        }
    }
}

}  // namespace saltmarrow::data
