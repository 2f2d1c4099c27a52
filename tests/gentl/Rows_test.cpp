/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What all functions have in common: handles, pointers, and answers before the library is initialised
 */
#include <array>
#include <set>
#include <tuple>
#include <utility>

#include "tests/gentl/Consumer.h"

namespace gentl_test {

namespace {

/// Arguments that a function of any kind can be called with. Where they lead is aligned to nothing.
struct Arguments {
    void* handle = nullptr;    ///< the first one
    void* buffer = nullptr;    ///< handle of a buffer
    std::size_t nowhere = 99;  ///< number of the argument that leads nowhere
    std::array<char, 512> memory{};

    Arguments() { Reset(); }
    void Reset() {
        memory.fill(0);
        memory[1] = 1;  // read as a size: one byte or entry
    }
    char* Odd() { return memory.data() + 1; }
};

template <class T>
constexpr bool kIsSize = std::is_same_v<T, std::size_t> || std::is_same_v<T, std::size_t*>;

/// Whether an argument is a handle or a consumer's private pointer: neither is looked at.
template <bool isFirst, class T, class Next>
constexpr bool kIsHandle = std::is_same_v<T, void*> && (isFirst || !kIsSize<Next>);

template <std::size_t index, class T, class Next>
T Make(Arguments& arguments) {
    if constexpr (kIsHandle<index == 0, T, Next>)
        return index == 0 ? arguments.handle : arguments.buffer;
    else if constexpr (std::is_pointer_v<T>)
        return index == arguments.nowhere ? reinterpret_cast<T>(~std::uintptr_t{0})
                                          : reinterpret_cast<T>(arguments.Odd());
    else
        return T{1};
}

template <class... Args>
class Function {
public:
    using Pointer = GC_ERROR (*)(Args...);
    using Types = std::tuple<Args..., void>;
    static constexpr std::size_t kArguments = sizeof...(Args);

    explicit Function(Pointer function) : m_function(function) {}
    GC_ERROR operator()(Arguments& arguments) const { return Call(arguments, std::index_sequence_for<Args...>()); }
    /// Numbers of the arguments that lead to memory.
    static std::vector<std::size_t> Pointers() { return Pointers(std::index_sequence_for<Args...>()); }
    static constexpr bool HasHandle() { return kIsPlainHandle<0>; }

private:
    template <std::size_t index>
    static constexpr bool kIsPlainHandle = kIsHandle < index == 0,
                          std::tuple_element_t<index, Types>,
                          std::tuple_element_t<index<kArguments ? index + 1 : index, Types>>;

    template <std::size_t... Index>
    GC_ERROR Call(Arguments& arguments, std::index_sequence<Index...>) const {
        return m_function(
            Make<Index, std::tuple_element_t<Index, Types>, std::tuple_element_t<Index + 1, Types>>(arguments)...);
    }
    template <std::size_t... Index>
    static std::vector<std::size_t> Pointers(std::index_sequence<Index...>) {
        std::vector<std::size_t> numbers;
        ((std::is_pointer_v<std::tuple_element_t<Index, Types>> && !kIsPlainHandle<Index> ? numbers.push_back(Index)
                                                                                          : static_cast<void>(0)),
         ...);
        return numbers;
    }

    const Pointer m_function;
};

/// What is called of each function, with its name.
template <class Action>
void ForEachFunction(Action&& action) {
#define GENTL_ACT(name) action(#name, Function(TL().name));
    GENTL_FUNCTIONS(GENTL_ACT)
#undef GENTL_ACT
}

class Rows : public Consumer {
protected:
    Rows() {
        AddCamera();
        OpenStream();
        Announce(1);
        Register();
    }

    // The handle that a function takes, by its name.
    void* HandleFor(const std::string& name) const {
        const std::pair<const char*, void*> kinds[] = {
            {"TL", system},         {"IF", interface},        {"Dev", device},  {"DS", stream},
            {"GCRegister", stream}, {"GCUnregister", stream}, {"Event", event}, {"GC", remote}};
        for (const auto& [prefix, handle] : kinds)
            if (name.rfind(prefix, 0) == 0)
                return handle;
        return nullptr;
    }
    // Ports are all modules, and the camera's.
    bool Takes(const std::string& name, void* handle) const {
        const bool isModule = handle == system || handle == interface || handle == device || handle == stream;
        if (name.rfind("GCRegister", 0) == 0 || name.rfind("GCUnregister", 0) == 0)
            return isModule;
        if (name.rfind("GC", 0) == 0)
            return isModule || handle == remote;
        return handle == HandleFor(name);
    }
    static bool HasNoHandle(const std::string& name) {
        return std::set<std::string>{"GCInitLib", "GCCloseLib", "GCGetInfo", "GCGetLastError", "TLOpen"}.contains(name);
    }
};

TEST_F(Rows, BeforeItsBeginEachFunctionIsNotInitialized) {
    CloseLibrary();
    Arguments arguments;
    ForEachFunction([&](const std::string& name, const auto& function) {
        if (name == "GCInitLib")
            return;
        arguments.Reset();
        EXPECT_EQ(function(arguments), GC_ERR_NOT_INITIALIZED) << name;
    });
}

TEST_F(Rows, HandlesThatStandForNothingAreRefused) {
    int foreign = 0;
    void* const nowhere = reinterpret_cast<void*>(~std::uintptr_t{0});
    const std::vector<void*> nothing{nullptr, &foreign, nowhere, device, remote, stream, event, buffers[0]};
    ASSERT_EQ(TL().DevClose(device), GC_ERR_SUCCESS);
    ForEachFunction([&](const std::string& name, const auto& function) {
        if (HasNoHandle(name))
            return;
        for (void* const handle : nothing) {
            Arguments arguments;
            arguments.handle = handle;
            EXPECT_EQ(function(arguments), GC_ERR_INVALID_HANDLE) << name;
        }
    });
}

TEST_F(Rows, HandlesOfAnotherKindAreRefused) {
    ForEachFunction([&](const std::string& name, const auto& function) {
        if (HasNoHandle(name))
            return;
        for (void* const handle : {system, interface, device, stream, remote, event, buffers[0]}) {
            if (Takes(name, handle))
                continue;
            Arguments arguments;
            arguments.handle = handle;
            // The handle of a buffer, which has no port, is a right one for the functions of ports.
            const bool isPort = name.rfind("GC", 0) == 0 && name.find("egister") == std::string::npos;
            const GC_ERROR expected = handle == buffers[0] && isPort ? GC_ERR_NOT_IMPLEMENTED : GC_ERR_INVALID_HANDLE;
            EXPECT_EQ(function(arguments), expected) << name;
        }
    });
    EXPECT_EQ(PayloadSize(), 2048U * 2048U) << "nothing was closed";
}

// Consumers pass ~0 as well as null where they have nothing.
TEST_F(Rows, PointersThatLeadNowhereAreRefused) {
    const std::set<std::string> notThere{"DSAnnounceCompositeBuffer", "GCInitLib", "GCCloseLib"};
    ForEachFunction([&](const std::string& name, const auto& function) {
        if (notThere.contains(name))
            return;
        for (const std::size_t number : function.Pointers()) {
            Arguments arguments;
            arguments.handle = HandleFor(name);
            arguments.buffer = buffers[0];
            arguments.nowhere = number;
            GC_ERROR expected = GC_ERR_INVALID_PARAMETER;
            if (name == "DSGetBufferChunkData")
                expected = number == 2 ? GC_ERR_NO_DATA : GC_ERR_INVALID_PARAMETER;
            EXPECT_EQ(function(arguments), expected) << name << ", argument " << number;
        }
    });
    EXPECT_EQ(StreamSize(STREAM_INFO_NUM_ANNOUNCED), 1U) << "an error changes nothing";
}

// Outputs may lie at any address: each function that gives a handle or a number, without what waits or closes.
TEST_F(Rows, OutputsMayLieAnywhere) {
    for (const char* const wanted :
         {"TLGetNumInterfaces", "IFGetNumDevices", "IFGetParentTL", "DevGetParentIF", "DevGetPort", "DSGetParentDev",
          "DevGetNumDataStreams", "DSGetNumBufferSegments", "GCGetNumPortURLs", "DSAllocAndAnnounceBuffer"})
        ForEachFunction([&](const std::string& name, const auto& function) {
            if (name != wanted)
                return;
            Arguments arguments;
            arguments.handle = HandleFor(name);
            arguments.buffer = buffers[0];
            EXPECT_EQ(function(arguments), GC_ERR_SUCCESS) << name;
        });
}

}  // namespace

}  // namespace gentl_test
