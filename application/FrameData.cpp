/* SPDX-License-Identifier: Apache-2.0 */
/*
 * FrameData: one result of a stream grabber, and the memory that it is in
 */
#include "FrameData.h"

#include <utility>

#include "StreamCore.h"

namespace Vanto {

namespace {

FrameStatus StatusOf(const GrabResult& result) noexcept {
    if (!result.Succeeded())
        return FrameStatus::kFailed;
    return IsCut(result) ? FrameStatus::kCut : FrameStatus::kComplete;
}

}  // namespace

FrameData::FrameData(const GrabResult& grabbed, FrameBuffer own, std::weak_ptr<StreamCore> from)
    : result(grabbed), status(StatusOf(grabbed)), buffer(std::move(own)), m_stream(std::move(from)) {}

FrameData::~FrameData() {
    if (const auto stream = m_stream.lock())
        stream->GiveBack(std::move(buffer));
}

}  // namespace Vanto
