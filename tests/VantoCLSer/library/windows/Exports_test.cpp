/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the plug-in's file: the names that it shows and wants, its version, and what it does when it is loaded
 */
#include <cxxabi.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <vector>

#include "LoadedImage.h"

namespace Vanto {
namespace {

std::string Demangle(const std::string& name) {
    int status = 0;
    const std::unique_ptr<char, void (*)(void*)> text(abi::__cxa_demangle(name.c_str(), nullptr, nullptr, &status),
                                                      std::free);
    return text ? text.get() : name;
}

bool IsOfTheDeviceInfo(const std::string& name) {
    constexpr char kClass[] = "Vanto::CVantoCLSerDeviceInfo";
    return name.starts_with(std::string(kClass) + "::") || name == std::string("vtable for ") + kClass ||
           name == std::string("typeinfo for ") + kClass || name == std::string("typeinfo name for ") + kClass;
}

class Exports : public testing::Test {
protected:
    const LoadedImage m_image{VANTO_TEST_PLUGIN};
    std::set<std::string> m_names;

    Exports() {
        for (const std::string& name : m_image.Exports())
            m_names.insert(Demangle(name));
    }
};

TEST_F(Exports, AreThreeFunctionsAndTheDeviceInfo) {
    std::vector<std::string> others;
    for (const std::string& name : m_names) {
        if (!IsOfTheDeviceInfo(name))
            others.push_back(name);
    }
    EXPECT_THAT(others, testing::UnorderedElementsAre("GetTLInfoList", "Create", "Destroy"));
}

TEST_F(Exports, HoldTheWholeDeviceInfo) {
    const std::string scope = "Vanto::CVantoCLSerDeviceInfo::";
    std::vector<std::string> wanted = {scope + "CVantoCLSerDeviceInfo()",
                                       scope + "CVantoCLSerDeviceInfo(Vanto::CDeviceInfo const&)",
                                       scope + "CVantoCLSerDeviceInfo(Vanto::CVantoCLSerDeviceInfo const&)",
                                       scope + "operator=(Vanto::CVantoCLSerDeviceInfo const&)",
                                       scope + "~CVantoCLSerDeviceInfo()",
                                       "vtable for Vanto::CVantoCLSerDeviceInfo",
                                       "typeinfo for Vanto::CVantoCLSerDeviceInfo"};
    for (const char* property : {"PortID", "DeviceID", "InitialBaudRate", "DeviceXMLFileOverride",
                                 "DeviceSpecificString", "PortSpecificString"}) {
        wanted.push_back(scope + "Get" + property + "() const");
        wanted.push_back(scope + "Set" + property + "(GenICam::gcstring const&)");
        wanted.push_back(scope + "Is" + property + "Available() const");
    }
    for (const std::string& name : wanted)
        EXPECT_TRUE(m_names.contains(name)) << name;
}

TEST(Imports, AreOfTheSystemAndOfWhatThePlugInStandsOnOnly) {
    std::vector<std::string> libraries;
    for (const auto& [library, names] : LoadedImage(VANTO_TEST_PLUGIN).Imports())
        libraries.push_back(library);
    EXPECT_THAT(libraries,
                testing::IsSubsetOf({"gcbase.dll", "genapi.dll", "clprotocol.dll", "vantobase.dll", "kernel32.dll",
                                     "user32.dll", "shell32.dll", "shlwapi.dll", "advapi32.dll", "msvcrt.dll"}));
}

TEST(Imports, HoldTheFunctionsOfTheSystemThatAreToBeUsed) {
    auto imports = LoadedImage(VANTO_TEST_PLUGIN).Imports();
    using testing::IsSupersetOf;
    EXPECT_THAT(
        imports["kernel32.dll"],
        IsSupersetOf({"CreateTimerQueue", "CreateTimerQueueTimer", "DeleteTimerQueueTimer", "DeleteTimerQueueEx",
                      "EnterCriticalSection", "LoadLibraryA", "GetProcAddress", "FreeLibrary", "SetErrorMode",
                      "GetEnvironmentVariableA", "GetTickCount", "DisableThreadLibraryCalls", "OutputDebugStringA"}));
    EXPECT_THAT(imports["shell32.dll"], IsSupersetOf({"SHGetFolderPathA"}));
    EXPECT_THAT(imports["shlwapi.dll"], IsSupersetOf({"PathAppendA"}));
    EXPECT_THAT(imports["user32.dll"], IsSupersetOf({"GetAsyncKeyState"}));
    // MinGW's _stat64i32 asks this one and narrows the size.
    EXPECT_THAT(imports["msvcrt.dll"], IsSupersetOf({"_access", "_stat64"}));
}

TEST(Version, IsThatOfTheTransportLayer) {
    const LoadedImage image(VANTO_TEST_PLUGIN);
    const HRSRC found = ::FindResourceA(image.Module(), MAKEINTRESOURCEA(1), RT_VERSION);
    ASSERT_NE(found, nullptr);
    const HGLOBAL loaded = ::LoadResource(image.Module(), found);
    // Behind length, value length and type, the key and its padding: that is what the structure begins with.
    constexpr std::size_t kFixedInfo = 40;
    const auto* info =
        reinterpret_cast<const VS_FIXEDFILEINFO*>(static_cast<const char*>(::LockResource(loaded)) + kFixedInfo);
    EXPECT_EQ(info->dwSignature, 0xFEEF04BDu);
    EXPECT_EQ(info->dwFileVersionMS, MAKELONG(2, 3));
    EXPECT_EQ(info->dwFileVersionLS, static_cast<DWORD>(MAKELONG(3032, 2)));
}

// What is written for the debugger while it lives.
std::string* g_written = nullptr;

LONG CALLBACK OnException(EXCEPTION_POINTERS* exception) {
    constexpr DWORD kPrint = 0x40010006;  // DBG_PRINTEXCEPTION_C: length and address of the text
    const EXCEPTION_RECORD& record = *exception->ExceptionRecord;
    if (record.ExceptionCode != kPrint || record.NumberParameters < 2)
        return EXCEPTION_CONTINUE_SEARCH;
    g_written->append(reinterpret_cast<const char*>(record.ExceptionInformation[1]));
    return EXCEPTION_CONTINUE_EXECUTION;
}

class Notifications : public testing::Test {
protected:
    Notifications() : m_handler(::AddVectoredExceptionHandler(1, OnException)) { g_written = &m_written; }
    ~Notifications() override { ::RemoveVectoredExceptionHandler(m_handler); }

    const LoadedImage m_image{VANTO_TEST_PLUGIN};
    std::string m_written;

private:
    void* m_handler;
};

TEST_F(Notifications, OfThreadsAreTakenInSilence) {
    EXPECT_TRUE(m_image.Notify(DLL_THREAD_ATTACH));
    EXPECT_TRUE(m_image.Notify(DLL_THREAD_DETACH));
    EXPECT_EQ(m_written, "");
}

TEST_F(Notifications, OfNoKnownReasonAreShownToTheDebugger) {
    for (const DWORD reason : {4U, 5U, 0xFFFFFFFFU}) {
        m_written.clear();
        EXPECT_TRUE(m_image.Notify(reason));
        EXPECT_EQ(m_written, "*** Invalid ul_reason_for_call!!! ***") << reason;
    }
}

}  // namespace
}  // namespace Vanto
