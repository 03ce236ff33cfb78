#ifndef SALTMARROW_SHELL_ENCODERTABLE_H
#define SALTMARROW_SHELL_ENCODERTABLE_H

#include <array>
#include <string>
#include <vector>

namespace saltmarrow {

// The encoders of track extraction. Each row has five fields: name, program
// file, arguments, tag arguments, file extension. In the arguments %in and %out
// stand for source and target, %2 to %5 for album, track number, title and
// artist.
struct EncoderTable {
    static constexpr std::size_t kFields = 5;
    enum Field : std::size_t { Name = 0, Program = 1, Arguments = 2, TagArguments = 3, Extension = 4 };
    using Row = std::array<std::string, kFields>;

    std::vector<Row> rows;

    std::size_t rowCount() const { return rows.size(); }
    // Field first, then row, as the table has always been addressed.
    const std::string &at(std::size_t field, std::size_t row) const { return rows.at(row).at(field); }
    std::string &at(std::size_t field, std::size_t row) { return rows.at(row).at(field); }
};

// Wave, Lame, OggEnc and Flac, the rows a fresh installation starts with.
EncoderTable defaultEncoderTable();

}  // namespace saltmarrow

#endif
