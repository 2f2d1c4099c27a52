/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Fetching: shows how much of a camera's description has come in
 */
#include "cameras/Fetching.h"

namespace tools {

Fetching::Fetching(PortWatch& ports, Output& output, const std::string& what)
    : m_ports(ports), m_progress(output, what) {
    m_ports.Listen([this, isFetching = false](const PortNews& news) mutable {
        if (news.doneBytes == 0)
            return;
        if (!isFetching)
            m_progress.Say("Fetching the camera's description");
        isFetching = true;
        m_progress.SetPart(news.doneBytes, news.totalBytes, Progress::Unit::kBytes);
    });
}

Fetching::~Fetching() {
    m_ports.Listen({});
}

}  // namespace tools
