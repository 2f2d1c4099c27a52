/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Thousands of features written and read on a line that loses and damages packets
 */

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <random>

#include "simulator/CameraRegisters.h"
#include "tests/integration/Machine.h"

namespace integration {
namespace {

// Writes and reads together. A thousand show that it works; VANTO_TEST_OPERATIONS sets more, for rare cases.
int Operations() {
    const char* text = std::getenv("VANTO_TEST_OPERATIONS");
    return text != nullptr ? std::atoi(text) : 1000;
}

struct Outcome {
    int writes = 0;
    int reads = 0;
    int errors = 0;
    int wrong = 0;
    int repeated = 0;  // writes that the camera carried out twice
    int missing = 0;   // writes without error that it did not carry out
};

std::ostream& operator<<(std::ostream& stream, const Outcome& outcome) {
    return stream << outcome.writes << " writes, " << outcome.reads << " reads, " << outcome.errors << " errors, "
                  << outcome.wrong << " wrong values, " << outcome.repeated << " writes done twice, " << outcome.missing
                  << " not done";
}

class BadLine : public Machine {
protected:
    BadLine() {
        auto camera = Camera("21");
        camera.zip = true;
        Add("cam0", camera);
        m_device = CTlFactory::GetInstance().CreateDevice(Partial("21"));
        m_device->Open();
        m_node = m_device->GetNodeMap()->GetNode("BlackLevelRaw");
        m_expected = {m_node->GetValue(false, true)};
    }
    ~BadLine() override {
        simulator.SetFaults("cam0", {});
        CTlFactory::GetInstance().DestroyDevice(m_device);
    }

    void Write(std::int64_t value) {
        const std::uint64_t before = WritesDone();
        try {
            m_node->SetValue(value);
            m_expected = {value};
            ++m_outcome.writes;
            m_outcome.missing += WritesDone() == before ? 1 : 0;
        } catch (const GenICam::GenericException& error) {
            // Nobody knows whether the camera has carried it out.
            m_expected.push_back(value);
            Note(error);
        }
        m_outcome.repeated += WritesDone() > before + 1 ? 1 : 0;
    }
    void Read() {
        try {
            const std::int64_t value = m_node->GetValue(false, true);
            ++m_outcome.reads;
            if (std::find(m_expected.begin(), m_expected.end(), value) == m_expected.end())
                ++m_outcome.wrong;
            m_expected = {value};
        } catch (const GenICam::GenericException& error) {
            Note(error);
        }
    }
    std::uint64_t WritesDone() const {
        return simulator.StatisticsOf("cam0").WritesAt(MarlowSim::registers::kBlackLevelRaw.address);
    }
    // An error counts as removal: the application goes on with a device that it has opened anew.
    void Note(const GenICam::GenericException& error) {
        EXPECT_STRNE(error.GetDescription(), "");
        ++m_outcome.errors;
        simulator.SetFaults("cam0", {});
        m_device->Close();
        m_device->Open();
        simulator.SetFaults("cam0", m_faults);
    }

    Vanto::IVantoDevice* m_device = nullptr;
    GenApi::CIntegerPtr m_node;
    std::vector<std::int64_t> m_expected;  // what the camera may hold
    MarlowSim::FaultSettings m_faults;
    Outcome m_outcome;
};

TEST_F(BadLine, NeverGivesWrongValuesAndNeverWritesTwice) {
    const int operations = Operations();
    ASSERT_GT(operations, 0);
    m_faults.loss = 0.02;
    m_faults.damage = 0.02;
    simulator.ResetStatistics("cam0");
    simulator.SetFaults("cam0", m_faults);
    std::mt19937 random(1);
    std::uniform_int_distribution<std::int64_t> values(m_node->GetMin(), m_node->GetMax());
    for (int operation = 0; operation < operations; ++operation) {
        if (operation % 2 == 0)
            Write(values(random));
        else
            Read();
    }
    const MarlowSim::Statistics statistics = simulator.StatisticsOf("cam0");
    std::cout << operations << " operations: " << m_outcome << "; " << statistics.ToText() << '\n';
    EXPECT_EQ(m_outcome.wrong, 0);
    EXPECT_EQ(m_outcome.repeated, 0);
    EXPECT_EQ(m_outcome.missing, 0);
    EXPECT_GT(statistics.lost, 0u);
    EXPECT_GT(statistics.damaged, 0u);
}

}  // namespace
}  // namespace integration
