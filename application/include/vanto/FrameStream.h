/* SPDX-License-Identifier: Apache-2.0 */
/*
 * FrameStream: the frames of a camera, one after the other
 */
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <iterator>
#include <memory>
#include <optional>

#include "vanto/Frame.h"

namespace Vanto {

class CameraState;
class StreamCore;

/// How a stream runs.
struct StreamOptions {
    std::size_t buffers = 8;                  ///< frames that may wait to be taken; those that are held come on top
    std::chrono::milliseconds timeout{5000};  ///< how long Next and iteration wait for a frame
    std::uint64_t count = 0;                  ///< the stream ends behind so many frames; 0 for no end
};

/// What became of the frames of one stream.
struct StreamCounts {
    std::uint64_t delivered = 0;  ///< handed out, cut ones among them
    std::uint64_t missed = 0;     ///< lost between two that were delivered
    std::uint64_t cut = 0;        ///< delivered without all of their bytes
    std::uint64_t failed = 0;     ///< handed out without usable data
    std::uint64_t bytes = 0;      ///<  of all images that were delivered
};

/// A running acquisition: it starts with this object and stops with it. A camera has one at a time. Next and iteration
/// may be called by several threads, each of which gets other frames; everything else is thread-safe as well.
class VANTOAPPLICATION_API FrameStream {
public:
    /// Goes through the frames for `for (Frame& frame : stream)`. It holds its frame until it goes on.
    class Iterator {
    public:
        /// It goes on only, and once.
        using iterator_category = std::input_iterator_tag;
        /// What it goes through.
        using value_type = Frame;
        /// For algorithms.
        using difference_type = std::ptrdiff_t;
        /// For algorithms.
        using pointer = Frame*;
        /// For algorithms.
        using reference = Frame&;

        Iterator() = default;
        /// The frame it holds.
        Frame& operator*() { return *m_frame; }
        /// The frame it holds.
        Frame* operator->() { return &*m_frame; }
        /// Lets its frame go and waits for the next one; throws as Next does.
        Iterator& operator++() {
            m_frame.reset();
            m_frame = m_stream->Next();
            return *this;
        }
        /// As the other.
        void operator++(int) { ++*this; }
        /// Whether both are at the end, or neither is.
        bool operator==(const Iterator& other) const { return m_frame.has_value() == other.m_frame.has_value(); }
        /// Whether one is at the end and the other is not.
        bool operator!=(const Iterator& other) const { return !(*this == other); }

    private:
        friend class FrameStream;
        explicit Iterator(FrameStream* stream) : m_stream(stream), m_frame(stream->Next()) {}
        FrameStream* m_stream = nullptr;
        std::optional<Frame> m_frame;
    };

    /// Waits for the next frame; throws as Next does.
    Iterator begin() { return Iterator(this); }
    /// The end of the stream.
    Iterator end() { return Iterator(); }

    std::optional<Frame> Next();
    std::optional<Frame> Next(std::chrono::milliseconds timeout);
    std::optional<Frame> TryNext();

    /// What became of the frames so far.
    StreamCounts Counts() const;
    /// Whether it was not stopped yet.
    bool IsRunning() const noexcept;
    void Stop();

    /// Takes the acquisition over; the other may only be destroyed or assigned to.
    FrameStream(FrameStream&&) noexcept;
    /// Stops its acquisition and takes another over.
    FrameStream& operator=(FrameStream&&) noexcept;
    ~FrameStream();

private:
    friend class Camera;
    explicit FrameStream(std::shared_ptr<StreamCore> core) noexcept;

    std::shared_ptr<StreamCore> m_core;
};

}  // namespace Vanto
