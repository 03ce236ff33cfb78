#ifndef SALTMARROW_DATA_VOLUMELABEL_H
#define SALTMARROW_DATA_VOLUMELABEL_H

#include <string>

namespace saltmarrow::data {

// The moment a label is made, with the locale's own short texts for it.
struct LabelTime {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0;
    std::string shortDate;  // the locale's "Short Date" text of the day
    std::string shortTime;  // the locale's "Short Time" text
};

// The default volume label. Sortable: yymmdd_hhmm. Otherwise the digits of the
// short date (its four-digit year cut to two), "_", the digits of the short time.
std::string defaultVolumeLabel(bool sortable, const LabelTime &time);

}  // namespace saltmarrow::data

#endif
