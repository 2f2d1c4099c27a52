/* SPDX-License-Identifier: Apache-2.0 */
/*
 * An X display without a screen, whose Shift key a test holds
 */
#pragma once

#include <memory>
#include <string>

namespace test_support {

enum class Shift { kLeft, kRight };

/// A server of its own (Xvfb) as long as this lives.
class VirtualDisplay {
public:
    static bool IsInstalled();

    VirtualDisplay();  ///< throws std::runtime_error when the server does not start
    ~VirtualDisplay();
    VirtualDisplay(const VirtualDisplay&) = delete;
    VirtualDisplay& operator=(const VirtualDisplay&) = delete;

    std::string Name() const;  ///< as for the variable DISPLAY
    void PressShift(Shift key = Shift::kLeft);
    void ReleaseShift(Shift key = Shift::kLeft);

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

}  // namespace test_support
