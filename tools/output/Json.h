/* SPDX-License-Identifier: Apache-2.0 */
/*
 * JSON as the commands print it
 */
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tools {

struct JsonMember;

/// A value of JSON; objects keep the order in which their members were added. The operations have the names of the
/// standard library's containers. Keeps the library that writes the text out of the commands.
class Json {
public:
    static Json array();
    static Json array(std::initializer_list<Json> values);
    static Json object();

    Json(std::nullptr_t = nullptr);
    Json(bool value);
    Json(double value);
    Json(const char* text);
    Json(std::string text);
    Json(std::string_view text);
    /// An array of texts
    Json(const std::vector<std::string>& texts);
    template <std::signed_integral Number>
    Json(Number value) : Json(Integer{value}) {}
    template <std::unsigned_integral Number>
    Json(Number value) : Json(Natural{value}) {}
    /// An object: {{"Name", "Width"}, {"Value", 640}}
    Json(std::initializer_list<JsonMember> members);
    ~Json();
    Json(const Json& other);
    Json(Json&& other) noexcept;
    Json& operator=(const Json& other);
    Json& operator=(Json&& other) noexcept;

    /// An object's member, which is added where there is none. Other values become an object.
    Json& operator[](std::string_view name);
    /// Throw std::out_of_range when there is none.
    const Json& at(std::string_view name) const;
    const Json& at(std::size_t index) const;
    bool contains(std::string_view name) const;
    bool is_null() const { return std::holds_alternative<std::nullptr_t>(m_value); }
    bool is_text() const { return std::holds_alternative<std::string>(m_value); }
    bool is_array() const { return std::holds_alternative<Array>(m_value); }
    /// Throws std::bad_variant_access unless this is a text.
    const std::string& text() const;

    /// Other values become an array.
    void push_back(Json value);
    Json& back();
    const Json* begin() const;
    const Json* end() const;
    std::size_t size() const;
    bool empty() const { return size() == 0; }

    bool operator==(const char* text) const;
    bool operator==(const std::string& text) const;

private:
    friend struct JsonConversion;
    struct Integer {
        std::int64_t value;
    };
    struct Natural {
        std::uint64_t value;
    };
    using Array = std::vector<Json>;
    using Object = std::vector<JsonMember>;
    explicit Json(Integer value);
    explicit Json(Natural value);

    std::variant<std::nullptr_t, bool, std::int64_t, std::uint64_t, double, std::string, Array, Object> m_value;
};

struct JsonMember {
    std::string name;
    Json value;
};

/// Indented text. Bytes that are no UTF-8 are replaced, so that the result is always valid JSON.
std::string ToText(const Json& json);

/// The same in one line.
std::string ToLine(const Json& json);

}  // namespace tools
