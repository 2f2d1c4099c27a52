/* SPDX-License-Identifier: Apache-2.0 */
/*
 * GrabTarget: where the frames of a grab go
 */
#include "images/GrabTarget.h"

#include <fmt/format.h>

#include <algorithm>

#include "error/ExitCode.h"
#include "features/OpenDevice.h"
#include "images/FrameCounts.h"
#include "images/GrabProgress.h"
#include "images/Preview.h"
#include "output/Output.h"
#include "system/Clock.h"
#include "system/Files.h"
#include "values/FeatureValueAccess.h"
#include "vanto/PixelTypeMapper.h"

namespace tools {

namespace {

/// The value of a feature with its unit; empty for a camera that does not tell.
std::string ValueWithUnit(GenApi::INodeMap& nodes, const char* name) {
    GenApi::INode* const node = nodes.GetNode(name);
    if (node == nullptr || !Vanto::HasValue(*node) || !GenApi::IsReadable(node->GetAccessMode()))
        return {};
    const GenApi::CFloatPtr number(node);
    const std::string unit = number.IsValid() ? number->GetUnit().str() : std::string();
    return Vanto::ReadText(*node) + (unit.empty() ? "" : " " + unit);
}

Vanto::ImageNotes NotesOf(const OpenDevice& device) {
    return {.camera = device.Name(),
            .serialNumber = device.Address().SerialNumber(),
            .exposureTime = ValueWithUnit(device.Nodes(), "ExposureTime"),
            .frameNumber = {},
            .time = {}};
}

/// The rate that a camera says it has, for players.
double RateOf(GenApi::INodeMap& nodes) {
    constexpr double kUsual = 25.0;
    for (const char* name : {"ResultingFrameRate", "AcquisitionFrameRate"})
        if (const GenApi::CFloatPtr rate(nodes.GetNode(name)); GenApi::IsReadable(rate) && rate->GetValue() > 0.0)
            return rate->GetValue();
    return kUsual;
}

void CheckStreamFormat(const std::string& format) {
    if (format == "png" || format == "tiff" || format == "none")
        throw ToolError(fmt::format("frames on standard output can't be {}", format),
                        "--format raw, pnm or y4m can be read by other programs.", ExitCode::kUsage);
}

}  // namespace

GrabTarget::GrabTarget(const GrabWishes& wishes, const OpenDevice& device, Output& output)
    : m_wishes(wishes), m_output(output), m_notes(NotesOf(device)) {
    if (m_wishes.IsStream()) {
        CheckStreamFormat(m_wishes.format);
        m_stream.emplace(output, m_wishes.format.empty() ? "pnm" : m_wishes.format, RateOf(device.Nodes()));
        return;
    }
    if (m_wishes.format == "y4m")
        throw ToolError("y4m is a stream, not a file for each frame", "'-o - > FILE' writes it to standard output.",
                        ExitCode::kUsage);
    m_files.emplace(m_wishes.format.empty() ? "png" : m_wishes.format, PathOf(m_wishes.output), m_wishes.overwrite);
    CheckPixelFormat(device);
    m_saver.emplace(*m_files, std::max(std::thread::hardware_concurrency(), 1U), m_wishes.waiting);
}

// Better before the first frame than behind the thousandth.
void GrabTarget::CheckPixelFormat(const OpenDevice& device) const {
    const GenApi::CEnumerationPtr pixelFormat = device.Nodes().GetNode("PixelFormat");
    if (!GenApi::IsReadable(pixelFormat))
        return;
    const Vanto::CPixelTypeMapper types(static_cast<GenApi::IEnumeration*>(pixelFormat));
    m_files->CheckPixelType(types.GetVantoPixelTypeFromNodeValue(pixelFormat->GetIntValue()));
}

bool GrabTarget::Take(const Vanto::Frame& frame, const FrameCounts& counts) {
    if (m_taken++ % m_wishes.every != 0)
        return true;
    const FrameImage image = ImageOf(frame);
    Look(image, counts);
    if (m_stream)
        return m_stream->Write(image);
    Vanto::ImageNotes notes = m_notes;
    notes.frameNumber = std::to_string(m_taken);
    notes.time = Now();
    m_saver->Save(image, notes);
    return true;
}

void GrabTarget::Finish() {
    if (m_saver)
        m_saver->Finish();
}

// Now and then is enough: looking takes its time.
void GrabTarget::Look(const FrameImage& image, const FrameCounts& counts) {
    constexpr std::chrono::seconds kPeriod{1};
    const auto now = std::chrono::steady_clock::now();
    if ((!m_wishes.statistics && !m_wishes.preview) || image.isCut || (!m_seen.empty() && now - m_looked < kPeriod))
        return;
    m_looked = now;
    m_seen.clear();
    Vanto::AppendPnm(m_seen, image.view);
    m_seenWidth = image.view.width;
    m_seenHeight = image.view.height;
    if (m_wishes.statistics)
        m_output.Note(fmt::format("frame {}: {}{}{} dropped, {}", m_taken, CameraRateText(counts),
                                  counts.Delivered() < 2 ? "" : ", ", counts.Dropped(),
                                  StatisticsText(StatisticsOf(m_seen))));
}

/// Draws the frame that was looked at last, where that is wanted.
void GrabTarget::PrintPreview() {
    if (m_wishes.preview && !m_seen.empty() && !m_stream)
        tools::PrintPreview(m_output, m_seen, m_seenWidth, m_seenHeight);
}

std::uint64_t GrabTarget::Saved() const {
    return m_stream ? m_stream->Count() : m_files->Count();
}

double GrabTarget::SaveSeconds() const {
    return m_saver ? m_saver->Seconds() : 0.0;
}

}  // namespace tools
