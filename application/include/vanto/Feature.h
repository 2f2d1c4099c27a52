/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Feature: one feature of a camera, with its value and all that is known about it
 */
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

#include "vanto/CameraError.h"
#include "vanto/FeatureValue.h"
#include "vanto/Subscription.h"

namespace GenApi {
struct IFloat;
struct IInteger;
struct INode;
struct IValue;
}  // namespace GenApi

namespace Vanto {

class CameraState;

/// One feature of a camera. A handle, cheap to copy; it may outlive the camera and throws CameraClosed then. All
/// operations may be called from any thread, and throw CameraGone, CameraClosed and what they say themselves.
class VANTOAPPLICATION_API Feature {
public:
    // --- What it is; asks no camera ---
    /// The name, as the camera's description spells it.
    std::string Name() const;
    /// What kind of value it has.
    FeatureKind Kind() const;
    std::string DisplayName() const;
    std::string ToolTip() const;
    std::string Description() const;
    /// For whom it is meant.
    FeatureVisibility Visibility() const;
    std::string Unit() const;
    bool IsStreamable() const;
    std::vector<Feature> Selectors() const;
    std::vector<Feature> Selected() const;
    std::vector<Feature> Children() const;

    // --- What it takes at present; may ask the camera ---
    FeatureAccess Access() const;
    /// Whether its value can be read at present.
    bool IsReadable() const;
    /// Whether its value can be set, or a command be executed, at present.
    bool IsWritable() const;
    /// Whether anything can be done with it at present.
    bool IsAvailable() const;
    std::optional<FeatureRange> Range() const;
    std::vector<FeatureEntry> Entries() const;
    std::string Allowed() const;

    // --- Its value ---
    FeatureValue Value() const;
    std::optional<FeatureValue> KnownValue() const;
    std::string Text() const;
    void SetValue(const FeatureValue& value) const;
    void Refresh() const;

    /// The value as a T: a number, bool, std::string or FeatureBytes. Throws FeatureTypeError when it does not fit.
    template <class T>
    T Get() const {
        if constexpr (std::is_same_v<T, bool>) {
            return GetBoolean();
        } else if constexpr (std::is_integral_v<T>) {
            return Narrowed<T>(GetInteger());
        } else if constexpr (std::is_floating_point_v<T>) {
            return static_cast<T>(GetNumber());
        } else if constexpr (std::is_same_v<T, FeatureBytes>) {
            return GetBytes();
        } else {
            static_assert(std::is_same_v<T, std::string>, "a feature is a number, a bool, a string or bytes");
            return Text();
        }
    }
    /// Sets the value: a number, bool, text or FeatureBytes. A text is read as people write it: "2 ms", "0x10", "on".
    template <class T>
    void Set(const T& value) const {
        if constexpr (std::is_same_v<T, bool>)
            SetValue(FeatureValue(value));
        else if constexpr (std::is_integral_v<T>)
            SetValue(FeatureValue(Widened(value)));
        else if constexpr (std::is_floating_point_v<T>)
            SetValue(FeatureValue(static_cast<double>(value)));
        else if constexpr (std::is_constructible_v<std::string, const T&>)
            SetValue(FeatureValue(std::string(value)));
        else
            SetValue(FeatureValue(value));
    }
    /// Sets the value, as Set.
    template <class T, class = std::enable_if_t<!std::is_same_v<T, Feature>>>
    const Feature& operator=(const T& value) const {
        Set(value);
        return *this;
    }

    // --- Commands ---
    void Execute(std::chrono::milliseconds timeout = std::chrono::seconds(10)) const;
    void Start() const;
    bool IsDone() const;

    // --- Changes ---
    Subscription OnChange(std::function<void(const Feature&)> callback) const;

    /// The node behind it, for what is not here. It lives as long as this feature does.
    GenApi::INode& Node() const noexcept { return *m_node; }

    Feature(const Feature&) = default;
    // Not for what operator[] gives: that would not set the one feature to the value of the other.
    Feature& operator=(const Feature&) & = default;
    ~Feature();

private:
    friend class FeatureMap;
    Feature(std::shared_ptr<CameraState> camera, GenApi::INode& node) noexcept;

    template <class T>
    T Narrowed(std::int64_t value) const {
        constexpr bool kIsWide = std::is_unsigned_v<T> && sizeof(T) == sizeof(std::int64_t);
        if (kIsWide ? value < 0 : static_cast<std::int64_t>(static_cast<T>(value)) != value)
            ThrowTooWide(value);
        return static_cast<T>(value);
    }
    template <class T>
    std::int64_t Widened(T value) const {
        if (static_cast<std::int64_t>(value) < 0 && std::is_unsigned_v<T>)
            ThrowTooWide();
        return static_cast<std::int64_t>(value);
    }
    bool IsKnown() const;
    std::vector<Feature> FeaturesOf(const std::vector<GenApi::IValue*>& values) const;
    [[noreturn]] void ThrowTooWide(std::int64_t value) const;
    [[noreturn]] void ThrowTooWide() const;
    std::int64_t GetInteger() const;
    double GetNumber() const;
    bool GetBoolean() const;
    FeatureBytes GetBytes() const;

    std::shared_ptr<CameraState> m_camera;
    GenApi::INode* m_node;
    GenApi::IInteger* m_integer = nullptr;  // of an integer: looking for it takes longer than a cached value
    GenApi::IFloat* m_number = nullptr;     // of a float
};

}  // namespace Vanto
