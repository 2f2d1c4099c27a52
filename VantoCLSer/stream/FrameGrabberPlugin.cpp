/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The frame-grabber plug-in of a stream grabber: choosing, loading, calling, unloading
 */

#include "VantoCLSer/stream/FrameGrabberPlugin.h"

#include <algorithm>
#include <chrono>
#include <vector>

#include "VantoCLSer/base/Log.h"
#include "vanto/VantoFolders.h"
#include "vanto/internal/VantoException.h"

namespace Vanto {

using GenICam::GenericException;

namespace {

constexpr char kSource[] = "VantoCLSer/VantoCLSerStreamGrabber";
constexpr char kFamily[] = "Sapera";
constexpr char kFileName[] = "SaperaFgPlugin";
constexpr char kFileSuffix[] = "_MD_VC100.dll";
// A board's driver may load firmware first, from a slow disk.
constexpr std::chrono::seconds kLoadingTime{300};
constexpr std::chrono::seconds kReminderTime{10};
constexpr std::uint32_t kLongestErrorText = 65536;  // bytes; a plug-in's word for a length is not trusted

// Calls into the plug-in. What it throws is replaced by an exception whose code is ours.
template <class Call>
auto Guarded(const Call& call) {
    try {
        return call();
    } catch (const GenericException& error) {
        throw VANTO_EXCEPTION(RuntimeException, kSource)("%s", error.GetDescription());
    } catch (const std::exception& error) {
        throw VANTO_EXCEPTION(RuntimeException, kSource)("%s", error.what());
    } catch (...) {
        throw VANTO_EXCEPTION(RuntimeException, kSource)("Unknown exception in FGPlugin DLL.");
    }
}

// The same where nothing may be thrown: false, logged, for an exception.
template <class Call>
bool Try(const Call& call) noexcept {
    try {
        Guarded(call);
        return true;
    } catch (const GenericException& error) {
        LogTrace(StreamLog(), tracelog::kError, "Exception in FGPlugin DLL (%s)", error.GetDescription());
        return false;
    }
}

}  // namespace

CFrameGrabberPlugin::CFrameGrabberPlugin(const gcstring& parameters)
    : m_parameters(parameters),
      m_library({kLoadingTime, kReminderTime,
                 [] { LogTrace(StreamLog(), tracelog::kWarning, "The FGPlugin DLL is still loading."); }}) {}

/**
 * \brief Refuse parameters that name no plug-in at all
 * \throw RuntimeException They are empty
 */
void CFrameGrabberPlugin::CheckParameters() const {
    static constexpr char kText[] = "Skipping loading of plug-in DLL since there are no device specific parameters!";
    if (!m_parameters.empty())
        return;
    LogTrace(StreamLog(), tracelog::kInfo, kText);
    throw VANTO_EXCEPTION(RuntimeException, kSource)(kText);
}

/**
 * \brief Load the plug-in that the parameters name and let it make its grabber object
 *
 * What was loaded before a failure stays loaded until Release.
 *
 * \throw RuntimeException No plug-in is named, it can't be loaded, lacks a function or makes no object
 */
void CFrameGrabberPlugin::Load() {
    const gcstring directory = getVantoFolderPath(ePluginFolder) + getVantoPathSeperator();
    if (m_parameters.find(kFamily) == gcstring::npos) {
        LogTrace(StreamLog(), tracelog::kInfo, "Don't know which plug-in DLL must be loaded!");
        throw VANTO_EXCEPTION(RuntimeException, kSource)(
            "Skipping loading of plug-in DLL since the name of the DLL cannot be deduced from the device specific "
            "parameters!");
    }
    LogTrace(StreamLog(), tracelog::kInfo, "About to load FGPlugin DLL from directory '%s.'", directory);
    try {
        LoadLibrary(directory + kFileName + kFileSuffix);
    } catch (const std::exception& error) {
        LogTrace(StreamLog(), tracelog::kError, "Error loading FGPlugin DLL (%s)", error.what());
        throw;
    }
    LogTrace(StreamLog(), tracelog::kInfo, "Sucessfully loaded FGPlugin DLL.");
}

void CFrameGrabberPlugin::LoadLibrary(const gcstring& path) {
    if (!m_library.Load(path)) {
        if (m_library.IsStuck())
            LogTrace(StreamLog(), tracelog::kError,
                     "FGPlugin DLL '%s' does not end to load within %u s and is given up.", path,
                     static_cast<unsigned>(kLoadingTime.count()));
        else if (const std::string reason = m_library.Reason(); !reason.empty())
            LogTrace(StreamLog(), tracelog::kDebug, "FGPlugin DLL '%s' can't be loaded: %s", path, reason);
        LogTrace(StreamLog(), tracelog::kWarning, "Could not load FGPlugin DLL");
        throw VANTO_EXCEPTION(RuntimeException, kSource)("Could not load FrameGrabber plug-in DLL.");
    }
    FgCreateFunction* const create = m_library.GetLibrary().Find<FgCreateFunction>(kFgCreateName);
    FgDestroyFunction* const destroy = m_library.GetLibrary().Find<FgDestroyFunction>(kFgDestroyName);
    if (create == nullptr || destroy == nullptr) {
        LogTrace(StreamLog(), tracelog::kError, "Could not find functions in FGPlugin DLL.");
        throw VANTO_EXCEPTION(RuntimeException, kSource)("Missing necessary functions in FGPlugin DLL '%s'.", path);
    }
    m_grabber = Guarded([&] { return create(m_parameters.c_str()); });
    if (m_grabber == nullptr) {
        static constexpr char kText[] =
            "Could not create Framegrabber object using FGPlugin DLL and parameterstring '%s'.";
        LogTrace(StreamLog(), tracelog::kError, kText, m_parameters);
        throw VANTO_EXCEPTION(RuntimeException, kSource)(kText, m_parameters);
    }
}

/**
 * \brief Give the grabber object its parameters and its callee
 * \throw RuntimeException It refuses; the message is the plug-in's
 */
void CFrameGrabberPlugin::Init(FgCallee* callee) {
    try {
        if (!Guarded([&] { return Grabber().Init(m_parameters.c_str(), callee); }))
            throw VANTO_EXCEPTION(RuntimeException, kSource)("%s", GetLastErrorText());
    } catch (const std::exception& error) {
        LogTrace(StreamLog(), tracelog::kError, "Error initializing grabber (%s)", error.what());
        throw;
    }
}

/**
 * \brief Shut the grabber object down, have it destroyed and unload the plug-in
 */
void CFrameGrabberPlugin::Release() noexcept {
    if (!m_library.IsLoaded())
        return;
    if (m_grabber != nullptr)
        DestroyGrabber();
    m_library.Unload();
}

void CFrameGrabberPlugin::DestroyGrabber() noexcept {
    Try([&] { m_grabber->Shutdown(); });
    FgDestroyFunction* const destroy = m_library.GetLibrary().Find<FgDestroyFunction>(kFgDestroyName);
    if (destroy == nullptr) {
        LogTrace(StreamLog(), tracelog::kError,
                 "Could not find destroy function in FGPlugin DLL. Cannot destroy framegrabber object!");
        return;
    }
    Try([&] { destroy(m_grabber); });
    m_grabber = nullptr;
}

/**
 * \brief Start the acquisition
 * \throw RuntimeException The plug-in can't; the message is the plug-in's
 */
void CFrameGrabberPlugin::StartGrab() {
    if (!Guarded([&] { return Grabber().StartGrab(); }))
        throw VANTO_EXCEPTION(RuntimeException, kSource)("%s", GetLastErrorText());
}

/**
 * \brief Stop the acquisition; a failure is logged
 *
 * Must be called without a lock that a frame delivery waits for: the plug-in waits for its acquisition thread.
 */
void CFrameGrabberPlugin::StopGrab() noexcept {
    static constexpr char kText[] = "Failed to stop the grab gracefully (%s).";
    try {
        if (m_grabber != nullptr && !Guarded([&] { return m_grabber->StopGrab(); }))
            LogTrace(StreamLog(), tracelog::kWarning, kText, GetLastErrorText());
    } catch (const GenericException& error) {
        LogTrace(StreamLog(), tracelog::kWarning, kText, error.GetDescription());
    }
}

/**
 * \brief A value of the grabber
 * \return false when there is none
 */
bool CFrameGrabberPlugin::GetValue(std::uint32_t parameter, std::uint64_t& value) noexcept {
    return m_grabber != nullptr && Try([&] { value = m_grabber->GetValue(parameter); });
}

/**
 * \brief Switch or ask for Power over Camera Link
 * \return false when the grabber can't be asked
 */
bool CFrameGrabberPlugin::PoCLControl(std::uint32_t command, std::int32_t& result) noexcept {
    return m_grabber != nullptr && Try([&] { result = m_grabber->PoCLControl(command); });
}

IFrameGrabber& CFrameGrabberPlugin::Grabber() const {
    if (m_grabber == nullptr)
        throw VANTO_EXCEPTION(RuntimeException, kSource)("No FGPlugin DLL is loaded.");
    return *m_grabber;
}

// The buffer is longer than any text that is written into it and filled with NUL: the text ends within it.
gcstring CFrameGrabberPlugin::GetLastErrorText() const {
    return Guarded([&] {
        const std::uint32_t length = std::min(m_grabber->GetLastErrorText(nullptr, 0), kLongestErrorText);
        std::vector<char> text(std::size_t{length} + 1, '\0');
        m_grabber->GetLastErrorText(text.data(), length + 1);
        text[length] = '\0';
        return gcstring(text.data());
    });
}

}  // namespace Vanto
