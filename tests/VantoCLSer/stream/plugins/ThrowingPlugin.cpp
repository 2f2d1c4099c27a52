/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A plug-in that throws, where its parameters say so, an exception whose code is its own: it must not be used any more
 * when the plug-in is unloaded. "Sapera:Create", "Sapera:Init", ...; "Sapera:Start:int" throws a number.
 */

#include <cstdint>
#include <exception>
#include <string>

namespace {

class OwnError : public std::exception {
public:
    const char* what() const noexcept override { return "thrown by the plug-in"; }
};

std::string g_parameters;

void ThrowIfIn(const char* place) {
    if (g_parameters.find(place) == std::string::npos)
        return;
    if (g_parameters.find(":int") != std::string::npos)
        throw 42;
    throw OwnError();
}

class Grabber {
public:
    virtual bool Init(const char*, void*) {
        ThrowIfIn("Init");
        return true;
    }
    virtual void Shutdown() { ThrowIfIn("Shutdown"); }
    virtual bool StartGrab() {
        ThrowIfIn("Start");
        return g_parameters.find("Text") == std::string::npos;
    }
    virtual bool StopGrab() {
        ThrowIfIn("Stop");
        return true;
    }
    virtual std::uint32_t GetLastErrorText(char*, std::uint32_t) {
        ThrowIfIn("Text");
        return 0;
    }
    virtual std::uint64_t GetValue(std::uint32_t) {
        ThrowIfIn("Value");
        return 0;
    }
    virtual std::int32_t PoCLControl(std::uint32_t) {
        ThrowIfIn("PoCL");
        return 0;
    }

protected:
    ~Grabber() = default;
};

class ThrowingGrabber final : public Grabber {};

}  // namespace

extern "C" __attribute__((visibility("default"))) void* CreateFrameGrabberObject(const char* parameters) {
    g_parameters = parameters;
    ThrowIfIn("Create");
    return static_cast<Grabber*>(new ThrowingGrabber());
}

extern "C" __attribute__((visibility("default"))) void DestroyFrameGrabberObject(void* grabber) {
    delete static_cast<ThrowingGrabber*>(static_cast<Grabber*>(grabber));
    ThrowIfIn("Destroy");
}
