/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of port configuration files that are damaged, hostile, or changed while they are read
 */

#include <atomic>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <thread>
#include <xercesc/util/BinInputStream.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "PortConfigurationInputFixture.h"
#include "VantoCLSer/configuration/PortConfiguration.h"
#include "clbindings/BoundedXmlFile.h"
#include "tests/VantoCLSer/Fixture.h"
#include "tests/VantoCLSer/configuration/LocalText.h"

namespace Vanto {
namespace {

using namespace clser_test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr char kTlSource[] = "VantoCLSer/VantoCLSerTL";
constexpr char kHelperSource[] = "include/vanto/internal/VantoXercesHelper";

const Thrown kTooMuch{"RuntimeException",
                      "Failed to parse CL binding file: its entities and default values expand to more than 1048576 "
                      "characters.",
                      kTlSource};

std::string Repeated(const std::string& text, int times) {
    std::string result;
    while (times-- > 0)
        result += text;
    return result;
}

TEST_F(PortConfigurationInput, MalformedTellsFileLineAndColumn) {
    const Thrown thrown = Refuse("<r>\n  <Port>\n</r>");
    EXPECT_EQ(thrown.type, "RuntimeException");
    EXPECT_EQ(thrown.source, kHelperSource);
    EXPECT_EQ(thrown.description, "Failed to parse XML file '" + ConfigurationPath() +
                                      "' : 'expected end of tag 'Port'', line: 3 column: 3");
}

TEST_F(PortConfigurationInput, MalformedIsLogged) {
    const Thrown thrown = Refuse("<r>");
    EXPECT_THAT(LoggedIn(kTl),
                ElementsAre(Logged{kDebug, "Trying to load CLBindings from file '%s'", {ConfigurationPath()}},
                            Logged{kError, "Could not read CLBindings (%s)", {thrown.description}}));
}

TEST_F(PortConfigurationInput, MalformedInManyWays) {
    for (const char* text :
         {"", " ", "no xml", "<r>", "<r></s>", "<r/><r/>", "<r>&unknown;</r>", "<r a=1/>", "<r>\x01</r>", "\xff\xfe<",
          "<?xml version=\"1.0\" encoding=\"nonsense\"?><r/>", "<?xml version=\"9\"?><r/>", "<r><![CDATA[</r>",
          "<r><!-- -- --></r>", "<!DOCTYPE r [", "<r>\xc3\x28</r>", "<?xml version=\"1.0\"?>"})
        EXPECT_THAT(Refuse(text).description, StartsWith("Failed to parse XML file '")) << text;
}

TEST_F(PortConfigurationInput, WithZeroBytes) {
    EXPECT_THAT(Refuse(std::string(1000, '\0')).description, StartsWith("Failed to parse XML file '"));
    EXPECT_THAT(Refuse("<r>" + std::string(1, '\0') + "</r>").description, StartsWith("Failed to parse XML file '"));
}

TEST_F(PortConfigurationInput, ThatIsAFolder) {
    std::filesystem::create_directory(ConfigurationPath());
    EXPECT_EQ(Refuse(), (Thrown{"RuntimeException",
                                "Failed to parse CL binding file: '" + ConfigurationPath() +
                                    "' is a folder or a device, not a file.",
                                kTlSource}));
    EXPECT_EQ(CountFormat("Could not read CLBindings (%s)"), 1u);
}

TEST_F(PortConfigurationInput, OfAHundredMegabytes) {
    m_folder.Write(kFileName, "<r>" + PortElement("a") + "</r>");
    std::filesystem::resize_file(ConfigurationPath(), 100u << 20);
    EXPECT_EQ(Refuse(), (Thrown{"RuntimeException",
                                "Failed to parse CL binding file: '" + ConfigurationPath() +
                                    "' is longer than the 1048576 bytes that a port configuration may have.",
                                kTlSource}));
}

TEST_F(PortConfigurationInput, OfTheGreatestLength) {
    const std::string content = "<r>" + PortElement("a") + "</r>";
    const std::string blanks(BoundedXmlFile::kMaxSize - content.size(), ' ');
    EXPECT_EQ(Read(content + blanks).size(), 1u);
    EXPECT_THAT(Refuse(content + blanks + " ").description, HasSubstr("longer than"));
}

TEST_F(PortConfigurationInput, ThatGrowsWhileItIsRead) {
    m_folder.Write(kFileName, "<r/>");
    xercesc::XMLPlatformUtils::Initialize();
    {
        const BoundedXmlFile file(ConfigurationPath());
        std::filesystem::resize_file(ConfigurationPath(), 100u << 20);
        const std::unique_ptr<xercesc::BinInputStream> stream(file.makeStream());
        const Thrown thrown = ThrownBy([&] {
            XMLByte buffer[4096];
            while (stream->readBytes(buffer, sizeof buffer) != 0) {
            }
        });
        EXPECT_THAT(thrown.description, HasSubstr("longer than"));
        EXPECT_LE(stream->curPos(), BoundedXmlFile::kMaxSize + 4096);
    }
    xercesc::XMLPlatformUtils::Terminate();
}

TEST_F(PortConfigurationInput, WithAnEntityBomb) {
    std::string entities = "<!ENTITY e0 'x'>";
    for (int level = 1; level < 30; ++level) {
        const std::string inner = "&e" + std::to_string(level - 1) + ";";
        entities += "<!ENTITY e" + std::to_string(level) + " '" + inner + inner + "'>";
    }
    const Thrown thrown = Refuse("<!DOCTYPE r [" + entities + "]><r><Port><ID>&e29;</ID></Port></r>");
    EXPECT_EQ(thrown.source, kHelperSource);
    EXPECT_THAT(thrown.description, HasSubstr("entity expansions"));
}

TEST_F(PortConfigurationInput, WithABombOfParameterEntities) {
    std::string entities = "<!ENTITY % p0 '<!-- -->'>";
    for (int level = 1; level < 40; ++level) {
        const std::string inner = "&#37;p" + std::to_string(level - 1) + ";";
        entities += "<!ENTITY % p" + std::to_string(level) + " '" + inner + inner + "'>";
    }
    EXPECT_EQ(Refuse("<!DOCTYPE r [" + entities + "%p39;]><r/>"),
              (Thrown{"RuntimeException", "Failed to parse CL binding file: the parameter entity 'p0' is not allowed.",
                      kTlSource}));
}

TEST_F(PortConfigurationInput, WithOneHugeEntityManyTimes) {
    std::string references;
    for (int count = 0; count < 101; ++count)
        references += "&e;";
    const std::string entity = "<!DOCTYPE r [<!ENTITY e '" + std::string(10485, 'x') + "'>]>";
    EXPECT_THAT(Refuse(entity + "<r><Port><ID>" + references + "</ID></Port></r>").description,
                HasSubstr("entity expansions"));
    EXPECT_THAT(Refuse(entity + "<r><Port a='" + references + "'/></r>").description, HasSubstr("entity expansions"));
}

TEST_F(PortConfigurationInput, WithAnEntityThatIsTooLong) {
    EXPECT_EQ(Refuse("<!DOCTYPE r [<!ENTITY e '" + std::string(10486, 'x') + "'>]><r/>"),
              (Thrown{"RuntimeException",
                      "Failed to parse CL binding file: the entity 'e' is longer than 10485 characters.", kTlSource}));
}

// Each of them twice the one before, in a value that nobody counts.
TEST_F(PortConfigurationInput, WithABombInADefaultValue) {
    std::string entities = "<!ENTITY e0 ''>";
    for (int level = 1; level < 40; ++level) {
        const std::string inner = "&e" + std::to_string(level - 1) + ";";
        entities += "<!ENTITY e" + std::to_string(level) + " '" + inner + inner + "'>";
    }
    EXPECT_EQ(Refuse("<!DOCTYPE r [" + entities + "<!ATTLIST r a CDATA '&e39;'>]><r/>"),
              (Thrown{"RuntimeException",
                      "Failed to parse CL binding file: attributes of 'r' are declared behind entities, which is not "
                      "allowed.",
                      kTlSource}));
}

TEST_F(PortConfigurationInput, WithDefaultValuesBeforeEntities) {
    EXPECT_EQ(
        Read("<!DOCTYPE r [<!ATTLIST Port a CDATA 'x'><!ENTITY e 'p'>]><r>" + PortElement("&e;") + "</r>").at(0).id,
        "p");
}

TEST_F(PortConfigurationInput, WithLargeEntitiesAsOftenAsIsAllowed) {
    std::string references;
    for (int count = 0; count < 99; ++count)
        references += "&e;";
    for (const char* content :
         {"x", "<Port/>", "<!---->", "<!--comment-->", "<?a?>", "<?target data?>", "<![CDATA[data]]>", "<a b=''/>"}) {
        const std::string entity = Repeated(content, 10485 / static_cast<int>(std::strlen(content)));
        const std::string type = "<!DOCTYPE r [<!ENTITY e \"" + entity + "\">]>";
        EXPECT_THAT(Read(type + "<r>" + references + "</r>"), IsEmpty()) << content;
        EXPECT_EQ(Refuse(type + "<r>" + std::string(900000, ' ') + references + "</r>"), kTooMuch) << content;
    }
}

TEST_F(PortConfigurationInput, WithManyEmptyDefaultValuesOnManyElements) {
    for (const int count : {1000, 2000}) {
        std::string attributes;
        for (int index = 0; index < count; ++index)
            attributes += " a" + std::to_string(index) + " CDATA ''";
        EXPECT_EQ(Refuse("<!DOCTYPE r [<!ATTLIST Port" + attributes + ">]><r>" + Repeated("<Port/>", count) + "</r>"),
                  kTooMuch);
    }
}

TEST_F(PortConfigurationInput, WithManyCommentsInAnEntity) {
    EXPECT_THAT(
        Refuse("<!DOCTYPE r [<!ENTITY e '" + Repeated("<!---->", 20000) + "'>]><r>" + Repeated("&e;", 99) + "</r>")
            .description,
        HasSubstr("longer than 10485 characters"));
}

TEST_F(PortConfigurationInput, WithALargeDefaultValueOnManyElements) {
    const std::string types = "<!DOCTYPE r [<!ATTLIST Port a CDATA '" + std::string(500000, 'x') + "'>]>";
    EXPECT_THAT(Refuse(types + "<r>" + Repeated("<Port/>", 50000) + "</r>").description,
                HasSubstr("expand to more than"));
}

TEST_F(PortConfigurationInput, WithAsManyPortsAsFit) {
    EXPECT_EQ(Read("<r>" + Repeated("<Port><ID>a</ID></Port>", 45000) + "</r>").size(), 45000u);
}

TEST_F(PortConfigurationInput, WithPortsNestedDeeply) {
    constexpr int kDepth = 60000;
    EXPECT_THAT(Read("<r>" + Repeated("<Port>", kDepth) + Repeated("</Port>", kDepth) + "</r>"), IsEmpty());
}

TEST_F(PortConfigurationInput, WithPortsInTheFieldsOfPorts) {
    constexpr int kDepth = 40000;
    EXPECT_EQ(Refuse("<r>" + Repeated("<Port><ID>", kDepth) + Repeated("</ID></Port>", kDepth) + "</r>"),
              (Thrown{"RuntimeException",
                      "Failed to process CL binding file: too many ports are nested within each other.", kTlSource}));
}

TEST_F(PortConfigurationInput, WithAnEntityThatHoldsItself) {
    EXPECT_THAT(Refuse("<!DOCTYPE r [<!ENTITY a '&b;'><!ENTITY b '&a;'>]><r>&a;</r>").description,
                StartsWith("Failed to parse XML file '"));
}

TEST_F(PortConfigurationInput, WithAnExternalEntityReadsNothingElse) {
    m_folder.Write("secret", "<ID>stolen</ID>");
    const Thrown thrown = Refuse("<!DOCTYPE r [<!ENTITY e SYSTEM 'file://" + (m_folder / "secret") +
                                 "'>]><r><Port>&e;<ID>p</ID></Port></r>");
    EXPECT_THAT(thrown.description, StartsWith("Failed to parse XML file '"));
    EXPECT_THAT(thrown.description, testing::Not(HasSubstr("stolen")));
}

TEST_F(PortConfigurationInput, WithAnExternalDocumentTypeReadsNothingElse) {
    // Whoever read it would stumble over it.
    m_folder.Write("other.dtd", "<!ENTITY broken");
    const PortConfigurationList list = Read("<!DOCTYPE r SYSTEM 'file://" + (m_folder / "other.dtd") + "'><r>" +
                                            PortElement("p", "<Model>m</Model>") + "</r>");
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].model, "m");
}

TEST_F(PortConfigurationInput, WithADocumentTypeThatItDoesNotKeepTo) {
    EXPECT_EQ(Read("<!DOCTYPE other [<!ELEMENT other EMPTY>]><r>" + PortElement("p") + "</r>").size(), 1u);
}

TEST_F(PortConfigurationInput, NestedDeeply) {
    constexpr int kDepth = 140000;
    std::string text = "<r><Port><ID>";
    for (int level = 0; level < kDepth; ++level)
        text += "<a>";
    text += "deep";
    for (int level = 0; level < kDepth; ++level)
        text += "</a>";
    const PortConfigurationList list = Read(text + "</ID></Port></r>");
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].id, "deep");
}

TEST_F(PortConfigurationInput, WithADeepContentModel) {
    const std::string open(400000, '(');
    const std::string close(400000, ')');
    EXPECT_NO_THROW(try {
        Read("<!DOCTYPE r [<!ELEMENT r " + open + "a" + close + ">]><r/>");
    } catch (const GenICam::RuntimeException&){});
}

TEST_F(PortConfigurationInput, LeavesTheXmlLibraryToTheApplication) {
    xercesc::XMLPlatformUtils::Initialize();
    Read("<r/>");
    EXPECT_EQ(Refuse("<r>").type, "RuntimeException");
    EXPECT_NE(xercesc::XMLPlatformUtils::fgTransService, nullptr);
    xercesc::XMLPlatformUtils::Terminate();
    EXPECT_EQ(xercesc::XMLPlatformUtils::fgTransService, nullptr);
}

// Runs while a reader reads a number of times.
class Writer {
public:
    template <class Step>
    explicit Writer(Step step)
        : m_thread([this, step] {
              for (int round = 0; !m_isOver; ++round)
                  step(round);
          }) {}
    ~Writer() {
        m_isOver = true;
        m_thread.join();
    }

private:
    std::atomic<bool> m_isOver{false};
    std::thread m_thread;
};

TEST_F(PortConfigurationInput, ReplacedWhileItIsReadIsOneOrTheOther) {
    const std::string three = "<r>" + PortElement("a") + PortElement("b") + PortElement("c") + "</r>";
    const std::string one = "<r>" + PortElement("a") + std::string(100000, ' ') + "</r>";
    m_folder.Write(kFileName, three);
    const Writer writer([&](int round) {
        m_folder.Write("new", round % 2 == 0 ? one : three);
        std::filesystem::rename(m_folder / "new", ConfigurationPath());
    });
    for (int round = 0; round < 200; ++round)
        EXPECT_THAT(Read().size(), testing::AnyOf(1u, 3u));
}

TEST_F(PortConfigurationInput, WrittenWhileItIsReadIsReadOrRefused) {
    std::string entries;
    for (int count = 0; count < 1000; ++count)
        entries += PortElement("a");
    m_folder.Write(kFileName, "<r/>");
    const Writer writer(
        [&](int round) { m_folder.Write(kFileName, round % 2 == 0 ? "<r/>" : "<r>" + entries + "</r>"); });
    for (int round = 0; round < 200; ++round) {
        try {
            EXPECT_THAT(Read().size(), testing::AnyOf(0u, 1000u));
        } catch (const GenICam::RuntimeException& error) {
            EXPECT_THAT(error.GetDescription(), StartsWith("Failed to parse"));
        }
    }
}

TEST_F(PortConfigurationInput, RemovedWhileItIsReadIsReadOrMissing) {
    const Writer writer([&](int round) {
        if (round % 2 == 0)
            m_folder.Write("new", "<r>" + PortElement("a") + "</r>"),
                std::filesystem::rename(m_folder / "new", ConfigurationPath());
        else
            std::filesystem::remove(ConfigurationPath());
    });
    for (int round = 0; round < 200; ++round) {
        try {
            EXPECT_LE(Read().size(), 1u);
        } catch (const GenICam::RuntimeException& error) {
            EXPECT_THAT(error.GetDescription(), StartsWith("Failed to parse"));
        }
    }
}

TEST_F(PortConfigurationInput, IsReadByManyThreadsAtOnce) {
    m_folder.Write(kFileName, "<r>" + PortElement("a") + "</r>");
    std::atomic<int> entries{0};
    std::vector<std::thread> threads;
    for (int count = 0; count < 4; ++count)
        threads.emplace_back([&] {
            for (int round = 0; round < 50; ++round)
                entries += static_cast<int>(Read().size());
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(entries, 200);
}

}  // namespace
}  // namespace Vanto
