/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of JSON: each command that prints data has the members that docs/json.md promises, and no others
 */
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <regex>
#include <set>

#include "PlayedCameras.h"

namespace {

using nlohmann::json;
using Names = std::set<std::string>;
using Words = std::vector<std::string>;

/// The members that a row of the page names: "`Name`?" may be missing.
struct Row {
    Names promised;
    Names named;
    bool hasMore = false;  ///< "...": there are others, too
};

Row RowFrom(std::string text) {
    Row row;
    const auto addTo = [](Names& names, const std::string& words, const char* pattern) {
        const std::regex expression(pattern);
        for (std::sregex_iterator word(words.begin(), words.end(), expression), end; word != end; ++word)
            names.insert((*word)[1]);
    };
    addTo(row.named, text, "`([A-Z][A-Za-z0-9]*)`");
    text = std::regex_replace(text, std::regex("\\([^()]*\\)"), "");
    row.hasMore = text.find("...") != std::string::npos || text.find("attributes") != std::string::npos;
    addTo(row.promised, text, "`([A-Z][A-Za-z0-9]*)`(?!\\?)");
    return row;
}

/// The rows by the commands that they begin with.
std::map<std::string, Row> RowsOfThePage() {
    std::map<std::string, Row> rows;
    std::ifstream page(VANTO_JSON_PAGE);
    for (std::string line; std::getline(page, line);) {
        std::smatch parts;
        if (!std::regex_match(line, parts, std::regex("\\| (`[a-z][^|]*) \\| (.*) \\|")))
            continue;
        const std::string commands = parts[1];
        const std::regex quoted("`([^`]+)`");
        for (std::sregex_iterator one(commands.begin(), commands.end(), quoted), end; one != end; ++one)
            rows[(*one)[1]] = RowFrom(parts[2]);
    }
    return rows;
}

void AddKeys(const json& value, Names& keys) {
    for (const auto& [key, inner] : value.items()) {
        if (value.is_object())
            keys.insert(key);
        if (inner.is_structured())  // anything else has itself as its only item
            AddKeys(inner, keys);
    }
}

struct Shape {
    const char* row;
    Words command;
};

class JsonOf : public testing::TestWithParam<Shape> {
protected:
    static Names KeysOf(const tools_test::RunResult& run) {
        Names keys;
        AddKeys(json::parse(run.out), keys);
        return keys;
    }

    /// "%" stands for the folder of the cameras.
    tools_test::RunResult Run(Words command) const {
        for (std::string& word : command)
            if (word.starts_with("%"))
                word.replace(0, 1, cameras.Folder().string());
        command.emplace_back("--json");
        return cameras.Run(command);
    }

    const tools_test::PlayedCameras cameras{{"cam0,serial=S0"}, "SaperaSimulated"};
};

TEST_P(JsonOf, HasTheMembersThatAreWrittenDown) {
    const std::map<std::string, Row> rows = RowsOfThePage();
    ASSERT_TRUE(rows.contains(GetParam().row));
    Row row = rows.at(GetParam().row);
    std::ofstream(cameras.Folder() / "refused.txt") << "[LineSelector=Line1]\nLineInverter=maybe\n";
    cameras.Run({"xml", "0", "-o", (cameras.Folder() / "camera.xml").string()});
    if (GetParam().row == std::string("info"))  // "as above"
        row.named.insert(rows.at("features").named.begin(), rows.at("features").named.end());
    if (GetParam().row == std::string("ports"))
        row.named.insert(rows.at("config show").named.begin(), rows.at("config show").named.end());
    const Names keys = KeysOf(Run(GetParam().command));
    EXPECT_THAT(keys, testing::IsSupersetOf(row.promised));
    if (!row.hasMore) {
        EXPECT_THAT(row.named, testing::IsSupersetOf(keys));
    }
}

std::string NameOf(const testing::TestParamInfo<Shape>& shape) {
    return std::regex_replace(std::string(shape.param.row), std::regex("[^a-z]+"), "_");
}

INSTANTIATE_TEST_SUITE_P(
    All, JsonOf,
    testing::Values(Shape{"list", {"list"}}, Shape{"ports", {"ports"}}, Shape{"features", {"features", "0"}},
                    Shape{"info", {"info", "0", "Width", "TriggerSource", "LineSelector"}},
                    Shape{"watch", {"watch", "0", "Width", "--count", "1"}},
                    Shape{"grab", {"grab", "0", "--format", "none"}}, Shape{"rate", {"rate", "0"}},
                    Shape{"read", {"read", "0", "4", "4"}}, Shape{"config path", {"config", "path"}},
                    Shape{"config show", {"config", "show"}}, Shape{"config check", {"config", "check"}},
                    Shape{"describe --check", {"describe", "%/camera.xml", "--check"}},
                    Shape{"describe", {"describe", "%/camera.xml"}}, Shape{"load", {"load", "0", "%/refused.txt"}},
                    Shape{"doctor", {"doctor"}}),
    &NameOf);

}  // namespace
