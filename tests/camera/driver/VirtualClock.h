/* SPDX-License-Identifier: Apache-2.0 */
/*
 * VirtualClock: time that passes only when somebody waits
 */
#pragma once

#include <atomic>

#include "Clock.h"

namespace marlow::test {

class VirtualClock final : public Clock {
public:
    Time Now() const override { return Time(Duration(m_now.load())); }
    void Sleep(Duration duration) override { m_now += duration.count(); }
    void AdvanceTo(Time time) {
        if (time > Now())
            m_now = time.time_since_epoch().count();
    }

private:
    std::atomic<Duration::rep> m_now{0};
};

}  // namespace marlow::test
