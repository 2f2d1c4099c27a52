/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The serial ports that the library offers: which, under which names, in which order
 */

#include "PortList.h"

#include <algorithm>
#include <cstddef>
#include <mutex>
#include <unordered_set>

#include "SerialError.h"
#include "base/Immortal.h"
#include "clser/ClSerial.h"
#include "os/LockName.h"
#include "os/PerThread.h"

namespace ClSerTty {

namespace {

using SharedList = std::shared_ptr<const PortList>;

/// The process's last list, for threads that never counted the ports themselves.
struct LatestList {
    std::mutex mutex;
    [[no_unique_address]] const os::LockName mutexName{&mutex, "list of ports"};
    SharedList ports;
};

/// Never destroyed: a thread may be in the library when the process ends.
LatestList& Latest() {
    static base::Immortal<LatestList> latest;
    return latest.Get();
}

/// Leaves nothing behind where the library is unloaded.
const struct EmptyAtTheEnd {
    ~EmptyAtTheEnd() {
        const std::lock_guard lock(Latest().mutex);
        Latest().ports.reset();
    }
} g_emptyAtTheEnd;

// The calling thread's last list: another thread's count does not move its indices.
SharedList& OwnList() {
    return os::PerThread<SharedList>();
}

constexpr std::string_view kDigits = "0123456789";

std::string_view TakeNumber(std::string_view& text) {
    const std::size_t length = std::min(text.find_first_not_of(kDigits), text.size());
    std::string_view number = text.substr(0, length);
    text.remove_prefix(length);
    number.remove_prefix(std::min(number.find_first_not_of('0'), number.size()));
    return number;
}

bool StartsWithDigit(std::string_view text) {
    return !text.empty() && kDigits.find(text[0]) != std::string_view::npos;
}

}  // namespace

/**
 * \brief Order names as people do: digits in them count as numbers, so cam2 stands before cam10
 */
bool ComesBefore(std::string_view left, std::string_view right) {
    std::string_view l = left;
    std::string_view r = right;
    while (!l.empty() && !r.empty()) {
        if (StartsWithDigit(l) && StartsWithDigit(r)) {
            const std::string_view a = TakeNumber(l);
            const std::string_view b = TakeNumber(r);
            if (a != b)
                return a.size() != b.size() ? a.size() < b.size() : a < b;
            continue;
        }
        if (l[0] != r[0])
            return static_cast<unsigned char>(l[0]) < static_cast<unsigned char>(r[0]);
        l.remove_prefix(1);
        r.remove_prefix(1);
    }
    if (l.empty() && r.empty())
        return left < right;
    return l.empty();
}

/**
 * \brief Make one list of several
 * \param[in] sources The lists; a name that an earlier one has is left out of a later one
 * \return All ports, sorted by name
 */
PortList MergePorts(const std::vector<PortList>& sources) {
    PortList ports;
    std::unordered_set<std::string> names;
    for (const PortList& source : sources) {
        for (const PortInfo& port : source) {
            if (names.insert(port.name).second)
                ports.push_back(port);
        }
    }
    std::sort(ports.begin(), ports.end(),
              [](const PortInfo& left, const PortInfo& right) { return ComesBefore(left.name, right.name); });
    return ports;
}

std::size_t RefreshPorts() {
    SharedList ports = std::make_shared<const PortList>(FindPorts());
    OwnList() = ports;
    const std::lock_guard lock(Latest().mutex);
    Latest().ports = ports;
    return ports->size();
}

/**
 * \brief Give the port that an index means: in the calling thread's list, else in the process's last one
 * \throw SerialError CL_ERR_INVALID_INDEX
 */
PortInfo PortAt(std::size_t index) {
    SharedList ports = OwnList();
    if (!ports) {
        const std::lock_guard lock(Latest().mutex);
        ports = Latest().ports;
    }
    if (!ports) {
        RefreshPorts();
        ports = OwnList();
    }
    if (index >= ports->size()) {
        throw SerialError(CL_ERR_INVALID_INDEX, "There is no serial port with index " + std::to_string(index) + "; " +
                                                    std::to_string(ports->size()) + " were found.");
    }
    return (*ports)[index];
}

}  // namespace ClSerTty
