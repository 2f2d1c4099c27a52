/* SPDX-License-Identifier: Apache-2.0 */
/*
 * TlCatalogue: the libraries in the folder of transport layers
 */

#include "factory/TlCatalogue.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <functional>
#include <new>
#include <system_error>

#include "Base/GCException.h"
#include "factory/ExceptionText.h"
#include "factory/FactoryLog.h"
#include "os/File.h"
#include "os/Library.h"
#include "os/Path.h"

namespace Vanto {

namespace {

#ifdef _WIN32
constexpr const char* kLibraryExtension = ".dll";
#else
constexpr const char* kLibraryExtension = ".so";
#endif

std::vector<std::string> FindLibraries(const std::string& folder, std::error_code& error) {
    std::vector<std::string> paths;
    for (const std::string& name : os::ListFolder(folder, error)) {
        const std::filesystem::path file = os::ToFilePath(name);
        if (os::FoldedFileName(os::ToText(file.extension())) == kLibraryExtension)
            paths.push_back(os::ToText(os::ToFilePath(folder) / file));
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

bool IsShortage(const std::error_code& error) {
    return error == std::errc::not_enough_memory || error == std::errc::too_many_files_open ||
           error == std::errc::too_many_files_open_in_system;
}

bool IsShortage(const std::exception_ptr& failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const os::ShortageError&) {
        return true;
    } catch (const std::bad_alloc&) {
        return true;
    } catch (...) {
        return false;
    }
}

std::vector<TlOffer> Select(std::vector<TlOffer> offers, const std::function<bool(const CTlInfo&)>& isWanted) {
    std::erase_if(offers, [&](const TlOffer& offer) { return !isWanted(offer.info); });
    return offers;
}

}  // namespace

/// Look into a folder. What an earlier look has loaded is taken over.
TlCatalogue::TlCatalogue(std::string folder, const TlCatalogue* earlier) : m_folder(std::move(folder)) {
    std::error_code error;
    for (const std::string& path : FindLibraries(m_folder, error)) {
        if (earlier == nullptr || !TakeOver(path, *earlier))
            Load(path);
    }
    if (error) {
        m_isComplete = !IsShortage(error);
        Reject(m_folder, "The folder of transport layers can't be read: " + error.message());
    }
}

bool TlCatalogue::TakeOver(const std::string& path, const TlCatalogue& earlier) {
    const auto found =
        std::ranges::find_if(earlier.m_modules, [&](const auto& module) { return module->Path() == path; });
    if (found == earlier.m_modules.end())
        return false;
    m_modules.push_back(*found);
    return true;
}

void TlCatalogue::Load(const std::string& path) {
    try {
        os::Library library(path);
        try {
            m_modules.push_back(std::make_shared<TlModule>(library));
        } catch (...) {
            library.Keep();  // also one that turns out to be of no use: its code has run
            throw;
        }
        library.Keep();
        LogTrace(FactoryLog(), tracelog::kDebug, "Loaded the transport layer library '%s'.", path);
    } catch (...) {
        m_isComplete = m_isComplete && !IsShortage(std::current_exception());
        Reject(path, DescribeCurrentException());
    }
}

void TlCatalogue::Reject(const std::string& path, const std::string& reason) {
    m_rejected.push_back({path, reason});
    LogTrace(FactoryLog(), tracelog::kWarning, "The transport layer library '%s' can't be used: %s", path, reason);
}

std::vector<TlOffer> TlCatalogue::AllOffers() const {
    std::vector<TlOffer> offers;
    for (const auto& module : m_modules) {
        for (const CTlInfo& info : module->Infos())
            offers.push_back({module.get(), info});
    }
    return offers;
}

/**
 * \brief The transport layers that a device may belong to
 * \param[in] info A record, whole or partial: its DeviceFactory decides, else its device class; without both, all
 * \return At least one
 * \throw RuntimeException There is none; says what there is and what was refused
 */
std::vector<TlOffer> TlCatalogue::OffersFor(const CDeviceInfo& info) const {
    std::vector<TlOffer> offers = AllOffers();
    if (offers.empty())
        throw RUNTIME_EXCEPTION("There is no transport layer. %s", DescribeWhatIsThere());
    if (info.IsDeviceFactoryAvailable()) {
        const gcstring wanted = info.GetDeviceFactory();
        auto named = Select(offers, [&](const CTlInfo& tl) { return tl.GetFullName() == wanted; });
        if (!named.empty())
            return named;
        if (!info.IsDeviceClassAvailable())
            throw RUNTIME_EXCEPTION("There is no transport layer '%s'. %s", wanted, DescribeWhatIsThere());
    }
    if (!info.IsDeviceClassAvailable())
        return offers;
    const gcstring wanted = info.GetDeviceClass();
    offers = Select(std::move(offers), [&](const CTlInfo& tl) { return tl.GetDeviceClass() == wanted; });
    if (offers.empty())
        throw RUNTIME_EXCEPTION("There is no transport layer for device class '%s'. %s", wanted, DescribeWhatIsThere());
    return offers;
}

std::string TlCatalogue::DescribeWhatIsThere() const {
    std::string text = "Transport layers are loaded from '" + m_folder + "'";
    std::string separator = ", which offers ";
    for (const TlOffer& offer : AllOffers()) {
        text += separator + "'" + offer.info.GetDeviceClass().str() + "'";
        separator = ", ";
    }
    text += m_modules.empty() ? ", which holds none that can be used." : ".";
    for (const RejectedTl& rejected : m_rejected)
        text += " '" + rejected.path.str() + "' was refused: " + rejected.reason.str() + ".";
    return text + " Set VANTO_ROOT when they lie below another root.";
}

}  // namespace Vanto
