/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Who uses a port that can't be opened
 */
#include "cameras/PortUser.h"

#include <fmt/format.h>

#include <charconv>
#include <string_view>

#include "output/Text.h"

namespace tools {

std::string PortUser::Text() const {
    if (pid == 0)
        return "another program";
    return program.empty() ? fmt::format("process {}", pid) : fmt::format("{} ({})", Printable(program), pid);
}

Json PortUser::ToJson() const {
    return {{"Program", program.empty() ? Json(nullptr) : Json(program)},
            {"PID", pid == 0 ? Json(nullptr) : Json(pid)}};
}

// The library of this machine's own serial ports says "in use by process 4711 (minicom)."; others may say anything.
PortUser UserOf(const PortNews& news) {
    constexpr std::string_view kStart = "in use by process ";
    PortUser user;
    std::string_view text = news.reason;
    const std::size_t start = text.find(kStart);
    if (start == std::string_view::npos)
        return user;
    text.remove_prefix(start + kStart.size());
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), user.pid);
    if (error != std::errc())
        return {};
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    if (const std::size_t last = text.rfind(')'); text.starts_with(" (") && last != std::string_view::npos)
        user.program = text.substr(2, text.find(").") == std::string_view::npos ? last - 2 : text.find(").") - 2);
    return user;
}

}  // namespace tools
