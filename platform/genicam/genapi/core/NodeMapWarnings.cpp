/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a node map tells about its description
 */

#include <mutex>
#include <utility>

#include "core/NodeMap.h"
#include "os/LockName.h"

namespace GenApi {

namespace {

struct SinkHolder {
    std::mutex mutex;
    [[no_unique_address]] const os::LockName mutexName{&mutex, "node map's warnings"};
    WarningSink_t sink;
};

SinkHolder& Sink() {
    static SinkHolder holder;
    return holder;
}

Warning WarningOf(const LoadWarning& found, const FileNames& files) {
    Warning warning = found.warning;
    warning.File = found.isOfInjected ? files.injected : files.description;
    return warning;
}

// False when the sink failed: a log that fails must not keep a camera from working.
bool Tell(const Warning& warning) {
    WarningSink_t sink;
    {
        const std::lock_guard lock(Sink().mutex);
        sink = Sink().sink;
    }
    try {
        if (sink)
            sink(warning);
        return true;
    } catch (...) {
        return false;
    }
}

}  // namespace

void SetWarningSink(WarningSink_t sink) {
    SinkHolder& holder = Sink();
    const std::lock_guard lock(holder.mutex);
    holder.sink = std::move(sink);
}

WarningList_t CNodeMap::Warnings() const {
    WarningList_t warnings;
    for (const LoadWarning& found : m_description->Warnings())
        warnings.push_back(WarningOf(found, m_files));
    const AutoLock lock(m_lock);
    warnings.insert(warnings.end(), m_warnings.begin(), m_warnings.end());
    return warnings;
}

void CNodeMap::TellWarnings(std::span<const LoadWarning> warnings, const FileNames& files) {
    for (const LoadWarning& found : warnings)
        Tell(WarningOf(found, files));
}

void CNodeMap::Warn(Warning warning) {
    // A hostile file has millions of faults: the first ones tell enough.
    const std::size_t count = m_description->Warnings().size() + m_warnings.size();
    if (count > kMostWarnings)
        return;
    if (count == kMostWarnings)
        warning = MoreWarnings();
    if (warning.File.empty())
        warning.File = m_files.description;
    m_warnings.push_back(warning);
    if (!Tell(warning))
        m_warnings.back().Message += " (the warning sink failed)";
}

}  // namespace GenApi
