#include "audio/mdlMediaInfo.h"

#include <array>
#include <cmath>
#include <limits>
#include <optional>

#include "audio/BitString.h"
#include "audio/GenreTable.h"
#include "audio/MediaFile.h"
#include "support/RuntimeError.h"
#include "support/mdlFunctions.h"

namespace saltmarrow {

using vb::InStr;
using vb::Mid;

namespace {

constexpr int kDivisionByZero = 11;

// Arithmetic as the readers have always done it: a division by zero or a
// result out of range is a run-time error that ends the reader, keeping the
// fields it had already set. Callers see Millisecs 0 and know.
double divide(double a, double b) {
    if (b == 0) raiseError(a == 0 || std::isnan(a) ? err::Overflow : kDivisionByZero);
    return a / b;
}

// Val of a text that may run on into binary data: Val cannot read past the
// first byte that no number is written with, so the rest is cut off first.
double numberValue(std::string_view text) {
    return vb::Val(text.substr(0, text.find_first_not_of("0123456789+-.&abcdefhoABCDEFHO \t\r\n")));
}

std::int32_t toLong(double value) {
    return vb::CLng(value);
}  // rounds half to even

std::int16_t toInteger(double value) {
    const double r = std::nearbyint(value);
    if (!(r >= std::numeric_limits<std::int16_t>::min() && r <= std::numeric_limits<std::int16_t>::max()))
        raiseError(err::Overflow);
    return static_cast<std::int16_t>(r);
}

// Mid with a signed length: a negative one is an invalid call, as it always was.
std::string midText(std::string_view text, std::int64_t start, std::int64_t length) {
    if (start < 1 || length < 0) raiseError(err::InvalidProcedureCall);
    return Mid(text, static_cast<std::size_t>(start), static_cast<std::size_t>(length));
}

// InStr (binary compare) for the tag and comment searches: the same first
// match at or after a 1-based start, without a call per byte; a tag can carry
// a picture of some megabytes and is searched once per frame name.
std::size_t findText(std::string_view text, std::string_view pattern, std::size_t start = 1) {
    const std::size_t at = text.find(pattern, start - 1);
    return at == std::string_view::npos ? 0 : at + 1;
}

// The byte at a 1-based position of a text; past its end there is none.
unsigned char byteOf(std::string_view text, std::int64_t position) {
    if (position < 1 || position > static_cast<std::int64_t>(text.size()))
        raiseError(err::InvalidProcedureCall);
    return static_cast<unsigned char>(text[static_cast<std::size_t>(position - 1)]);
}

std::int32_t littleEndian32(std::string_view text, std::int64_t position) {
    std::uint32_t v = 0;
    for (int i = 3; i >= 0; --i) v = (v << 8) | byteOf(text, position + i);
    return static_cast<std::int32_t>(v);
}

std::int16_t littleEndian16(std::string_view text, std::int64_t position) {
    return static_cast<std::int16_t>(byteOf(text, position) | (byteOf(text, position + 1) << 8));
}

// The value of digits from..from+count-1 of a digit text.
std::int32_t bitsAt(std::string_view digits, std::size_t from, std::size_t count) {
    return binaryToLong(Mid(digits, from, count));
}

// ---------------------------------------------------------------------------
// ID3 tags of MP3 and MP2 files.

struct ID3v2Layout {
    int version;
    std::string_view title, artist, album, year, genre, track;
    int sizeByteOffset;  // the lowest byte of the frame size, from the frame name
    int dataOffset;      // the text, past the encoding byte
};

// Version 2 asks for "TRCK" as well, not for its own three-letter name, so
// such files keep the track number they had; this is how it has always read.
constexpr std::array<ID3v2Layout, 2> kID3v2Layouts{{
    {2, "TT2", "TOA", "TAL", "TYE", "TCO", "TRCK", 5, 7},
    {3, "TIT2", "TPE1", "TALB", "TYER", "TCON", "TRCK", 7, 11},
}};

// 30 + 30 + 30 + 4 + 30 + 1 bytes after "TAG".
std::string id3v1Field(std::string_view bytes) {
    return vb::Replace(vb::RTrim(bytes), std::string_view("\0", 1), "");
}

// The text of the first frame called name in the tag, found by a plain
// search with no walk of the frame chain. Only the lowest size byte counts,
// so a text is at most 254 bytes long.
std::string id3v2Frame(std::string_view tag, std::string_view name, const ID3v2Layout &layout) {
    const std::size_t p = findText(tag, name);
    if (p == 0) return {};
    const auto at = static_cast<std::int64_t>(p);
    const int length = byteOf(tag, at + layout.sizeByteOffset) - 1;
    if (layout.version == 3 && (byteOf(tag, at + 9) & 0xC0) != 0) return {};  // compressed or encrypted
    return midText(tag, at + layout.dataOffset, length);
}

void readID3(MediaFile &file, MediaFileInfo &info) {
    const std::int64_t fileLength = file.length();
    if (fileLength < 128) return;
    info.DataLength = static_cast<double>(fileLength);

    if (file.read(fileLength - 127, 3) == "TAG") {
        info.DataLength -= 128;
        const std::string tail = file.read(fileLength - 124, 125);
        info.Title = id3v1Field(Mid(tail, 1, 30));
        info.Artist = id3v1Field(Mid(tail, 31, 30));
        info.Album = id3v1Field(Mid(tail, 61, 30));
        info.Year = id3v1Field(Mid(tail, 91, 4));
        info.Comments = id3v1Field(Mid(tail, 95, 30));
        info.Genre = std::to_string(byteOf(tail, 125));
        // Codes 0 to 47 go, blanks and punctuation with them, so the words
        // of a comment run together. Kept: lists and saved projects show
        // comments this way.
        std::string kept;
        for (char c : info.Comments)
            if (static_cast<unsigned char>(c) > 47) kept += c;
        info.Comments = kept;
    }

    if (file.byteAt(2) == 'D' && file.byteAt(3) == '3') {
        const int version = file.byteAt(4);
        const std::string sizeBytes = file.read(7, 4);
        // 20917152, not 2097152, is deliberate: tags whose first size byte
        // is 0 (nearly all) come out right and the rest too big, which then
        // ends the reader below with the ID3v1 values.
        const std::int64_t size = byteOf(sizeBytes, 1) * std::int64_t{20917152} +
                                  byteOf(sizeBytes, 2) * 16384 + byteOf(sizeBytes, 3) * 128 +
                                  byteOf(sizeBytes, 4);
        if (size > fileLength) return;
        info.DataLength -= static_cast<double>(size);
        const std::string tag = file.read(11, static_cast<std::size_t>(size));

        const ID3v2Layout *layout = nullptr;
        for (const ID3v2Layout &l : kID3v2Layouts)
            if (l.version == version) layout = &l;
        if (layout == nullptr) return;

        const struct {
            std::string_view name;
            std::string MediaFileInfo::*field;
        } texts[] = {{layout->title, &MediaFileInfo::Title},
                     {layout->artist, &MediaFileInfo::Artist},
                     {layout->album, &MediaFileInfo::Album},
                     {layout->year, &MediaFileInfo::Year}};
        for (const auto &t : texts) {
            std::string text = id3v2Frame(tag, t.name, *layout);
            if (!text.empty()) info.*t.field = std::move(text);
        }

        const std::string genre = id3v2Frame(tag, layout->genre, *layout);
        if (!genre.empty()) {
            const std::size_t close = InStr(genre, ")");
            if (vb::Left(genre, 1) == "(" && close != 0) {
                // "(17)Rock" gives "Rock"; a bare "(17)" leaves the ID3v1 genre.
                std::string rest = Mid(genre, close + 1);
                if (!rest.empty()) info.Genre = std::move(rest);
            } else {
                info.Genre = genre;
            }
        }

        const std::string track = id3v2Frame(tag, layout->track, *layout);
        if (!track.empty()) info.TrackNumber = toInteger(numberValue(track));
    }

    if (vb::IsNumeric(info.Genre)) {
        const double index = std::nearbyint(vb::Val(info.Genre));
        info.Genre = std::abs(index) < 1e9 ? std::string(genreName(static_cast<std::int64_t>(index))) : "";
    }
}

// ---------------------------------------------------------------------------
// MPEG audio frames.

constexpr std::array<int, 4> kIndexMap{0, 3, 2, 1};  // version and layer bits: 3 is version 1, layer I
constexpr std::array<std::int32_t, 3> kMpeg1Rates{44100, 48000, 32000};
constexpr std::array<std::array<int, 14>, 3> kMpeg1Bitrates{{
    {32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448},  // layer I
    {32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384},     // layer II
    {32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320},      // layer III
}};
constexpr std::array<std::string_view, 4> kChannelModes{"stereo", "joint stereo", "dual channel",
                                                        "single channel"};

// The first 0xFF followed by 0xFA to 0xFD (MPEG 1, layer II or III) is taken
// as the frame header, with no check of what follows. A walk through blocks,
// since nearly every file has its first frame near the start.
std::int64_t findFrameHeader(MediaFile &file) {
    const std::int64_t length = file.length();
    const auto step = static_cast<std::int64_t>(MediaFile::kBlock);
    bool lastWasFF = false;  // carried over, so a pair across two blocks is seen
    for (std::int64_t pos = 1; pos <= length; pos += step) {
        const std::string chunk = file.read(pos, static_cast<std::size_t>(std::min(step, length - pos + 1)));
        for (std::size_t i = 0; i < chunk.size(); ++i) {
            const auto b = static_cast<unsigned char>(chunk[i]);
            if (lastWasFF && b >= 0xFA && b <= 0xFD) return pos + static_cast<std::int64_t>(i) - 1;
            lastWasFF = b == 0xFF;
        }
    }
    return 0;
}

void readMPEG(MediaFile &file, MediaFileInfo &info) {
    if (file.length() < 256) return;
    const std::int64_t header = findFrameHeader(file);
    if (header == 0) return;

    // The Xing header of a stereo MPEG 1 frame; other layouts go unseen.
    std::int32_t frames = 0;
    info.IsVBR = file.read(header + 36, 4) == "Xing";
    if (info.IsVBR) frames = binaryToLong(bytesToBinary(file.read(header + 44, 4)));

    const std::string digits = bytesToBinary(file.read(header, 4));
    const int version = kIndexMap[static_cast<std::size_t>(bitsAt(digits, 12, 2))];
    const int layer = kIndexMap[static_cast<std::size_t>(bitsAt(digits, 14, 2))];
    info.Channels = bitsAt(digits, 25, 2) == 3 ? 1 : 2;
    const std::int32_t rateIndex = bitsAt(digits, 21, 2);
    if (version != 1 || rateIndex >= static_cast<std::int32_t>(kMpeg1Rates.size())) {
        info.Frequency = 0;
        return;
    }
    info.Frequency = kMpeg1Rates[static_cast<std::size_t>(rateIndex)];

    if (info.IsVBR) {
        const double k = layer == 1 ? 12 : 144;
        info.Bitrate = divide(divide(info.Frequency * info.DataLength, std::trunc(frames)), 1000) / k;
    } else {
        const std::int32_t index = bitsAt(digits, 17, 4);
        info.Bitrate =
            (layer >= 1 && index >= 1 && index <= 14)
                ? kMpeg1Bitrates[static_cast<std::size_t>(layer - 1)][static_cast<std::size_t>(index - 1)]
                : 0;
    }
    info.Millisecs = toLong(divide(info.DataLength * 8, info.Bitrate));
    info.Samples = toLong(info.Frequency / 1000.0 * info.Millisecs);
}

// ---------------------------------------------------------------------------
// Vorbis comments of Ogg and FLAC files.

constexpr std::size_t kCommentBuffer = 2048;
constexpr std::string_view kCommentPacket = "\x03vorbis";

// Where the Vorbis header pages end: the pages from the start whose granule
// position is still 0. Returns the number of bytes they take.
std::int64_t oggHeaderEnd(MediaFile &file) {
    std::int64_t page = 1;
    while (page + 26 <= file.length()) {
        const std::string head = file.read(page, 27);
        if (head.compare(0, 4, "OggS") != 0 || head.find_first_not_of('\0', 6) < 14) break;
        const int segments = byteOf(head, 27);
        const std::string lacing = file.read(page + 27, static_cast<std::size_t>(segments));
        std::int64_t body = 0;
        for (char c : lacing) body += static_cast<unsigned char>(c);
        page += 27 + segments + body;
    }
    return page - 1;
}

// The value of name=... in the comment buffer: up to the next comment's
// length field, found as NUL 0x10 NUL or three NULs and one byte back over
// its lowest byte, or to the buffer's end.
// folded is the buffer in lower case, for the case-insensitive search.
std::optional<std::string> commentValue(std::string_view buffer, std::string_view folded,
                                        std::string_view name) {
    const std::string key = vb::LCase(name) + "=";
    const std::size_t at = folded.find(key);
    if (at == std::string_view::npos) return std::nullopt;
    const std::size_t p = at + 1;
    const std::size_t start = p + key.size();
    // The earlier of the two patterns is the first position that starts either.
    std::size_t end = 0;
    for (std::size_t i = start - 1; i + 2 < buffer.size(); ++i) {
        if (buffer[i] == '\0' && (buffer[i + 1] == '\x10' || buffer[i + 1] == '\0') &&
            buffer[i + 2] == '\0') {
            end = i + 1;
            break;
        }
    }
    if (end == 0) return Mid(buffer, start);
    return midText(buffer, static_cast<std::int64_t>(start),
                   static_cast<std::int64_t>(end) - static_cast<std::int64_t>(start) - 1);
}

void readComments(MediaFile &file, MediaFileInfo &info) {
    const std::int64_t fileLength = file.length();
    info.DataLength = static_cast<double>(fileLength);
    const std::string magic = file.read(1, 4);
    std::string buffer;
    bool found = false;

    if (magic == "fLaC") {
        std::int64_t pos = 5;
        while (pos <= fileLength) {
            const std::string head = file.read(pos, 4);
            const bool last = (byteOf(head, 1) & 0x80) != 0;
            const int type = byteOf(head, 1) & 0x7F;
            const std::int64_t length = (byteOf(head, 2) << 16) | (byteOf(head, 3) << 8) | byteOf(head, 4);
            if (type == 4) {
                buffer = file.read(pos, kCommentBuffer);
                found = true;
            }
            pos += length + 4;
            if (last) {
                info.DataLength = static_cast<double>(fileLength - pos);
                break;
            }
        }
    } else if (magic == "OggS") {
        const std::int64_t marker = file.find(kCommentPacket, 1, kCommentBuffer);
        if (marker != 0) {
            buffer = file.read(marker, kCommentBuffer);
            found = true;
            info.DataLength -= static_cast<double>(oggHeaderEnd(file));
        }
    } else {
        return;
    }
    if (!found) return;

    // Only what stands in the first 2048 bytes of the comments is seen.
    const struct {
        std::string_view name;
        std::string MediaFileInfo::*field;
    } fields[] = {{"TITLE", &MediaFileInfo::Title}, {"ARTIST", &MediaFileInfo::Artist},
                  {"ALBUM", &MediaFileInfo::Album}, {"COMMENT", &MediaFileInfo::Comments},
                  {"DATE", &MediaFileInfo::Year},   {"TRACKNUMBER", nullptr},
                  {"GENRE", &MediaFileInfo::Genre}};
    const std::string folded = vb::LCase(buffer);
    for (const auto &f : fields) {
        std::optional<std::string> value = commentValue(buffer, folded, f.name);
        if (!value) continue;
        if (f.field != nullptr)
            info.*f.field = std::move(*value);
        else
            info.TrackNumber = toInteger(numberValue(*value));
    }
}

// Duration and average rate from the sample count. The rate is per channel
// and doubled, which is the usual figure for stereo and twice it for mono.
void setDurationAndRate(MediaFileInfo &info) {
    info.Millisecs = toLong(divide(info.Samples, info.Frequency) * 1000);
    info.Bitrate = divide(divide(info.DataLength * 8, info.Millisecs), info.Channels) * 2;
}

void readOgg(MediaFile &file, MediaFileInfo &info) {
    info.IsVBR = true;
    if (file.read(29, 7) != "\x01vorbis") return;
    const std::string ident = file.read(36, 21);  // version, channels, rate, three bit rates
    info.Channels = byteOf(ident, 5);
    info.Frequency = littleEndian32(ident, 6);
    info.Bitrate = littleEndian32(ident, 14);  // the nominal rate, until the real one is known

    const std::int64_t lastPage = file.findLast("OggS");
    if (lastPage == 0) return;
    std::string granule = file.read(lastPage + 6, 8);
    std::string mostSignificantFirst(granule.rbegin(), granule.rend());
    info.Samples = binaryToLong(bytesToBinary(mostSignificantFirst));
    setDurationAndRate(info);
}

void readFLAC(MediaFile &file, MediaFileInfo &info) {
    if (file.read(1, 4) != "fLaC") return;
    info.IsVBR = true;
    const std::string digits = bytesToBinary(file.read(19, 8), true);
    info.Frequency = bitsAt(digits, 1, 20);
    info.Channels = static_cast<std::int16_t>(bitsAt(digits, 21, 3) + 1);
    info.Samples = bitsAt(digits, 29, 36);
    setDurationAndRate(info);
}

// ---------------------------------------------------------------------------
// RIFF WAVE: the canonical 44-byte header is assumed; chunks are not walked.

void readRIFF(MediaFile &file, MediaFileInfo &info) {
    const std::string header = file.read(1, 36);
    if (Mid(header, 1, 4) != "RIFF" || Mid(header, 9, 4) != "WAVE" || littleEndian32(header, 17) < 16) return;
    info.DataLength = littleEndian32(header, 5);
    info.Channels = littleEndian16(header, 23);
    info.Frequency = littleEndian32(header, 25);
    info.Millisecs = toLong(divide(info.DataLength, littleEndian32(header, 29)) * 1000);
    info.Samples = toLong(info.Frequency / 1000.0 * info.Millisecs);
}

// ---------------------------------------------------------------------------

using Reader = void (*)(MediaFile &, MediaFileInfo &);

struct ExtensionReaders {
    std::string_view extension;
    std::array<Reader, 2> readers;
};

// A real AAC file fails the FLAC magic and keeps only its name; its decoder
// reports what the compile needs.
constexpr std::array<ExtensionReaders, 6> kExtensionReaders{{
    {"MP3", {readID3, readMPEG}},
    {"MP2", {readID3, readMPEG}},
    {"OGG", {readComments, readOgg}},
    {"FLAC", {readComments, readFLAC}},
    {"AAC", {readFLAC, nullptr}},
    {"WAV", {readRIFF, nullptr}},
}};

std::string extensionName(std::string_view path) {
    const std::string_view name = path.substr(path.find_last_of('/') + 1);
    const std::size_t dot = name.find_last_of('.');
    return dot == std::string_view::npos ? std::string() : std::string(name.substr(dot + 1));
}

}  // namespace

std::string_view channelModeName(int mode) {
    return mode >= 0 && mode < static_cast<int>(kChannelModes.size())
               ? kChannelModes[static_cast<std::size_t>(mode)]
               : std::string_view();
}

MediaFileInfo readMediaInfo(const std::string &path) {
    MediaFileInfo info;
    MediaFile file(path);
    if (!file.exists()) return info;
    info.FileName = path;
    const std::string extension = vb::UCase(extensionName(path));
    for (const ExtensionReaders &row : kExtensionReaders) {
        if (row.extension != extension) continue;
        for (Reader reader : row.readers) {
            if (reader == nullptr) continue;
            // A reader ends at its first error; what it had set stays.
            try {
                reader(file, info);
            } catch (const std::exception &) {
            }
        }
    }
    return info;
}

}  // namespace saltmarrow
