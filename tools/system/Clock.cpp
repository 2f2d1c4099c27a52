/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Date and time as texts
 */
#include "system/Clock.h"

#include <fmt/format.h>

#include <chrono>

namespace tools {

std::string Now() {
    using namespace std::chrono;
    const auto now = floor<milliseconds>(system_clock::now());
    const auto day = floor<days>(now);
    const year_month_day date(day);
    const hh_mm_ss time(now - day);
    return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}.{:03}Z", static_cast<int>(date.year()),
                       static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()), time.hours().count(),
                       time.minutes().count(), time.seconds().count(), time.subseconds().count());
}

}  // namespace tools
