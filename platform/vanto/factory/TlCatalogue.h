/* SPDX-License-Identifier: Apache-2.0 */
/*
 * TlCatalogue: the libraries in the folder of transport layers
 */
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "factory/TlModule.h"

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
    explicit TlCatalogue(std::string folder, const TlCatalogue* earlier = nullptr);

    const std::string& Folder() const noexcept { return m_folder; }
    const std::vector<std::shared_ptr<TlModule>>& Modules() const noexcept { return m_modules; }
    const std::vector<RejectedTl>& Rejected() const noexcept { return m_rejected; }
    /// Whether the system had enough of everything: else a library may be missing that is not to blame.
    bool IsComplete() const noexcept { return m_isComplete; }

    std::vector<TlOffer> AllOffers() const;
    std::vector<TlOffer> OffersFor(const CDeviceInfo& info) const;

private:
    bool TakeOver(const std::string& path, const TlCatalogue& earlier);
    void Load(const std::string& path);
    void Reject(const std::string& path, const std::string& reason);
    std::string DescribeWhatIsThere() const;

    const std::string m_folder;
    std::vector<std::shared_ptr<TlModule>> m_modules;
    std::vector<RejectedTl> m_rejected;
    bool m_isComplete = true;
};

}  // namespace Vanto
