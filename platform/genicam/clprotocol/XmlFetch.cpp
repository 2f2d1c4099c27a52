/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A camera's description: from a file, from the cache or from the camera
 */

#include "XmlFetch.h"

#include <bit>
#include <utility>

#include "ActivityTeller.h"
#include "CLProtocol/CLException.h"
#include "DriverLocations.h"
#include "ModuleLog.h"
#include "Texts.h"
#include "XmlCache.h"
#include "base/Zip.h"
#include "os/File.h"
#include "os/Path.h"

namespace CLProtocol {

namespace {

constexpr std::size_t kMaxFileSize = 64u << 20;
constexpr unsigned kPutBackAttempts = 3;
constexpr std::string_view kXmlSuffix = ".xml";

// Raises the rate of camera and port as far as they and the line can and puts it back at the end. A rate that can't
// be raised only costs time, unless the camera is lost by it.
class RateBoost {
public:
    RateBoost(Session& session, CLUINT32 timeoutMs) : m_session(session), m_timeoutMs(timeoutMs) {
        try {
            CLUINT32 rates = session.CommonRates(timeoutMs);
            const CLUINT32 present = rates != 0 ? session.GetRate(timeoutMs) : 0;
            while (present != 0 && std::bit_floor(rates) > present && !Raise(present, std::bit_floor(rates)))
                rates &= ~std::bit_floor(rates);
        } catch (const CLErrException& error) {
            // The driver has looked for a silent camera at every rate where it can be.
            if (m_previous != 0 && (IsGone() || !PutBack()))
                throw;
            Log(CLP_LOG_WARN, "The description is fetched at the present baud rate: %s", error.GetDescription());
        } catch (const GenICam::GenericException& error) {
            Log(CLP_LOG_WARN, "The description is fetched at the present baud rate: %s", error.GetDescription());
        }
    }

    ~RateBoost() {
        if (m_previous != 0)
            PutBack();
    }

    RateBoost(const RateBoost&) = delete;
    RateBoost& operator=(const RateBoost&) = delete;

private:
    // False for a rate that is refused: the next lower one may do.
    bool Raise(CLUINT32 present, CLUINT32 rate) {
        m_previous = present;
        try {
            m_session.SetRate(rate, m_timeoutMs);
            return true;
        } catch (const GenICam::OutOfRangeException& error) {
            Log(CLP_LOG_WARN, "The description is fetched at a lower baud rate: %s", error.GetDescription());
            return false;
        }
    }

    // One that has not said a word for the driver's whole patience, while its caller waits for an error.
    bool IsGone() const { return m_session.IsLineSilent() && !IsStopRequested(); }

    // Again and again, for nobody else would: a camera may only be late, because this machine is.
    bool PutBack() {
        const CLUINT32 rate = std::exchange(m_previous, 0);
        for (unsigned left = IsGone() ? 1 : kPutBackAttempts; left > 0; --left) {
            try {
                m_session.SetRate(rate, m_timeoutMs);
                return true;
            } catch (const std::exception& error) {
                Log(left > 1 ? CLP_LOG_WARN : CLP_LOG_ERROR, "Could not put back the baud rate: %s", ReasonOf(error));
            }
        }
        return false;
    }

    Session& m_session;
    CLUINT32 m_timeoutMs;
    CLUINT32 m_previous = 0;
};

std::string Unzipped(const std::string& archive) {
    try {
        return base::UnzipDescription(archive);
    } catch (const base::ZipError& error) {
        throw RUNTIME_EXCEPTION("Could not unpack the description: %s", error.what());
    }
}

std::string TextOf(std::string bytes) {
    if (base::IsZip(bytes))
        return Unzipped(bytes);
    // The size that a driver reports may count a NUL at the end, or the padding of the camera's memory.
    bytes.erase(bytes.find_last_not_of('\0') + 1);
    if (bytes.empty())
        throw RUNTIME_EXCEPTION("it is empty");
    return bytes;
}

std::string FetchFromCamera(Session& session, const std::string& xmlId, CLUINT32 timeoutMs) {
    std::string bytes;
    {
        ThrowIfStopped(session.PortId());
        const RateBoost boost(session, timeoutMs);
        bytes = session.GetXml(xmlId, timeoutMs);
    }
    try {
        return TextOf(std::move(bytes));
    } catch (const GenICam::GenericException& error) {
        throw RUNTIME_EXCEPTION("Port '%s': description '%s' of '%s' is of no use: %s", session.PortId(), xmlId,
                                session.DriverPath(), error.GetDescription());
    }
}

std::string ReadDescriptionFile(const std::string& path) {
    if (std::optional<std::string> text = os::ReadWholeFile(path, kMaxFileSize))
        return *std::move(text);
    throw RUNTIME_EXCEPTION("Could not read description file '%s'", path);
}

void AddCandidate(std::vector<XmlCandidate>& candidates, std::string_view text, const std::string& file,
                  const CDeviceID& deviceId) {
    const std::optional<XmlId> id = XmlId::Parse(text);
    if (id && IsUsable(*id, deviceId.GetShortDeviceID().view()))
        candidates.push_back({*id, file});
    else if (file.empty())
        Log(CLP_LOG_WARN, "The camera's XML ID '%s' is of no use", text);
}

void AddFilesOf(const std::string& folder, const CDeviceID& deviceId, std::vector<XmlCandidate>& candidates) {
    const std::string start = folder + os::kPathSeparator;
    for (const std::string& name : FilesIn(folder))
        if (os::FoldedFileName(name).ends_with(kXmlSuffix))
            AddCandidate(candidates, std::string_view(name).substr(0, name.size() - kXmlSuffix.size()), start + name,
                         deviceId);
}

}  // namespace

/**
 * \brief The descriptions for a camera
 * \param[out] whyNone The driver's words when it says that the camera has none; else as it was
 * \return What the camera offers and the files "<XML ID>.xml" of the driver's location, best first; without those for
 * other cameras and of schemas that can't be read
 */
std::vector<XmlCandidate> FindDescriptions(Session& session, const CDeviceID& deviceId, CLUINT32 timeoutMs,
                                           std::string& whyNone) {
    std::vector<XmlCandidate> candidates;
    for (const std::string& text : session.GetXmlIds(timeoutMs, whyNone))
        AddCandidate(candidates, text, {}, deviceId);
    for (const std::string& folder : DescriptionFolders(deviceId.GetDriverDirectory().str()))
        AddFilesOf(folder, deviceId, candidates);
    SortBestFirst(candidates);
    return candidates;
}

/**
 * \brief The best description for a camera
 * \param[in] useCache Whether one that was fetched before may be used, and this one be kept: only where the camera
 * still holds the same bytes, as far as the driver can tell
 * \throw GenICam::AccessException There is none (-20102)
 * \throw GenICam::RuntimeException It can't be unpacked or its file not be read
 * \throw GenICam::GenericException It can't be fetched, as CCLPort::Read
 */
std::string FetchDescription(Session& session, const CDeviceID& deviceId, CLUINT32 timeoutMs, bool useCache) {
    std::string whyNone = "The camera offers none that fits.";
    const std::vector<XmlCandidate> candidates = FindDescriptions(session, deviceId, timeoutMs, whyNone);
    if (candidates.empty())
        throw ACCESS_EXCEPTION("There is no XML description for '%s'. %s (%d)", deviceId.ToString(), whyNone,
                               static_cast<int>(CLP_NO_XMLDESCRIPTION_FOUND));
    const XmlCandidate& best = candidates.front();
    if (!best.file.empty()) {
        Log(CLP_LOG_INFO, "Description '%s' comes from '%s'", best.id.text, best.file);
        return ReadDescriptionFile(best.file);
    }
    const std::optional<std::string> key = useCache ? session.XmlIdentity(best.id.text, timeoutMs) : std::nullopt;
    const XmlCache cache(key ? XmlCache::Folder() : std::string());
    if (useCache && !key)
        Log(CLP_LOG_INFO, "Description '%s' is not kept: the camera has no sum of it to know it again by",
            best.id.text);
    if (std::optional<std::string> xml = key ? cache.Load(*key) : std::nullopt)
        return *std::move(xml);
    std::string xml = FetchFromCamera(session, best.id.text, timeoutMs);
    if (key)
        cache.Store(*key, xml);
    return xml;
}

}  // namespace CLProtocol
