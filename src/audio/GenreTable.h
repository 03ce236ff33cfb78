#ifndef SALTMARROW_AUDIO_GENRETABLE_H
#define SALTMARROW_AUDIO_GENRETABLE_H

#include <array>
#include <cstdint>
#include <string_view>

namespace saltmarrow {

// The ID3v1 genre numbers 0 to 125. The spellings ("Techno-Indistrial",
// "Gansta", "Psychaledic", ...) are the ones users have always seen in their
// track lists and are kept as they are.
inline constexpr std::array<std::string_view, 126> kGenres{{
    /*   0 */ "Blues", "Classic Rock", "Country", "Dance", "Disco",
    /*   5 */ "Funk", "Grunge", "Hip-Hop", "Jazz", "Metal",
    /*  10 */ "New Age", "Oldies", "Other", "Pop", "R&B",
    /*  15 */ "Rap", "Reggae", "Rock", "Techno", "Industrial",
    /*  20 */ "Alternative", "Ska", "Death Metal", "Pranks", "Soundtrack",
    /*  25 */ "Euro-Techno", "Ambient", "Trip-Hop", "Vocal", "Jazz+Funk",
    /*  30 */ "Fusion", "Trance", "Classical", "Instrumental", "Acid",
    /*  35 */ "House", "Game", "Sound Clip", "Gospel", "Noise",
    /*  40 */ "AlternRock", "Bass", "Soul", "Punk", "Space",
    /*  45 */ "Meditative", "Instrumental Pop", "Instrumental Rock", "Ethnic", "Gothic",
    /*  50 */ "Darkwave", "Techno-Indistrial", "Electronic", "Pop-Folk", "Eurodance",
    /*  55 */ "Dream", "Southern Rock", "Comedy", "Cult", "Gansta",
    /*  60 */ "Top 40", "Christian Rap", "Pop/Funk", "Jungle", "Native American",
    /*  65 */ "Cabaret", "New Wave", "Psychaledic", "Rave", "Showtunes",
    /*  70 */ "Trailer", "Lo-Fi", "Tribal", "Acid Punk", "Acid Jazz",
    /*  75 */ "Polka", "Retro", "Musical", "Rock & Roll", "Hard Rock",
    /*  80 */ "Folk", "Folk-Rock", "National Folk", "Swing", "Fast Fusion",
    /*  85 */ "Bebop", "Latin", "Revival", "Celtic", "Bluegrass",
    /*  90 */ "Avantgarde", "Gothic Rock", "Progressive Rock", "Psychadelic Rock", "Symphonic Rock",
    /*  95 */ "Slow Rock", "Big Band", "Chorus", "Easy Listening", "Acoustic",
    /* 100 */ "Humour", "Speech", "Chanson", "Opera", "Chamber Music",
    /* 105 */ "Sonata", "Symphony", "Booty Bass", "Primus", "Porn Groove",
    /* 110 */ "Satire", "Slow Jam", "Club", "Tango", "Samba",
    /* 115 */ "Folklore", "Ballad", "Power Ballad", "Rhythmic Soul", "Freestyle",
    /* 120 */ "Duet", "Punk Rock", "Drum Solo", "A Capella", "Euro-House",
    /* 125 */ "Dance Hall",
}};

// The table's name for index; "" for any number outside 0 to 125.
std::string_view genreName(std::int64_t index);

}  // namespace saltmarrow

#endif
