/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Both engines say the same; docs/genapi-differences.md lists where they do not, and why
 */

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <sstream>

#include "Comparison.h"

using namespace GenApi;

namespace aravistest {

namespace {

std::string ReadFile(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

bool IsOneOf(const std::string& name, std::initializer_list<const char*> names) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

// What this engine refuses to call a value: results that do not fit, and integers that stand for nothing.
bool IsRefusedWithReason(const std::string& ours) {
    static constexpr const char* kReasons[] = {
        "Division by zero in a formula",         "Result of a", "does not fit into", "Shift by",
        "stands neither for true nor for false", "has no entry"};
    return std::any_of(std::begin(kReasons), std::end(kReasons),
                       [&](const char* reason) { return ours.find(reason) != std::string::npos; });
}

// The simulator's description is a template. Names between two @ stand for addresses and numbers: each gets one of its
// own. Nodes that line cameras have in another form than area cameras are left out.
std::string FilledIn(std::string xml) {
    const std::string end = "<!--end-->";
    for (std::size_t at = xml.find("<!--if line-->"); at != std::string::npos; at = xml.find("<!--if line-->", at))
        xml.erase(at, xml.find(end, at) + end.size() - at);
    std::map<std::string, std::string> addresses;
    for (std::size_t at = xml.find('@'); at != std::string::npos; at = xml.find('@', at)) {
        const std::size_t length = xml.find('@', at + 1) + 1 - at;
        std::string& address = addresses[xml.substr(at, length)];
        if (address.empty())
            address = std::to_string(0x1000 + 0x200 * addresses.size());
        xml.replace(at, length, address);
    }
    return xml;
}

// The differences that docs/genapi-differences.md explains.
bool IsExplained(const Difference& difference) {
    if (difference.what == "value" && IsRefusedWithReason(difference.ours))
        return true;
    const bool isRange = difference.what == "min" || difference.what == "max";
    // Formulas have no range there.
    if (isRange && difference.theirs == "error")
        return true;
    // Nor have converters the range of the node behind.
    if (isRange && difference.node.find("Converter") != std::string::npos)
        return true;
    // Availability is that of the node alone there; here what a value comes from counts as well.
    const bool isAccess = difference.what == "available" || difference.what == "implemented";
    if (isAccess && difference.ours == "no" && difference.needsWhatIsNotThere)
        return true;
    // Registers without a port, and those of chunks and events without a buffer.
    const std::string& node = difference.node;
    return difference.what == "implemented" && difference.ours == "no" &&
           (IsOneOf(node, {"ROIntRegisterA", "IntRegisterA", "IntRegisterB"}) || node.substr(0, 5) == "Chunk" ||
            node.substr(0, 19) == "PLC_Interrupt_FIFO0");
}

void ExpectAgreement(const std::string& xml, unsigned pattern) {
    for (const Difference& difference : Compare(xml, pattern)) {
        if (!IsExplained(difference))
            ADD_FAILURE() << "pattern " << pattern << " " << difference.Text();
    }
}

class RealFile : public testing::TestWithParam<const char*> {};
class Generated : public testing::TestWithParam<unsigned> {};

}  // namespace

TEST_P(RealFile, BothEnginesAgree) {
    const std::filesystem::path file = std::filesystem::path(VANTO_TEST_DESCRIPTIONS) / GetParam();
    if (!std::filesystem::exists(file))
        GTEST_SKIP() << file << " is not there";
    for (unsigned pattern = 0; pattern < 4; ++pattern)
        ExpectAgreement(ReadFile(file), pattern);
}

INSTANTIATE_TEST_SUITE_P(Files, RealFile,
                         testing::Values("aravis_fakecamera.xml", "aravis_testgenicam.xml", "firstlight_cred2.xml",
                                         "imperx_b1020.xml", "pco_1600.xml", "vieworks_vnp604.xml"));

TEST(OwnFile, BothEnginesAgree) {
    for (const char* name :
         {"/VantoCLSer/descriptions/CLSerTransportLayer.xml", "/VantoCLSer/descriptions/CLSerStreamGrabber.xml",
          "/camera/simulator/descriptions/Heron.xml"}) {
        const std::string xml = FilledIn(ReadFile(std::string(VANTO_SOURCE_DIR) + name));
        ASSERT_FALSE(xml.empty()) << name;
        for (unsigned pattern = 0; pattern < 4; ++pattern)
            ExpectAgreement(xml, pattern);
    }
}

TEST_P(Generated, BothEnginesAgree) {
    const std::string xml = RandomDescription(GetParam());
    for (unsigned pattern = 0; pattern < 2; ++pattern)
        ExpectAgreement(xml, pattern);
}

TEST_P(Generated, BothEnginesWriteTheSame) {
    for (const Difference& difference : CompareWrites(RandomDescription(GetParam()), GetParam() % 3))
        ADD_FAILURE() << difference.Text();
}

INSTANTIATE_TEST_SUITE_P(Seeds, Generated, testing::Range(0U, 300U));

namespace {

/// A formula without brackets, so that precedence decides.
std::string RandomFormula(std::mt19937& random, bool isFloating) {
    static constexpr const char* kOperators[] = {"+",  "-",  "*", "/",  "%", "**", "&",  "|", "^",
                                                 "<<", ">>", "=", "<>", "<", ">",  "<=", ">="};
    static constexpr const char* kFunctions[] = {"SGN",  "NEG", "ABS", "TRUNC", "FLOOR", "CEIL", "ROUND",
                                                 "SQRT", "SIN", "COS", "EXP",   "LN",    "LG",   "ATAN"};
    const auto below = [&random](unsigned limit) { return static_cast<unsigned>(random() % limit); };
    std::string formula;
    for (unsigned term = 0; term < 1 + below(4); ++term) {
        // The remainder of fractions is one of the differences.
        const char* const operation = kOperators[below(17)];
        if (!formula.empty())
            formula += std::string(" ") + (isFloating && *operation == '%' ? "+" : operation) + " ";
        formula += below(6) == 0 ? "-" : (below(8) == 0 ? "~" : "");
        const std::string number = std::to_string(below(9));
        formula += isFloating && below(5) == 0 ? kFunctions[below(14)] + ("(" + number + ")") : number;
    }
    return formula;
}

std::string Escaped(const std::string& text) {
    std::string result;
    for (const char character : text)
        result += character == '&' ? "&amp;" : character == '<' ? "&lt;" : std::string(1, character);
    return result;
}

INode* FormulaNode(CNodeMapRef& map, const std::string& formula, const std::string& kind) {
    map._LoadXMLFromString("<RegisterDescription SchemaMajorVersion='1' SchemaMinorVersion='1'><" + kind +
                           " Name='F'><Formula>" + Escaped(formula) + "</Formula></" + kind +
                           "></RegisterDescription>");
    return map._GetNode("F");
}

}  // namespace

// What does not fit is an exception here and some number there: those are left out.
TEST(Formulas, OfIntegersAgree) {
    std::mt19937 random(1);
    CNodeMapRef map;
    int compared = 0;
    for (int i = 0; i < 4000; ++i) {
        const std::string formula = RandomFormula(random, false);
        CIntegerPtr node = FormulaNode(map, formula, "IntSwissKnife");
        try {
            ASSERT_EQ(std::optional(node->GetValue()), AravisEngine::EvaluateInteger(formula)) << formula;
            ++compared;
        } catch (const GenICam::OutOfRangeException&) {
            continue;
        }
    }
    EXPECT_GT(compared, 2000);
}

TEST(Formulas, OfNumbersAgree) {
    std::mt19937 random(2);
    CNodeMapRef map;
    int compared = 0;
    for (int i = 0; i < 4000; ++i) {
        const std::string formula = RandomFormula(random, true);
        CFloatPtr node = FormulaNode(map, formula, "SwissKnife");
        try {
            const double ours = node->GetValue();
            const auto theirs = AravisEngine::EvaluateFloat(formula);
            ASSERT_TRUE(theirs.has_value()) << formula;
            ASSERT_NEAR(ours, *theirs, std::fabs(ours) * 1e-12) << formula;
            ++compared;
        } catch (const GenICam::OutOfRangeException&) {
            continue;
        }
    }
    EXPECT_GT(compared, 2000);
}

}  // namespace aravistest
