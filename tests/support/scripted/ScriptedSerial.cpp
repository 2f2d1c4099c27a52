/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A Camera Link serial library that does what a test's script says
 *
 * Unlike what a maker ships, its functions let exceptions through when a script throws: hosts must stand that.
 */

#include <algorithm>
#include <chrono>
#include <cstring>
#include <thread>

#include "scripted/SerialScript.h"

#ifdef _WIN32
#define SCRIPTED_EXPORT extern "C" __declspec(dllexport)
#else
#define SCRIPTED_EXPORT extern "C" __attribute__((visibility("default")))
#endif

namespace {

using scripted::PortScript;
using scripted::SerialScript;

constexpr std::size_t kAnswerSize = 128;

SerialScript& Script() {
    static SerialScript script;
    return script;
}

// Counts the call and copies the hook, so that the hook runs without the lock.
template <class Hook>
Hook Enter(Hook SerialScript::*hook) {
    SerialScript& script = Script();
    const std::lock_guard lock(script.mutex);
    ++script.calls;
    return script.*hook;
}

[[maybe_unused]] std::int32_t CopyText(const std::string& text, char* buffer, std::uint32_t* size) {
    const std::uint32_t capacity = *size;
    *size = static_cast<std::uint32_t>(text.size() + 1);
    if (capacity < *size)
        return CL_ERR_BUFFER_TOO_SMALL;
    std::memcpy(buffer, text.c_str(), *size);
    return CL_ERR_NO_ERR;
}

// References are the port's number plus one, so that none is null.
PortScript* PortOf(hSerRef ref) {
    const auto number = reinterpret_cast<std::uintptr_t>(ref);
    SerialScript& script = Script();
    return number == 0 || number > script.ports.size() ? nullptr : &script.ports[number - 1];
}

void Answer(PortScript& port, const char* buffer, std::uint32_t size) {
    port.output.append(buffer, size);
    if (size == 0 || *buffer != '?' || port.camera.empty())
        return;
    std::string answer = port.camera;
    answer.resize(kAnswerSize);
    port.input += answer;
}

}  // namespace

SCRIPTED_EXPORT void* scriptedSerial() {
    return &Script();
}

SCRIPTED_EXPORT std::int32_t clSerialInit(std::uint32_t index, hSerRef* ref) {
    if (const auto hook = Enter(&SerialScript::onInit)) {
        if (const std::int32_t result = hook(index, ref); result != CL_ERR_NO_ERR)
            return result;
    }
    SerialScript& script = Script();
    const std::lock_guard lock(script.mutex);
    if (index >= script.ports.size())
        return CL_ERR_INVALID_INDEX;
    PortScript& port = script.ports[index];
    if (port.isOpen)
        return CL_ERR_PORT_IN_USE;
    port.isOpen = true;
    port.input.clear();
    ++port.opened;
    *ref = reinterpret_cast<hSerRef>(static_cast<std::uintptr_t>(index) + 1);
    return CL_ERR_NO_ERR;
}

SCRIPTED_EXPORT void clSerialClose(hSerRef ref) {
    const auto hook = Enter(&SerialScript::onClose);
    SerialScript& script = Script();
    std::unique_lock lock(script.mutex);
    PortScript* const port = PortOf(ref);
    if (port == nullptr)
        return;
    if (hook) {
        lock.unlock();
        hook(*port);
        lock.lock();
    }
    port->isOpen = false;
    ++port->closed;
}

#ifndef SCRIPTED_LACKS_READ
SCRIPTED_EXPORT std::int32_t clSerialRead(hSerRef ref, char* buffer, std::uint32_t* size, std::uint32_t timeoutMs) {
    const auto hook = Enter(&SerialScript::onRead);
    SerialScript& script = Script();
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    std::unique_lock lock(script.mutex);
    PortScript* const port = PortOf(ref);
    if (port == nullptr)
        return CL_ERR_INVALID_REFERENCE;
    if (hook) {
        lock.unlock();
        return hook(*port, buffer, size, timeoutMs);
    }
    while (port->input.size() < *size) {
        if (std::chrono::steady_clock::now() >= end)
            return CL_ERR_TIMEOUT;
        lock.unlock();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        lock.lock();
    }
    port->input.copy(buffer, *size);
    port->input.erase(0, *size);
    return CL_ERR_NO_ERR;
}
#endif

SCRIPTED_EXPORT std::int32_t clSerialWrite(hSerRef ref, char* buffer, std::uint32_t* size, std::uint32_t timeoutMs) {
    const auto hook = Enter(&SerialScript::onWrite);
    SerialScript& script = Script();
    std::unique_lock lock(script.mutex);
    PortScript* const port = PortOf(ref);
    if (port == nullptr)
        return CL_ERR_INVALID_REFERENCE;
    if (hook) {
        lock.unlock();
        return hook(*port, buffer, size, timeoutMs);
    }
    Answer(*port, buffer, *size);
    return CL_ERR_NO_ERR;
}

#ifndef SCRIPTED_ONLY_1_0

SCRIPTED_EXPORT std::int32_t clGetManufacturerInfo(char* name, std::uint32_t* size, std::uint32_t* version) {
    if (const auto hook = Enter(&SerialScript::onGetManufacturerInfo))
        return hook(name, size, version);
    SerialScript& script = Script();
    const std::lock_guard lock(script.mutex);
    *version = script.version;
    return CopyText(script.maker, name, size);
}

SCRIPTED_EXPORT std::int32_t clGetNumSerialPorts(std::uint32_t* count) {
    if (const auto hook = Enter(&SerialScript::onGetNumSerialPorts))
        return hook(count);
    SerialScript& script = Script();
    const std::lock_guard lock(script.mutex);
    *count = static_cast<std::uint32_t>(script.ports.size());
    return CL_ERR_NO_ERR;
}

SCRIPTED_EXPORT std::int32_t clGetSerialPortIdentifier(std::uint32_t index, char* id, std::uint32_t* size) {
    if (const auto hook = Enter(&SerialScript::onGetSerialPortIdentifier))
        return hook(index, id, size);
    SerialScript& script = Script();
    const std::lock_guard lock(script.mutex);
    return index < script.ports.size() ? CopyText(script.ports[index].name, id, size) : CL_ERR_INVALID_INDEX;
}

SCRIPTED_EXPORT std::int32_t clGetNumBytesAvail(hSerRef ref, std::uint32_t* count) {
    SerialScript& script = Script();
    const std::lock_guard lock(script.mutex);
    const PortScript* const port = PortOf(ref);
    if (port == nullptr)
        return CL_ERR_INVALID_REFERENCE;
    *count = static_cast<std::uint32_t>(port->input.size());
    return CL_ERR_NO_ERR;
}

SCRIPTED_EXPORT std::int32_t clFlushPort(hSerRef ref) {
    SerialScript& script = Script();
    const std::lock_guard lock(script.mutex);
    PortScript* const port = PortOf(ref);
    if (port == nullptr)
        return CL_ERR_INVALID_REFERENCE;
    port->input.clear();
    return CL_ERR_NO_ERR;
}

SCRIPTED_EXPORT std::int32_t clGetSupportedBaudRates(hSerRef ref, std::uint32_t* mask) {
    if (const auto hook = Enter(&SerialScript::onGetSupportedBaudRates))
        return hook(mask);
    SerialScript& script = Script();
    const std::lock_guard lock(script.mutex);
    if (PortOf(ref) == nullptr)
        return CL_ERR_INVALID_REFERENCE;
    *mask = script.supportedRates;
    return CL_ERR_NO_ERR;
}

#ifndef SCRIPTED_LACKS_SET_BAUD_RATE
SCRIPTED_EXPORT std::int32_t clSetBaudRate(hSerRef ref, std::uint32_t flag) {
    const auto hook = Enter(&SerialScript::onSetBaudRate);
    SerialScript& script = Script();
    std::unique_lock lock(script.mutex);
    PortScript* const port = PortOf(ref);
    if (port == nullptr)
        return CL_ERR_INVALID_REFERENCE;
    if (hook) {
        lock.unlock();
        return hook(*port, flag);
    }
    if ((script.supportedRates & flag) == 0)
        return CL_ERR_BAUD_RATE_NOT_SUPPORTED;
    port->rate = flag;
    port->rates.push_back(flag);
    return CL_ERR_NO_ERR;
}
#endif

#ifdef SCRIPTED_NAMES_THE_MAKER
// The form of a module above several makers' libraries.
SCRIPTED_EXPORT std::int32_t clGetErrorText(const char* maker, std::int32_t code, char* text, std::uint32_t* size) {
    SerialScript& script = Script();
    const std::lock_guard lock(script.mutex);
    if (script.maker != maker)
        return CL_ERR_MANU_DOES_NOT_EXIST;
#else
SCRIPTED_EXPORT std::int32_t clGetErrorText(std::int32_t code, char* text, std::uint32_t* size) {
    if (const auto hook = Enter(&SerialScript::onGetErrorText))
        return hook(code, text, size);
    SerialScript& script = Script();
    const std::lock_guard lock(script.mutex);
#endif
    const auto found = script.errorTexts.find(code);
    return found != script.errorTexts.end() ? CopyText(found->second, text, size) : CL_ERR_ERROR_NOT_FOUND;
}

#endif
