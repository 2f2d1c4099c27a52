/* SPDX-License-Identifier: Apache-2.0 */
/*
 * JSON as the commands print it
 */
#include "output/Json.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>

namespace tools {

namespace {

using Written = nlohmann::ordered_json;

std::string Text(const Written& json, int indent) {
    return json.dump(indent, ' ', false, Written::error_handler_t::replace);
}

template <class Members>
auto Find(Members& members, std::string_view name) {
    return std::find_if(members.begin(), members.end(), [&](const JsonMember& member) { return member.name == name; });
}

}  // namespace

/// Hands values over to the library that writes them.
struct JsonConversion {
    Written operator()(const Json::Array& values) const {
        Written result = Written::array();
        for (const Json& value : values)
            result.push_back(Of(value));
        return result;
    }

    Written operator()(const Json::Object& members) const {
        Written result = Written::object();
        for (const JsonMember& member : members)
            result[member.name] = Of(member.value);
        return result;
    }

    Written operator()(const auto& value) const { return value; }

    static Written Of(const Json& json) { return std::visit(JsonConversion(), json.m_value); }
};

Json Json::array() {
    Json json;
    json.m_value = Array();
    return json;
}

Json Json::array(std::initializer_list<Json> values) {
    Json json;
    json.m_value = Array(values);
    return json;
}

Json Json::object() {
    Json json;
    json.m_value = Object();
    return json;
}

Json::Json(std::nullptr_t) {}

Json::Json(bool value) : m_value(value) {}

Json::Json(double value) : m_value(value) {}

Json::Json(const char* text) : m_value(std::string(text)) {}

Json::Json(std::string text) : m_value(std::move(text)) {}

Json::Json(std::string_view text) : m_value(std::string(text)) {}

Json::Json(const std::vector<std::string>& texts) : m_value(Array(texts.begin(), texts.end())) {}

Json::Json(Integer value) : m_value(value.value) {}

Json::Json(Natural value) : m_value(value.value) {}

Json::Json(std::initializer_list<JsonMember> members) : m_value(Object(members)) {}

Json::~Json() = default;
Json::Json(const Json& other) = default;
Json::Json(Json&& other) noexcept = default;
Json& Json::operator=(const Json& other) = default;
Json& Json::operator=(Json&& other) noexcept = default;

Json& Json::operator[](std::string_view name) {
    if (!std::holds_alternative<Object>(m_value))
        m_value = Object();
    auto& members = std::get<Object>(m_value);
    if (const auto found = Find(members, name); found != members.end())
        return found->value;
    return members.emplace_back(JsonMember{std::string(name), Json()}).value;
}

const Json& Json::at(std::string_view name) const {
    const auto& members = std::get<Object>(m_value);
    const auto found = Find(members, name);
    if (found == members.end())
        throw std::out_of_range("no member " + std::string(name));
    return found->value;
}

const Json& Json::at(std::size_t index) const {
    return std::get<Array>(m_value).at(index);
}

bool Json::contains(std::string_view name) const {
    const auto* members = std::get_if<Object>(&m_value);
    return members != nullptr && Find(*members, name) != members->end();
}

const std::string& Json::text() const {
    return std::get<std::string>(m_value);
}

void Json::push_back(Json value) {
    if (!std::holds_alternative<Array>(m_value))
        m_value = Array();
    std::get<Array>(m_value).push_back(std::move(value));
}

Json& Json::back() {
    return std::get<Array>(m_value).back();
}

const Json* Json::begin() const {
    return std::get<Array>(m_value).data();
}

const Json* Json::end() const {
    return begin() + size();
}

std::size_t Json::size() const {
    return std::get<Array>(m_value).size();
}

bool Json::operator==(const char* text) const {
    const auto* own = std::get_if<std::string>(&m_value);
    return own != nullptr && *own == text;
}

bool Json::operator==(const std::string& text) const {
    return *this == text.c_str();
}

std::string ToText(const Json& json) {
    return Text(JsonConversion::Of(json), 2);
}

std::string ToLine(const Json& json) {
    return Text(JsonConversion::Of(json), -1);
}

}  // namespace tools
