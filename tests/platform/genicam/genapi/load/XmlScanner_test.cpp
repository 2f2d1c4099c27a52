/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Reading XML: what is well-formed and what texts say, compared with a parser that others wrote
 */

#include <pugixml.hpp>
#include <random>

#include "Support.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

namespace {

const std::string kSource = Describe(
    "<!-- a <comment> -- of > two -->\n<Group Comment='one \"two\"'><Integer Name = \"A\"\tNameSpace='Custom' >"
    "<ToolTip>1 &lt; 2 &#65; <![CDATA[<raw> & ]]> more<!-- c --> and</ToolTip><Value >\n 7 </Value ></Integer></Group>"
    "<?process this ?><Category Name='Root'><pFeature>A</pFeature></Category ><Boolean Name='B'><Value/></Boolean>"
    "<IntSwissKnife Name='K'><pVariable Name='X'>A</pVariable><Formula>X + 1</Formula></IntSwissKnife>");

bool IsXml(const std::string& xml) {
    constexpr unsigned kOptions = pugi::parse_cdata | pugi::parse_doctype;
    pugi::xml_document document;
    return static_cast<bool>(document.load_buffer(xml.data(), xml.size(), kOptions, pugi::encoding_utf8));
}

}  // namespace

class Xml : public NodeMapTest {
protected:
    std::string Refusal(const std::string& xml) {
        try {
            map._LoadXMLFromString(gcstring(xml.data(), xml.size()));
        } catch (const RuntimeException& exception) {
            return exception.GetDescription();
        }
        return {};
    }
    bool IsTakenForXml(const std::string& xml) { return Refusal(xml).find("This is not XML") == std::string::npos; }
};

TEST_F(Xml, IsWellFormedWhereOthersSaySo) {
    const std::vector<std::string> texts = {"<RegisterDescription/>",
                                            "<RegisterDescription a='1'b='2'/>",
                                            "<RegisterDescription a=1/>",
                                            "<RegisterDescription a/>",
                                            "<RegisterDescription a='<>'/>",
                                            "<RegisterDescription a='1/>",
                                            "<RegisterDescription / >",
                                            "<RegisterDescription></RegisterDescription x>",
                                            "<RegisterDescription></b>",
                                            "<RegisterDescription><b></RegisterDescription></b>",
                                            "<RegisterDescription/></a>",
                                            "</a>",
                                            "<RegisterDescription></RegisterDescriptions>",
                                            "<RegisterDescription><!-- x</RegisterDescription>",
                                            "<RegisterDescription><![CDATA[ ]]</RegisterDescription>",
                                            "<RegisterDescription><?x</RegisterDescription>",
                                            "<RegisterDescription><!DOCTYPE x></RegisterDescription>",
                                            "<!DOCTYPE x [<!ELEMENT a '>'><!-- > -->]><RegisterDescription/>",
                                            "<!DOCTYPE x [<RegisterDescription/>",
                                            "<RegisterDescription>< a/></RegisterDescription>",
                                            "<RegisterDescription>a > b</RegisterDescription>",
                                            "<RegisterDescription>&</RegisterDescription>",
                                            "<RegisterDescription",
                                            "<",
                                            "<!",
                                            "<?",
                                            "<!-",
                                            "<RegisterDescription a='1' ",
                                            "x",
                                            ""};
    for (const std::string& text : texts)
        EXPECT_EQ(IsTakenForXml(text), IsXml(text)) << text;
}

TEST_F(Xml, ChangedTextsAreWellFormedWhereOthersSaySo) {
    ASSERT_EQ(Refusal(kSource), "");
    std::mt19937 random(4711);
    const std::string characters = "<>/!?-[]'\"= aA&;\n:1";
    const auto below = [&random](std::size_t limit) { return random() % limit; };
    int refused = 0;
    for (int round = 0; round < 20000; ++round) {
        std::string changed = kSource;
        for (std::size_t count = 1 + below(3); count > 0; --count) {
            const std::size_t at = below(changed.size());
            if (below(2) == 0)
                changed[at] = characters[below(characters.size())];
            else
                changed.erase(at, 1 + below(4));
        }
        const std::string refusal = Refusal(changed);
        // Of two faults the first counts: a root that is none is seen before the rest.
        if (!refusal.empty() && refusal.find("This is not XML") == std::string::npos)
            continue;
        ASSERT_EQ(refusal.empty(), IsXml(changed)) << refusal << changed;
        refused += refusal.empty() ? 0 : 1;
    }
    EXPECT_GT(refused, 2000);
}

TEST_F(Xml, TextsSayWhatOthersSay) {
    ASSERT_EQ(Refusal(kSource), "");
    EXPECT_EQ(Node("A")->GetToolTip(), "1 < 2 A <raw> &  more and");
    EXPECT_EQ(Integer("A")->GetValue(), 7);
    EXPECT_EQ(Integer("K")->GetValue(), 8);
    EXPECT_EQ(Refusal(Describe("<Integer Name='A'><ToolTip>a <![CDATA[b]]> <![CDATA[c]]></ToolTip></Integer>")), "");
    EXPECT_EQ(Node("A")->GetToolTip(), "a bc");
}

TEST_F(Xml, ANullByteEndsTheDocument) {
    EXPECT_EQ(Refusal(Describe("<Integer Name='A'><Value>1</Value></Integer>") + std::string(64, '\0') + "<x>"), "");
    EXPECT_EQ(Integer("A")->GetValue(), 1);
    EXPECT_FALSE(IsTakenForXml(Describe(std::string("<Integer Name='A'>\0</Integer>", 29))));
}

TEST_F(Xml, SaysWhatIsWrongAndWhere) {
    EXPECT_EQ(Refusal("<RegisterDescription SchemaMajorVersion='1'>\n<Group></Grup></RegisterDescription>"),
              "Device(2,10): This is not XML: The element 'Group' ends as 'Grup'");
    EXPECT_EQ(Refusal("<RegisterDescription SchemaMajorVersion='1'>\n <Group Comment=1/></RegisterDescription>"),
              "Device(2,17): This is not XML: The value of the attribute 'Comment' has no quotation marks");
    EXPECT_EQ(Refusal("<RegisterDescription SchemaMajorVersion='1'>\n<Group>"),
              "Device(2,8): This is not XML: The element 'Group' has no end");
}

// Nodes of one kind are mostly written alike, so the reader guesses the next element: here each guess is wrong.
TEST_F(Xml, ElementsMayComeInAnyOrder) {
    const std::string tail = "</Integer>";
    ASSERT_EQ(Refusal(Describe("<Integer Name='A'><Min>1</Min><Max>9</Max><Value>5</Value>" + tail +
                               "<Integer Name='B'><Min>2</Min><Value>6</Value><Max>8</Max>" + tail +
                               "<Integer Name='C'><Min >3</Min><MaxX>1</MaxX><Max\n>7</Max><Value>4</Value>" + tail +
                               "<Integer Name='D'><Min/><!-- --><Max>6</Max ><Valu>1</Valu><Value>6</Value>" + tail)),
              "");
    const auto expect = [this](const char* name, std::int64_t value, std::int64_t max) {
        EXPECT_EQ(Integer(name)->GetValue(), value) << name;
        EXPECT_EQ(Integer(name)->GetMax(), max) << name;
    };
    expect("A", 5, 9);
    expect("B", 6, 8);
    expect("C", 4, 7);
    EXPECT_EQ(Warnings(wkUnknownElement), 2);
    EXPECT_FALSE(
        IsTakenForXml(Describe("<Integer Name='A'><Min>1</Min>" + tail + "<Integer Name='B'><Min>1</Mi>" + tail)));
}

// References are looked for from one to the next one: texts before, between and behind them have none.
TEST_F(Xml, ReferencesAreReplacedWhereTheyStand) {
    ASSERT_EQ(Refusal(Describe("<Integer Name='A'><ToolTip>a</ToolTip><Description>&lt;</Description></Integer>"
                               "<Integer Name='B'><ToolTip>&amp;lt;</ToolTip><Description>0123456789abcdef &gt; ;"
                               "</Description><Value>1</Value></Integer>"
                               "<Integer Name='&#67;'><ToolTip>last</ToolTip><Value>&#49;2</Value></Integer>")),
              "");
    EXPECT_EQ(Node("A")->GetToolTip(), "a");
    EXPECT_EQ(Node("A")->GetDescription(), "<");
    EXPECT_EQ(Node("B")->GetToolTip(), "&lt;");
    EXPECT_EQ(Node("B")->GetDescription(), "0123456789abcdef > ;");
    EXPECT_EQ(Node("C")->GetToolTip(), "last");
    EXPECT_EQ(Integer("C")->GetValue(), 12);
}

}  // namespace genapitest
