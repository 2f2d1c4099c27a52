/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Feature: one feature of a camera, with its value and all that is known about it
 */
#include "vanto/Feature.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "Access.h"
#include "GenApi/GenApi.h"
#include "values/AllowedText.h"
#include "values/FeatureValueAccess.h"

namespace Vanto {

namespace {

constexpr std::uint32_t kPoll = 20;  // milliseconds between two looks at a command

FeatureRange RangeOf(GenApi::IInteger& integer) {
    FeatureRange range{integer.GetMin(), integer.GetMax(), std::nullopt, {}};
    const GenApi::EIncMode mode = integer.GetIncMode();
    if (mode == GenApi::fixedIncrement)
        range.step = integer.GetInc();
    if (mode == GenApi::listIncrement)
        for (const std::int64_t value : integer.GetListOfValidValues())
            range.values.emplace_back(value);
    return range;
}

FeatureRange RangeOf(GenApi::IFloat& number) {
    FeatureRange range{number.GetMin(), number.GetMax(), std::nullopt, {}};
    if (number.HasInc())
        range.step = number.GetInc();
    if (number.GetIncMode() == GenApi::listIncrement)
        for (const double value : number.GetListOfValidValues())
            range.values.emplace_back(value);
    return range;
}

}  // namespace

Feature::Feature(std::shared_ptr<CameraState> camera, GenApi::INode& node) noexcept
    : m_camera(std::move(camera)), m_node(&node) {
    if (Kind() == FeatureKind::kInteger)
        m_integer = GenApi::CIntegerPtr(m_node);
    if (Kind() == FeatureKind::kFloat)
        m_number = GenApi::CFloatPtr(m_node);
}

Feature::~Feature() = default;

std::string Feature::Name() const {
    return m_node->GetName().str();
}

FeatureKind Feature::Kind() const {
    return KindOf(*m_node);
}

/// The name for people; the name itself where the description has no other.
std::string Feature::DisplayName() const {
    return m_node->GetDisplayName().str();
}

/// One sentence; empty where the description has none.
std::string Feature::ToolTip() const {
    return m_node->GetToolTip().str();
}

/// The documentation; empty where the description has none.
std::string Feature::Description() const {
    return m_node->GetDescription().str();
}

FeatureVisibility Feature::Visibility() const {
    return static_cast<FeatureVisibility>(std::clamp<int>(m_node->GetVisibility(), 0, 3));
}

/// "us", "Hz" ...; empty for none.
std::string Feature::Unit() const {
    return Vanto::Access(*m_camera, m_node, [&] { return UnitOf(*m_node); });
}

/// Whether it belongs to the settings that are saved and loaded.
bool Feature::IsStreamable() const {
    return m_node->IsStreamable();
}

/// The features that select what this one is about.
std::vector<Feature> Feature::Selectors() const {
    GenApi::FeatureList_t found;
    if (const GenApi::CSelectorPtr selector(m_node); selector.IsValid())
        selector->GetSelectingFeatures(found);
    return FeaturesOf(found);
}

/// The features that this one selects; none when it is no selector.
std::vector<Feature> Feature::Selected() const {
    GenApi::FeatureList_t found;
    if (const GenApi::CSelectorPtr selector(m_node); selector.IsValid())
        selector->GetSelectedFeatures(found);
    return FeaturesOf(found);
}

/// The features of a category, sub-categories among them; none for everything else.
std::vector<Feature> Feature::Children() const {
    GenApi::FeatureList_t found;
    if (const GenApi::CCategoryPtr category(m_node); category.IsValid())
        Vanto::Access(*m_camera, m_node, [&] { category->GetFeatures(found); });
    return FeaturesOf(found);
}

std::vector<Feature> Feature::FeaturesOf(const std::vector<GenApi::IValue*>& values) const {
    std::vector<Feature> features;
    for (GenApi::IValue* value : values)
        features.push_back(Feature(m_camera, *value->GetNode()));
    return features;
}

/// What may be done with it at present. A feature whose access the camera refuses to tell is not available.
FeatureAccess Feature::Access() const {
    switch (Vanto::Access(*m_camera, m_node, [&] { return m_node->GetAccessMode(); })) {
        case GenApi::NI:
            return FeatureAccess::kNotImplemented;
        case GenApi::WO:
            return FeatureAccess::kWriteOnly;
        case GenApi::RO:
            return FeatureAccess::kReadOnly;
        case GenApi::RW:
            return FeatureAccess::kReadWrite;
        default:
            return FeatureAccess::kNotAvailable;
    }
}

bool Feature::IsReadable() const {
    const FeatureAccess access = Access();
    return access == FeatureAccess::kReadOnly || access == FeatureAccess::kReadWrite;
}

bool Feature::IsWritable() const {
    const FeatureAccess access = Access();
    return access == FeatureAccess::kWriteOnly || access == FeatureAccess::kReadWrite;
}

bool Feature::IsAvailable() const {
    const FeatureAccess access = Access();
    return access != FeatureAccess::kNotImplemented && access != FeatureAccess::kNotAvailable;
}

/// The limits of a number at present; nothing for features of other kinds.
std::optional<FeatureRange> Feature::Range() const {
    return Vanto::Access(*m_camera, m_node, [&]() -> std::optional<FeatureRange> {
        if (Kind() == FeatureKind::kInteger)
            return RangeOf(*GenApi::CIntegerPtr(m_node));
        if (Kind() == FeatureKind::kFloat)
            return RangeOf(*GenApi::CFloatPtr(m_node));
        return std::nullopt;
    });
}

/// All entries of an enumeration in the order of the description; none for features of other kinds.
std::vector<FeatureEntry> Feature::Entries() const {
    std::vector<FeatureEntry> entries;
    const GenApi::CEnumerationPtr enumeration(m_node);
    if (!enumeration.IsValid())
        return entries;
    return Vanto::Access(*m_camera, m_node, [&] {
        GenApi::NodeList_t nodes;
        enumeration->GetEntries(nodes);
        for (GenApi::INode* node : nodes) {
            const GenApi::CEnumEntryPtr entry(node);
            entries.push_back({entry->GetSymbolic().str(), entry->GetValue(), node->GetDisplayName().str(),
                               node->GetDescription().str(), GenApi::IsAvailable(node->GetAccessMode())});
        }
        return std::move(entries);
    });
}

/// What it takes at present as people read it: "16 .. 2048 step 16 us", entries; empty where it takes anything.
std::string Feature::Allowed() const {
    m_camera->RequireOpen();
    return AllowedText(m_node);
}

/**
 * \brief The value, as the type that its kind has
 * \throw FeatureNotAccessible It can't be read at present
 * \throw FeatureTypeError It has no value
 */
FeatureValue Feature::Value() const {
    return Vanto::Access(*m_camera, m_node, [&] { return ReadValue(*m_node); });
}

/**
 * \brief The value if it is known and nobody uses the node map; asks no camera and waits for nobody
 * \return Nothing where Value might have to wait
 * \throw As Value
 */
std::optional<FeatureValue> Feature::KnownValue() const {
    m_camera->RequireOpen();
    GenApi::CLock& lock = m_node->GetNodeMap()->GetLock();
    if (!lock.TryLock())
        return std::nullopt;
    const GenApi::AutoLock held(lock);
    lock.Unlock();  // from here on it is held once, to the end
    return IsKnown() ? std::optional(Value()) : std::nullopt;
}

// The node map's lock is held, so that it stays as it is. A register's length may have to be asked for.
bool Feature::IsKnown() const {
    if (m_integer != nullptr)
        return m_integer->IsValueCacheValid();
    if (m_number != nullptr)
        return m_number->IsValueCacheValid();
    const GenApi::CValuePtr value(m_node);
    return Kind() != FeatureKind::kRegister && value.IsValid() && value->IsValueCacheValid();
}

/// The value in a notation that Set takes; throws as Value does.
std::string Feature::Text() const {
    return Vanto::Access(*m_camera, m_node, [&] { return ReadText(*m_node); });
}

std::int64_t Feature::GetInteger() const {
    return Vanto::Access(*m_camera, m_node,
                         [&] { return m_integer != nullptr ? m_integer->GetValue() : ReadInteger(*m_node); });
}

double Feature::GetNumber() const {
    return Vanto::Access(*m_camera, m_node,
                         [&] { return m_number != nullptr ? m_number->GetValue() : ReadNumber(*m_node); });
}

bool Feature::GetBoolean() const {
    return Vanto::Access(*m_camera, m_node, [&] { return ReadBoolean(*m_node); });
}

FeatureBytes Feature::GetBytes() const {
    return Vanto::Access(*m_camera, m_node, [&] { return ReadBytes(*m_node); });
}

/**
 * \brief Set the value
 *
 * Numbers are converted where nothing is lost. A text is read as people write it: decimal or hexadecimal numbers, a
 * multiple of the feature's unit ("2 ms"), an entry in any case, on and off, bytes as hexadecimal digits.
 *
 * \throw FeatureTypeError The value is of another kind; for an entry that does not exist, Allowed() lists them
 * \throw FeatureOutOfRange It is outside of what the feature takes at present
 * \throw FeatureNotAccessible It can't be written at present
 */
void Feature::SetValue(const FeatureValue& value) const {
    Vanto::Access(*m_camera, m_node, [&] { WriteValue(*m_node, value); });
}

/// Drops what is cached of it: the next read asks the camera.
void Feature::Refresh() const {
    Vanto::Access(*m_camera, m_node, [&] { m_node->InvalidateNode(); });
}

/**
 * \brief Execute a command and wait until it is done
 * \throw CameraTimeout It was started and is not done in time
 * \throw Interrupted The stop check said so; the command goes on
 * \throw FeatureTypeError It is no command
 */
void Feature::Execute(std::chrono::milliseconds timeout) const {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    Start();
    while (!IsDone()) {
        if (std::chrono::steady_clock::now() >= deadline)
            throw CameraTimeout(fmt::format("{}: {} was started and is not done after {} ms", m_camera->Name(), Name(),
                                            timeout.count()),
                                m_camera->Name());
        m_camera->ThrowIfStopped();
        m_camera->Removal().signal.Wait(kPoll);
    }
}

/// Executes a command without waiting; throws as Execute does.
void Feature::Start() const {
    Vanto::Access(*m_camera, m_node, [&] {
        if (Kind() != FeatureKind::kCommand)
            throw INVALID_ARGUMENT_EXCEPTION("%s is no command", m_node->GetName());
        GenApi::CCommandPtr(m_node)->Execute();
    });
}

/// Whether a command that was started is done; asks the camera.
bool Feature::IsDone() const {
    return Vanto::Access(*m_camera, m_node, [&] {
        if (Kind() != FeatureKind::kCommand)
            throw INVALID_ARGUMENT_EXCEPTION("%s is no command", m_node->GetName());
        return GenApi::CCommandPtr(m_node)->IsDone();
    });
}

/**
 * \brief Have something called when the feature may have changed: its value, its range or its access
 *
 * It is called on the thread that made the change, with no lock of a node map held, so it may use all features. What it
 * throws is thrown by the operation that made the change. It must not destroy the camera.
 */
Subscription Feature::OnChange(std::function<void(const Feature&)> callback) const {
    return Vanto::Access(*m_camera, m_node, [&] {
        // The node owns the callback: it must not keep the camera that owns the node.
        const auto notify = [weak = std::weak_ptr(m_camera), callback = std::move(callback)](GenApi::INode* node) {
            const InsideCallback inside;  // still there when this was the last one to let the camera go
            const auto camera = weak.lock();
            if (!camera)
                return;
            callback(Feature(camera, *node));
        };
        const GenApi::CallbackHandleType handle = GenApi::Register(m_node, notify, GenApi::cbPostOutsideLock);
        return Subscription([weak = std::weak_ptr(m_camera), node = m_node, handle] {
            if (const auto camera = weak.lock())
                node->DeregisterCallback(handle);
        });
    });
}

void Feature::ThrowTooWide(std::int64_t value) const {
    throw FeatureTypeError(
        fmt::format("{}: {} is {}, which does not fit into the type asked for", m_camera->Name(), Name(), value),
        m_camera->Name(), Name());
}

void Feature::ThrowTooWide() const {
    throw FeatureOutOfRange(fmt::format("{}: {}: the value needs more than 63 bits", m_camera->Name(), Name()),
                            m_camera->Name(), Name());
}

}  // namespace Vanto
