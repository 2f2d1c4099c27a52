/* SPDX-License-Identifier: Apache-2.0 */
/*
 * TlCatalogue: the libraries in the folder of transport layers
 */
#pragma once

#include <list>
#include <memory>
#include <string>
#include <vector>

#include "factory/TlModule.h"
#include "os/Library.h"

namespace Vanto {

/// One transport layer that some library offers.
struct TlOffer {
    TlModule* module;
    CTlInfo info;
};

/// Loads the libraries once, in the order of their names; they are never unloaded, as their code may be on the stack of
/// any thread, and what they have thrown or registered may outlive every transport layer. Immutable after construction.
class TlCatalogue {
public:
    explicit TlCatalogue(std::string folder);

    const std::string& Folder() const noexcept { return m_folder; }
    const std::vector<std::unique_ptr<TlModule>>& Modules() const noexcept { return m_modules; }
    const std::vector<RejectedTl>& Rejected() const noexcept { return m_rejected; }

    std::vector<TlOffer> AllOffers() const;
    std::vector<TlOffer> OffersFor(const CDeviceInfo& info) const;

private:
    void Load(const std::string& path);
    void Reject(const std::string& path, const std::string& reason);
    std::string DescribeWhatIsThere() const;

    const std::string m_folder;
    std::list<os::Library> m_libraries;
    std::vector<std::unique_ptr<TlModule>> m_modules;
    std::vector<RejectedTl> m_rejected;
};

}  // namespace Vanto
