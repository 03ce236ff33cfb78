#include "shell/EncoderTable.h"

namespace saltmarrow {

namespace {

struct DefaultEncoder {
    const char *name;
    const char *program;
    const char *arguments;
    const char *tagArguments;
    const char *extension;
};

// The programs are found on the search path or in external/, so they carry no
// ".exe" here. Debian's lame writes the texts of an ID3v2 tag in UTF-16 unless
// told otherwise, and the program's own header reader takes a frame's bytes as
// they stand: the tags are asked for in Latin-1.
constexpr std::array<DefaultEncoder, 4> kDefaultEncoders{{
    {"Wave", "", "", "", "wav"},
    {"Lame", "lame", "--alt-preset standard -Y %in %out",
     "--id3v2-latin1 --tl %2 --tn %3 --tt %4 --ta %5 --add-id3v2", "mp3"},
    {"OggEnc", "oggenc", "--quality 6 -o %out %in", "-l %2 -N %3 -t %4 -a %5", "ogg"},
    {"Flac", "flac", "--compression-level-5 -o %out %in",
     "--tag=ALBUM=%2 --tag=TRACKNUMBER=%3 --tag=TITLE=%4 --tag=ARTIST=%5", "flac"},
}};

}  // namespace

EncoderTable defaultEncoderTable() {
    EncoderTable table;
    for (const auto &e : kDefaultEncoders)
        table.rows.push_back({e.name, e.program, e.arguments, e.tagArguments, e.extension});
    return table;
}

}  // namespace saltmarrow
