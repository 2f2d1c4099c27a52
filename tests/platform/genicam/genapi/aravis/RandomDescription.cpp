/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Random descriptions that both engines must understand alike
 */

#include <random>

#include "Comparison.h"

namespace aravistest {

namespace {

class Writer {
public:
    explicit Writer(unsigned seed) : m_random(seed) {}

    std::string Description() {
        for (int i = 0; i < 6; ++i)
            Constant();
        for (int i = 0; i < 40; ++i)
            Next();
        return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<RegisterDescription ModelName=\"R\" VendorName=\"V\" "
               "StandardNameSpace=\"None\" SchemaMajorVersion=\"1\" SchemaMinorVersion=\"1\" "
               "SchemaSubMinorVersion=\"0\" MajorVersion=\"1\" MinorVersion=\"0\" SubMinorVersion=\"0\" ToolTip=\"T\" "
               "ProductGuid=\"P\" VersionGuid=\"V\" xmlns=\"http://www.genicam.org/GenApi/Version_1_1\">\n" +
               m_nodes + "<Port Name=\"Device\"/>\n</RegisterDescription>\n";
    }

private:
    int Below(int limit) { return static_cast<int>(m_random() % static_cast<unsigned>(limit)); }
    std::string Number(int limit) { return std::to_string(Below(limit)); }
    std::string Name() { return "N" + std::to_string(m_count++); }
    const std::string& Any() {
        return m_integers[static_cast<std::size_t>(Below(static_cast<int>(m_integers.size())))];
    }

    void Constant() {
        const std::string name = Name();
        m_nodes += "<Integer Name=\"" + name + "\"><Value>" + Number(50) + "</Value></Integer>\n";
        m_integers.push_back(name);
    }

    void Next() {
        switch (Below(14)) {
            case 0:
                Constant();
                break;
            case 1:
                Register("IntReg", "");
                break;
            case 2:
                Masked();
                break;
            case 3:
                Reference();
                break;
            case 4:
                Knife("IntSwissKnife");
                break;
            case 5:
                Converter();
                break;
            case 6:
                Knife("SwissKnife");
                break;
            case 7:
                FloatRegister();
                break;
            case 8:
                TextRegister();
                break;
            case 9:
                Flag();
                break;
            case 10:
                Structure();
                break;
            case 11:
                Selector();
                break;
            case 12:
                Ruled();
                break;
            default:
                Choice();
                break;
        }
    }

    void Register(const std::string& kind, const std::string& more, int length = 0) {
        const std::string name = Name();
        length = length != 0 ? length : 1 << Below(4);
        m_nodes += "<" + kind + " Name=\"" + name + "\"><Address>" + Number(4000) + "</Address>";
        if (Below(3) == 0)
            m_nodes += "<pAddress>" + Any() + "</pAddress>";
        if (Below(4) == 0)
            m_nodes += "<pIndex Offset=\"" + Number(32) + "\">" + Any() + "</pIndex>";
        m_nodes += "<Length>" + std::to_string(length) + "</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>" +
                   "<Cachable>NoCache</Cachable>" + more + "<Sign>" + (Below(2) == 0 ? "Signed" : "Unsigned") +
                   "</Sign><Endianess>" + (m_isBigEndian ? "BigEndian" : "LittleEndian") + "</Endianess></" + kind +
                   ">\n";
        m_registers.push_back(name);
    }

    void Masked() {
        const int length = 1 << Below(3);
        const int low = Below(8 * length);
        const int high = low + Below(8 * length - low);
        m_isBigEndian = Below(2) == 0;
        const int lsb = m_isBigEndian ? 8 * length - 1 - low : low;
        const int msb = m_isBigEndian ? 8 * length - 1 - high : high;
        Register("MaskedIntReg", "<LSB>" + std::to_string(lsb) + "</LSB><MSB>" + std::to_string(msb) + "</MSB>",
                 length);
        m_isBigEndian = false;
    }

    void Reference() {
        const std::string name = Name();
        const std::string& target = m_registers.empty() ? Any() : m_registers.back();
        m_nodes += "<Integer Name=\"" + name + "\"><pValue>" + target + "</pValue>" +
                   (Below(2) == 0 ? "<Min>-1000</Min><pMax>" + Any() + "</pMax>" : "") +
                   (Below(4) == 0 ? "<pIsAvailable>" + Any() + "</pIsAvailable>" : "") + "</Integer>\n";
    }

    std::string Endianess() { return Below(2) == 0 ? "BigEndian" : "LittleEndian"; }

    void FloatRegister() {
        m_nodes += "<FloatReg Name=\"" + Name() + "\"><Address>" + Number(4000) + "</Address><Length>" +
                   (Below(2) == 0 ? "4" : "8") + "</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>" +
                   "<Cachable>NoCache</Cachable><Endianess>" + Endianess() + "</Endianess></FloatReg>\n";
    }

    // Random bytes are no text: it is as long as nothing.
    void TextRegister() {
        const std::string name = Name();
        m_nodes += "<StringReg Name=\"" + name + "\"><Address>0x10000</Address><Length>" +
                   std::to_string(1 + Below(40)) +
                   "</Length><AccessMode>RO</AccessMode><pPort>Device</pPort></StringReg>\n<String Name=\"" + Name() +
                   "\"><pValue>" + name + "</pValue></String>\n";
    }

    void Flag() {
        const std::string bit = Name();
        m_nodes += "<MaskedIntReg Name=\"" + bit + "\"><Address>" + Number(4000) + "</Address><Length>4</Length>" +
                   "<AccessMode>RW</AccessMode><pPort>Device</pPort><Cachable>NoCache</Cachable><Bit>" + Number(32) +
                   "</Bit><Sign>Unsigned</Sign><Endianess>LittleEndian</Endianess></MaskedIntReg>\n<Boolean Name=\"" +
                   Name() + "\"><pValue>" + bit + "</pValue><OnValue>1</OnValue><OffValue>0</OffValue></Boolean>\n";
        m_flags.push_back(bit);
    }

    void Structure() {
        const bool isBigEndian = Below(2) == 0;
        m_nodes += "<StructReg Comment=\"Bits\"><Address>" + Number(4000) + "</Address><Length>4</Length>" +
                   "<AccessMode>RW</AccessMode><pPort>Device</pPort><Cachable>NoCache</Cachable><Sign>Unsigned</Sign>" +
                   "<Endianess>" + (isBigEndian ? "BigEndian" : "LittleEndian") + "</Endianess>";
        for (int entry = 0; entry < 4; ++entry) {
            const int low = 8 * entry + Below(4);
            const int high = low + Below(4);
            m_nodes += "<StructEntry Name=\"" + Name() + "\"><LSB>" + std::to_string(isBigEndian ? 31 - low : low) +
                       "</LSB><MSB>" + std::to_string(isBigEndian ? 31 - high : high) + "</MSB></StructEntry>";
        }
        m_nodes += "</StructReg>\n";
    }

    void Selector() {
        const std::string selected = Name();
        const std::string selector = Name();
        const std::string place = Name();
        m_nodes += "<Integer Name=\"" + selector + "\"><Value>" + Number(8) + "</Value><Min>0</Min><Max>7</Max>" +
                   "<pSelected>" + selected + "</pSelected></Integer>\n<Integer Name=\"" + selected + "\"><pValue>" +
                   place + "</pValue></Integer>\n<IntReg Name=\"" + place + "\"><Address>" + Number(4000) +
                   "</Address><pIndex Offset=\"4\">" + selector + "</pIndex><Length>4</Length>" +
                   "<AccessMode>RW</AccessMode><pPort>Device</pPort><Cachable>NoCache</Cachable><Sign>Unsigned</Sign>" +
                   "<Endianess>" + Endianess() + "</Endianess></IntReg>\n";
    }

    void Ruled() {
        const auto rule = [this](const char* element) {
            return Below(2) == 0 ? std::string("<") + element + ">" + (m_flags.empty() ? Any() : m_flags.back()) +
                                       "</" + element + ">"
                                 : std::string();
        };
        const std::string rules = rule("pIsImplemented") + rule("pIsAvailable") + rule("pIsLocked");
        m_nodes += "<Integer Name=\"" + Name() + "\">" + rules + "<Value>" + Number(50) + "</Value></Integer>\n";
    }

    std::string Expression(int depth) {
        static constexpr const char* kOperators[] = {" + ", " - ", " * ",     " = ",     " &lt;&gt; ",   " &lt; ",
                                                     " | ", " ^ ", " &amp; ", " &gt;= ", " &amp;&amp; ", " || "};
        if (depth == 0 || Below(5) == 0)
            return Below(2) == 0 ? "A" : (Below(2) == 0 ? "B" : Number(20));
        if (Below(5) == 0)
            return "((" + Expression(depth - 1) + ") ? (" + Expression(depth - 1) + ") : (" + Expression(depth - 1) +
                   "))";
        return "(" + Expression(depth - 1) + kOperators[Below(12)] + Expression(depth - 1) + ")";
    }

    void Knife(const std::string& kind) {
        const std::string name = Name();
        m_nodes += "<" + kind + " Name=\"" + name + "\"><pVariable Name=\"A\">" + Any() +
                   "</pVariable><pVariable Name=\"B\">" + Any() + "</pVariable><Formula>" + Expression(3) +
                   "</Formula></" + kind + ">\n";
    }

    void Converter() {
        const std::string name = Name();
        const std::string factor = std::to_string(1 + Below(9));
        const bool isInteger = Below(2) == 0;
        const std::string kind = isInteger ? "IntConverter" : "Converter";
        m_nodes += "<" + kind + " Name=\"" + name + "\"><pVariable Name=\"A\">" + Any() +
                   "</pVariable><FormulaTo>(FROM - A) / " + factor + "</FormulaTo><FormulaFrom>TO * " + factor +
                   " + A</FormulaFrom><pValue>" + Any() + "</pValue></" + kind + ">\n";
    }

    void Choice() {
        const std::string name = Name();
        const std::string target = Any();
        m_nodes += "<Enumeration Name=\"" + name + "\">";
        for (int i = 0; i < 50; ++i)
            m_nodes +=
                "<EnumEntry Name=\"E" + std::to_string(i) + "\"><Value>" + std::to_string(i) + "</Value></EnumEntry>";
        m_nodes += "<pValue>" + target + "</pValue></Enumeration>\n";
    }

    std::mt19937 m_random;
    std::string m_nodes;
    std::vector<std::string> m_integers;
    std::vector<std::string> m_registers;
    std::vector<std::string> m_flags;
    int m_count = 0;
    bool m_isBigEndian = false;
};

}  // namespace

std::string RandomDescription(unsigned seed) {
    return Writer(seed).Description();
}

}  // namespace aravistest
