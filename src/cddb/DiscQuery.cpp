#include "cddb/DiscQuery.h"

#include <cmath>
#include <cstdio>


namespace saltmarrow::cddb {

namespace {

long digitSum(long n) {
    long sum = 0;
    for (; n > 0; n /= 10) sum += n % 10;
    return sum;
}

std::string hex(long value, int width) {
    char text[24];
    std::snprintf(text, sizeof text, "%0*lx", width, static_cast<unsigned long>(value));
    return text;
}

}  // namespace

std::optional<DiscQuery> discQuery(const std::vector<long> &lengthsMs) {
    if (lengthsMs.size() < 2) return std::nullopt;
    const long n = static_cast<long>(lengthsMs.size()) - 1;
    const double a0 = static_cast<double>(lengthsMs[0]);
    const long leadSeconds = static_cast<long>(std::floor(a0 / 1000));
    DiscQuery q;
    q.offsets = std::to_string(n) + " " + std::to_string(static_cast<long>(std::floor(a0 / 1000 * 75)));
    double total = a0;
    // The checksum starts from the raw seconds of the lead-in, not their digit
    // sum; deliberate, and the same for any lead-in below ten seconds.
    long checksum = leadSeconds;
    for (long i = 1; i <= n; ++i) {
        total += static_cast<double>(lengthsMs[static_cast<std::size_t>(i)]);
        if (i != n) {
            q.offsets += " " + std::to_string(static_cast<long long>(std::nearbyint(total * 75 / 1000)));
            checksum += digitSum(static_cast<long>(std::floor(total / 1000)));
        } else {
            q.seconds = static_cast<long>(std::nearbyint(total / 1000));
            q.offsets += " " + std::to_string(q.seconds);
        }
    }
    q.discId = hex(checksum % 255, 2) + hex(q.seconds - leadSeconds, 4) + hex(n, 2);
    q.query = "cddb query " + q.discId + " " + q.offsets + " ";
    return q;
}

}  // namespace saltmarrow::cddb
