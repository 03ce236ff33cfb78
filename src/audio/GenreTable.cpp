#include "audio/GenreTable.h"

namespace saltmarrow {

std::string_view genreName(std::int64_t index) {
    if (index < 0 || index >= static_cast<std::int64_t>(kGenres.size())) return {};
    return kGenres[static_cast<std::size_t>(index)];
}

}  // namespace saltmarrow
