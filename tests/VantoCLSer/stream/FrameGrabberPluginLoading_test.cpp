/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The order in which a plug-in is chosen and loaded, and how long it stays loaded when that fails
 */

#include <optional>

#include "StreamTest.h"
#include "os/Path.h"

namespace {

using namespace stream_test;
using namespace Vanto;
using GenICam::RuntimeException;
using testing::ElementsAre;
using testing::Pair;
using testing::StartsWith;

class PluginLoading : public testing::Test {
protected:
    void UseTree(const std::string& tree) { m_root.emplace("VANTO_ROOT", tree); }
    // Has the test's own hold on a tree's plug-in, too.
    PluginScript& UsePlugin(const std::string& tree) {
        UseTree(TreeOf(tree));
        m_plugin.emplace(tree);
        m_script = &m_plugin->Script();
        return m_plugin->Script();
    }
    std::string Failure(const std::string& parameters = "Sapera") {
        m_grabber.emplace(parameters.c_str(), m_device.Get());
        return MessageOf<RuntimeException>([this] { m_grabber->Initialize(); });
    }
    std::vector<std::pair<std::uint32_t, std::string>> Messages() const {
        std::vector<std::pair<std::uint32_t, std::string>> messages;
        for (const tracelog::LogMessage& message : m_log.GetMessages()) {
            if (message.level >= tracelog::kInfo)
                messages.emplace_back(message.level, message.text);
        }
        return messages;
    }
    void ExpectLoadedUntilDestruction() {
        m_plugin.reset();
        EXPECT_NE(os::PathOfCode(m_script), "");
        m_grabber.reset();
        EXPECT_EQ(os::PathOfCode(m_script), "");
    }
    static auto About(const std::string& tree) {
        return Pair(tracelog::kInfo,
                    "About to load FGPlugin DLL from directory '" + PluginFolderOf(tree) + os::kPathSeparator + ".'");
    }

    OpenDevice m_device;
    std::optional<scripted::ScopedVariable> m_root;
    std::optional<PlainPlugin> m_plugin;
    const PluginScript* m_script = nullptr;
    tracelog::LogRecorder m_log{"Vanto.CLSer.Stream:trace"};
    std::optional<CVantoCLSerStreamGrabber> m_grabber;
};

TEST_F(PluginLoading, ChoosesAPluginBeforeItSaysSo) {
    Failure("Grabber");
    EXPECT_THAT(Messages(), ElementsAre(Pair(tracelog::kInfo, "Don't know which plug-in DLL must be loaded!")));
    EXPECT_NE(m_grabber->GetNodeMap(), nullptr);
}

TEST_F(PluginLoading, TellsOfAMissingPluginInThisOrder) {
    UseTree(TreeOf("missing"));
    Failure();
    EXPECT_THAT(Messages(),
                ElementsAre(About("missing"), Pair(tracelog::kWarning, "Could not load FGPlugin DLL"),
                            Pair(tracelog::kError, StartsWith("Error loading FGPlugin DLL (Could not load Frame"))));
}

TEST_F(PluginLoading, TellsOfMissingFunctionsInThisOrder) {
    UsePlugin("no_destroy");
    Failure();
    EXPECT_THAT(Messages(),
                ElementsAre(About("no_destroy"), Pair(tracelog::kError, "Could not find functions in FGPlugin DLL."),
                            Pair(tracelog::kError, StartsWith("Error loading FGPlugin DLL (Missing necessary"))));
}

TEST_F(PluginLoading, TellsOfAMissingObjectInThisOrder) {
    UsePlugin("plain").makesObject = false;
    const std::string text = Failure();
    EXPECT_THAT(Messages(), ElementsAre(About("plain"), Pair(tracelog::kError, text),
                                        Pair(tracelog::kError, StartsWith("Error loading FGPlugin DLL (" + text))));
}

TEST_F(PluginLoading, SucceedsBeforeTheObjectIsInitialised) {
    PluginScript& script = UsePlugin("plain");
    script.initResult = false;
    script.errorText = "no board";
    Failure();
    EXPECT_THAT(Messages(), ElementsAre(About("plain"), Pair(tracelog::kInfo, "Sucessfully loaded FGPlugin DLL."),
                                        Pair(tracelog::kError, StartsWith("Error initializing grabber (no board"))));
}

TEST_F(PluginLoading, ReplacesVariablesInThePathButNotInTheMessage) {
    const scripted::ScopedVariable variable("VANTO_TEST_TREE", TreeOf("no_destroy"));
    UseTree("$(VANTO_TEST_TREE)");
    EXPECT_EQ(Failure(), os::ToSystemSeparators(
                             "Missing necessary functions in FGPlugin DLL '$(VANTO_TEST_TREE)/" VANTO_DIR_PLUGINS
                             "/SaperaFgPlugin_MD_VC100.dll'."));
}

TEST_F(PluginLoading, LastsUntilDestruction) {
    UsePlugin("plain");
    m_grabber.emplace("Sapera", m_device.Get());
    m_grabber->Initialize();
    ExpectLoadedUntilDestruction();
}

TEST_F(PluginLoading, LastsUntilDestructionWithoutItsFunctions) {
    UsePlugin("no_destroy");
    Failure();
    ExpectLoadedUntilDestruction();
}

TEST_F(PluginLoading, LastsUntilDestructionWithoutAnObject) {
    UsePlugin("plain").makesObject = false;
    Failure();
    ExpectLoadedUntilDestruction();
}

TEST_F(PluginLoading, LeavesARefusedObjectToTheDestruction) {
    UsePlugin("plain").initResult = false;
    Failure();
    EXPECT_STREQ(m_script->calls, "Create Init ");
    ExpectLoadedUntilDestruction();
}

}  // namespace
