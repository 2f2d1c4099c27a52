/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The doctor's look at the GenTL producer, with the eyes of a program that takes cameras through it
 */
#include <fmt/format.h>

#include <filesystem>
#include <sstream>
#include <stdexcept>

#include "doctor/Examinations.h"
#include "gentl/GenTL.h"
#include "os/Library.h"
#include "system/Environment.h"
#include "system/Files.h"
#include "vanto/VantoFolders.h"

namespace tools {

namespace {

constexpr const char* kVariable = "GENICAM_GENTL64_PATH";
constexpr std::uint64_t kPatience = 5000;  // ms, for the ports to be asked
#ifdef _WIN32
constexpr char kSeparator = ';';
#else
constexpr char kSeparator = ':';
#endif

/// A function of the C interface: its type, and the name by which it is looked up.
template <class Type>
struct Function {
    const char* name;
};
#define GENTL(function) (Function<decltype(::function)>{#function})

/// The producer's file, loaded and initialised.
class Producer {
public:
    explicit Producer(const std::string& path) : m_library(path) { Call(GENTL(GCInitLib)); }
    ~Producer() { Get(GENTL(GCCloseLib))(); }
    Producer(const Producer&) = delete;
    Producer& operator=(const Producer&) = delete;

    /// Calls a function; throws std::runtime_error where it fails.
    template <class Type, class... Args>
    void Call(Function<Type> function, Args... args) const {
        if (const GC_ERROR result = Get(function)(args...); result != GC_ERR_SUCCESS)
            throw std::runtime_error(fmt::format("{} answers {}", function.name, result));
    }
    /// The text of a function that gives one in two calls.
    template <class Type>
    std::string Text(Function<Type> function, void* handle, std::uint32_t index) const {
        std::size_t size = 0;
        Call(function, handle, index, nullptr, &size);
        std::string text(size, '\0');
        Call(function, handle, index, text.data(), &size);
        text.resize(text.find('\0'));
        return text;
    }

private:
    template <class Type>
    Type* Get(Function<Type> function) const {
        return m_library.Get<Type>(function.name);
    }

    const os::Library m_library;
};

void ListInterface(const Producer& producer, TL_HANDLE system, const std::string& id, Section& section) {
    IF_HANDLE interface = nullptr;
    std::uint32_t count = 0;
    producer.Call(GENTL(TLOpenInterface), system, id.c_str(), &interface);
    producer.Call(GENTL(IFUpdateDeviceList), interface, nullptr, kPatience);
    producer.Call(GENTL(IFGetNumDevices), interface, &count);
    if (count == 0)
        section.observations.push_back({Health::kRemark, id, "lists no camera", {}});
    for (std::uint32_t index = 0; index < count; ++index)
        section.observations.push_back(
            {Health::kFine, id, "lists " + producer.Text(GENTL(IFGetDeviceID), interface, index), {}});
}

void List(const std::string& path, Section& section) {
    const Producer producer(path);
    TL_HANDLE system = nullptr;
    std::uint32_t count = 0;
    producer.Call(GENTL(TLOpen), &system);
    producer.Call(GENTL(TLUpdateInterfaceList), system, nullptr, kPatience);
    producer.Call(GENTL(TLGetNumInterfaces), system, &count);
    section.observations.push_back({Health::kFine, path, fmt::format("loads; interfaces: {}", count), {}});
    for (std::uint32_t index = 0; index < count; ++index)
        ListInterface(producer, system, producer.Text(GENTL(TLGetInterfaceID), system, index), section);
}

#undef GENTL

Observation ObserveVariable(const std::filesystem::path& own) {
    std::istringstream folders(GetEnvironment(kVariable).value_or(""));
    std::error_code error;
    for (std::string folder; std::getline(folders, folder, kSeparator);)
        if (!folder.empty() && std::filesystem::equivalent(PathOf(folder), own, error))
            return {Health::kFine, kVariable, "names the producer's folder", {}};
    return {Health::kRemark, kVariable, "does not name the producer's folder",
            fmt::format("Programs that look for GenTL producers find this one when it names '{}'.", own.string())};
}

}  // namespace

Section ExamineProducer() {
    Section section{"GenTL producer", {}};
    const auto folder = PathOf(Vanto::getVantoFolderPath(Vanto::eRootFolder).str()) / VANTO_DIR_GENTL;
    const std::string path = (folder / "vanto-cl.cti").make_preferred().string();
    std::error_code error;
    if (!std::filesystem::exists(PathOf(path), error)) {
        section.observations.push_back({Health::kRemark, path, "is not there", {}});
        return section;
    }
    section.observations.push_back(ObserveVariable(folder));
    try {
        List(path, section);
    } catch (const std::runtime_error& failure) {
        section.observations.push_back(
            {Health::kWarning, path, fmt::format("can't be used: {}", failure.what()), "Install it again."});
    }
    return section;
}

}  // namespace tools
