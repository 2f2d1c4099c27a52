/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Debian's libaravis as an independent engine: node maps over memory of ours
 */

#include "AravisEngine.h"

#include <arv.h>

namespace aravistest {

namespace {

/// A device of the engine whose registers are ours.
struct MemoryDevice {
    ArvDevice parent;
    IMemory* memory;
};

std::uint32_t BigEndian(const std::uint8_t* bytes) {
    return (std::uint32_t{bytes[0]} << 24) | (std::uint32_t{bytes[1]} << 16) | (std::uint32_t{bytes[2]} << 8) |
           bytes[3];
}

IMemory& MemoryOf(ArvDevice* device) {
    return *reinterpret_cast<MemoryDevice*>(device)->memory;
}

gboolean ReadMemory(ArvDevice* device, guint64 address, guint32 size, void* buffer, GError**) {
    MemoryOf(device).ReadMemory(address, buffer, size);
    return TRUE;
}

gboolean WriteMemory(ArvDevice* device, guint64 address, guint32 size, void* buffer, GError**) {
    MemoryOf(device).WriteMemory(address, buffer, size);
    return TRUE;
}

gboolean ReadRegister(ArvDevice* device, guint64 address, guint32* value, GError**) {
    std::uint8_t bytes[4] = {};
    MemoryOf(device).ReadMemory(address, bytes, 4);
    *value = BigEndian(bytes);
    return TRUE;
}

gboolean WriteRegister(ArvDevice* device, guint64 address, guint32 value, GError**) {
    std::uint8_t bytes[4] = {};
    for (unsigned i = 0; i < 4; ++i)
        bytes[i] = static_cast<std::uint8_t>(value >> (8 * (3 - i)));
    MemoryOf(device).WriteMemory(address, bytes, 4);
    return TRUE;
}

void InitClass(gpointer type, gpointer) {
    auto* device = static_cast<ArvDeviceClass*>(type);
    device->read_memory = ReadMemory;
    device->write_memory = WriteMemory;
    device->read_register = ReadRegister;
    device->write_register = WriteRegister;
}

GType DeviceType() {
    static const GType type =
        g_type_register_static_simple(ARV_TYPE_DEVICE, "VantoMemoryDevice", sizeof(ArvDeviceClass), InitClass,
                                      sizeof(MemoryDevice), nullptr, static_cast<GTypeFlags>(0));
    return type;
}

// Runs a question to the engine; nothing when it set an error.
template <class Ask>
auto Answer(Ask&& ask) -> std::optional<decltype(ask(nullptr))> {
    GError* error = nullptr;
    auto value = ask(&error);
    if (error == nullptr)
        return value;
    g_error_free(error);
    return std::nullopt;
}

std::optional<std::string> TextAnswer(std::optional<const char*> text) {
    return text && *text != nullptr ? std::optional<std::string>(*text) : std::nullopt;
}

}  // namespace

AravisEngine::AravisEngine(const std::string& xml, IMemory& memory) {
    m_device = g_object_new(DeviceType(), nullptr);
    static_cast<MemoryDevice*>(m_device)->memory = &memory;
    m_genicam = arv_gc_new(static_cast<ArvDevice*>(m_device), xml.data(), xml.size());
    if (m_genicam == nullptr)
        return;
    arv_gc_set_register_cache_policy(ARV_GC(m_genicam), ARV_REGISTER_CACHE_POLICY_ENABLE);
    arv_gc_set_range_check_policy(ARV_GC(m_genicam), ARV_RANGE_CHECK_POLICY_ENABLE);
    arv_gc_set_access_check_policy(ARV_GC(m_genicam), ARV_ACCESS_CHECK_POLICY_ENABLE);
}

AravisEngine::~AravisEngine() {
    g_clear_object(&m_genicam);
    g_clear_object(&m_device);
}

NodeHandle AravisEngine::Node(const char* name) const {
    return arv_gc_get_node(ARV_GC(m_genicam), name);
}

bool AravisEngine::IsInteger(NodeHandle node) {
    return ARV_IS_GC_INTEGER(node);
}
bool AravisEngine::IsFloat(NodeHandle node) {
    return ARV_IS_GC_FLOAT(node);
}
bool AravisEngine::IsString(NodeHandle node) {
    return ARV_IS_GC_STRING(node);
}
bool AravisEngine::IsBoolean(NodeHandle node) {
    return ARV_IS_GC_BOOLEAN(node);
}
bool AravisEngine::IsEnumeration(NodeHandle node) {
    return ARV_IS_GC_ENUMERATION(node);
}

std::optional<std::int64_t> AravisEngine::Integer(NodeHandle node) {
    return Answer(
        [node](GError** error) { return std::int64_t{arv_gc_integer_get_value(ARV_GC_INTEGER(node), error)}; });
}

std::optional<double> AravisEngine::Float(NodeHandle node) {
    return Answer([node](GError** error) { return arv_gc_float_get_value(ARV_GC_FLOAT(node), error); });
}

std::optional<bool> AravisEngine::Boolean(NodeHandle node) {
    return Answer([node](GError** error) { return arv_gc_boolean_get_value(ARV_GC_BOOLEAN(node), error) != FALSE; });
}

std::optional<std::string> AravisEngine::Text(NodeHandle node) {
    return TextAnswer(Answer([node](GError** error) { return arv_gc_string_get_value(ARV_GC_STRING(node), error); }));
}

std::optional<std::string> AravisEngine::Symbolic(NodeHandle node) {
    return TextAnswer(Answer(
        [node](GError** error) { return arv_gc_enumeration_get_string_value(ARV_GC_ENUMERATION(node), error); }));
}

std::optional<std::int64_t> AravisEngine::IntegerMin(NodeHandle node) {
    return Answer([node](GError** error) { return std::int64_t{arv_gc_integer_get_min(ARV_GC_INTEGER(node), error)}; });
}

std::optional<std::int64_t> AravisEngine::IntegerMax(NodeHandle node) {
    return Answer([node](GError** error) { return std::int64_t{arv_gc_integer_get_max(ARV_GC_INTEGER(node), error)}; });
}

std::optional<bool> AravisEngine::IsAvailable(NodeHandle node) {
    return Answer(
        [node](GError** error) { return arv_gc_feature_node_is_available(ARV_GC_FEATURE_NODE(node), error) != FALSE; });
}

std::optional<bool> AravisEngine::IsImplemented(NodeHandle node) {
    return Answer([node](GError** error) {
        return arv_gc_feature_node_is_implemented(ARV_GC_FEATURE_NODE(node), error) != FALSE;
    });
}

bool AravisEngine::SetInteger(NodeHandle node, std::int64_t value) {
    return Answer([=](GError** error) {
               arv_gc_integer_set_value(ARV_GC_INTEGER(node), value, error);
               return true;
           })
        .has_value();
}

std::optional<std::string> AravisEngine::AsString(NodeHandle node) {
    return TextAnswer(Answer(
        [node](GError** error) { return arv_gc_feature_node_get_value_as_string(ARV_GC_FEATURE_NODE(node), error); }));
}

std::vector<const char*> AravisEngine::Features(NodeHandle category) {
    std::vector<const char*> names;
    if (!ARV_IS_GC_CATEGORY(category))
        return names;
    for (const GSList* item = arv_gc_category_get_features(ARV_GC_CATEGORY(category)); item != nullptr;
         item = item->next)
        names.push_back(static_cast<const char*>(item->data));
    return names;
}

std::optional<double> AravisEngine::EvaluateFloat(const std::string& formula) {
    ArvEvaluator* evaluator = arv_evaluator_new(formula.c_str());
    const auto result = Answer([&](GError** error) { return arv_evaluator_evaluate_as_double(evaluator, error); });
    g_object_unref(evaluator);
    return result;
}

std::optional<std::int64_t> AravisEngine::EvaluateInteger(const std::string& formula) {
    ArvEvaluator* evaluator = arv_evaluator_new(formula.c_str());
    const auto result =
        Answer([&](GError** error) { return std::int64_t{arv_evaluator_evaluate_as_int64(evaluator, error)}; });
    g_object_unref(evaluator);
    return result;
}

}  // namespace aravistest
