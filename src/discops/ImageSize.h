#ifndef SALTMARROW_DISCOPS_IMAGESIZE_H
#define SALTMARROW_DISCOPS_IMAGESIZE_H

#include <cstdint>
#include <string>
#include <string_view>

#include "discops/ImageSlot.h"

namespace saltmarrow::discops {

// Reads the block count out of what "cdrdao toc-info" printed: "0" when the
// summary line is missing. imageBlockSize takes the bytes per block that the
// megabyte figure implies, if that is one of the four block sizes of a CD.
std::string tocInfoFromOutput(std::string_view output, std::int16_t &imageBlockSize);

// Runs "cdrdao toc-info" on a sheet through ctx.run and reads its answer.
// The form's run switches to "HIDE ME" around the command so that the
// interpreters leave its lines alone.
std::string tocInfo(const std::string &path, std::int16_t &imageBlockSize, const ImageContext &ctx);

// Bytes of an image: an .iso, a .cue with its .bin, or a .toc with its files,
// as cdrdao counts them; 0 for any other kind of file or when cdrdao cannot
// read the sheet. A .cue and an .iso are measured through
// <app>/external/TEMP/temp.toc, which is deleted again.
std::int64_t imageSize(const std::string &path, std::int16_t &imageBlockSize, const ImageContext &ctx,
                       const std::string &workingFolder = {});

// The sheet written around a bare data file so that cdrdao can measure it.
std::string dataTrackSheet(std::string_view trackType, std::string_view dataFile);

}  // namespace saltmarrow::discops

#endif
