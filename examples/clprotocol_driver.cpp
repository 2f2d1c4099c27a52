/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A CLProtocol driver in one file of C++11: finds Marlow's cameras, which speak GenCP, and reads and writes them
 *
 * docs/writing-a-clprotocol-driver.md says what each function owes its caller.
 */
#include <cstring>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "CLProtocol/CLProtocol.h"

using namespace CLProtocol;

namespace {

typedef std::vector<unsigned char> Bytes;

struct Failure {
    CLINT32 code;
    std::string text;
};

struct Camera {
    CLUINT32 rate;  // the present one, as a Camera Link flag
    unsigned requestId;
};

const unsigned kReadMemory = 0x0800, kWriteMemory = 0x0802;
const std::size_t kHeader = 16, kBlock = 256;
// No register of the camera: the descriptions have their feature of the baud rate there, as a value of an enumeration.
const CLINT64 kRateRegister = 0x4D42445200000000;
const CLUINT32 kLookMs = 100;  // how long a camera is waited for at each rate

std::mutex g_mutex;  // of what follows
std::map<CLUINT32, Camera> g_cameras;
std::map<CLINT32, std::string> g_texts;
CLUINT32 g_lastCookie = 0;

void Append(Bytes& bytes, unsigned long long value, int count) {
    while (count-- > 0)
        bytes.push_back(static_cast<unsigned char>(value >> (8 * count)));
}

unsigned long long Number(const Bytes& bytes, std::size_t at, int count) {
    unsigned long long value = 0;
    for (int i = 0; i < count; ++i)
        value = value << 8 | bytes.at(at + static_cast<std::size_t>(i));
    return value;
}

unsigned Checksum(const Bytes& bytes, std::size_t from, std::size_t to) {
    unsigned sum = 0;
    for (std::size_t i = from; i < to; ++i)
        sum += (i - from) % 2 == 0 ? bytes[i] << 8 : bytes[i];
    while (sum > 0xffff)
        sum = (sum & 0xffff) + (sum >> 16);
    return ~sum & 0xffff;
}

Bytes Packet(unsigned flags, unsigned command, unsigned id, const Bytes& data) {
    Bytes fields;  // the checksums are over these
    Append(fields, 0, 2);
    Append(fields, flags, 2);
    Append(fields, command, 2);
    Append(fields, data.size(), 2);
    Append(fields, id, 2);
    fields.insert(fields.end(), data.begin(), data.end());
    Bytes packet;
    Append(packet, 0x0100, 2);
    Append(packet, Checksum(fields, 0, 10), 2);
    Append(packet, Checksum(fields, 0, fields.size()), 2);
    packet.insert(packet.end(), fields.begin(), fields.end());
    return packet;
}

// What the line takes for so many bytes is no fault of the camera.
CLUINT32 OnTheLine(const Camera& camera, std::size_t count) {
    const unsigned bitsPerSecond = camera.rate <= CL_BAUDRATE_38400   ? 9600 * camera.rate
                                   : camera.rate < CL_BAUDRATE_115200 ? 57600
                                                                      : 115200 * (camera.rate / CL_BAUDRATE_115200);
    return static_cast<CLUINT32>(count * 10 * 1000 / bitsPerSecond + 1);
}

Bytes Receive(ISerial& serial, const Camera& camera, std::size_t count, CLUINT32 timeoutMs) {
    Bytes bytes(count);
    CLUINT32 size = static_cast<CLUINT32>(count);
    const CLINT32 result =
        serial.clSerialRead(reinterpret_cast<CLINT8*>(bytes.data()), &size, timeoutMs + OnTheLine(camera, count));
    if (result < 0)
        throw Failure{result, "The camera does not answer."};
    return bytes;
}

void DropWhatCame(ISerial& serial) {
    char byte;
    CLUINT32 one = 1;
    while (serial.clSerialRead(&byte, &one, 10) >= 0)
        continue;
}

// One acknowledge; empty when it is damaged, late or only asks for patience.
bool TakeAnswer(ISerial& serial, const Camera& camera, unsigned command, CLUINT32 timeoutMs, Bytes& answer) {
    Bytes packet = Receive(serial, camera, kHeader, timeoutMs);
    if (Number(packet, 0, 2) != 0x0100 || Checksum(packet, 6, kHeader) != Number(packet, 2, 2)) {
        DropWhatCame(serial);
        throw Failure{CL_ERR_TIMEOUT, "The camera's answer was damaged."};
    }
    if (Number(packet, 12, 2) != 0)
        answer = Receive(serial, camera, Number(packet, 12, 2), timeoutMs);
    packet.insert(packet.end(), answer.begin(), answer.end());
    if (Checksum(packet, 6, packet.size()) != Number(packet, 4, 2))
        throw Failure{CL_ERR_TIMEOUT, "The camera's answer was damaged."};
    if (Number(packet, 10, 2) != command + 1 || Number(packet, 14, 2) != camera.requestId)
        return false;
    const unsigned status = static_cast<unsigned>(Number(packet, 8, 2));
    if (status & 0x8000)
        throw Failure{CLP_DRIVER_STATUS - static_cast<CLINT32>(status & 0x3f), "The camera refuses this."};
    return true;
}

// Sends a command up to three times and gives what the camera answers.
Bytes Exchange(ISerial& serial, Camera& camera, unsigned command, const Bytes& data, CLUINT32 timeoutMs) {
    camera.requestId = camera.requestId % 0xffff + 1;
    for (int attempt = 0;; ++attempt) {
        Bytes packet = Packet(attempt == 0 ? 0x4000 : 0xC000, command, camera.requestId, data);
        CLUINT32 size = static_cast<CLUINT32>(packet.size());
        const CLINT32 sent = serial.clSerialWrite(reinterpret_cast<CLINT8*>(packet.data()), &size,
                                                  timeoutMs + OnTheLine(camera, packet.size()));
        if (sent < 0)
            throw Failure{sent, "The command could not be sent."};
        try {
            Bytes answer;
            while (!TakeAnswer(serial, camera, command, timeoutMs, answer))
                answer.clear();
            return answer;
        } catch (const Failure& failure) {
            if (failure.code != CL_ERR_TIMEOUT || attempt == 2)
                throw;
        }
    }
}

Bytes Read(ISerial& serial, Camera& camera, unsigned long long address, std::size_t count, CLUINT32 timeoutMs) {
    Bytes bytes;
    while (bytes.size() < count) {
        Bytes data;
        Append(data, address + bytes.size(), 8);
        Append(data, 0, 2);
        Append(data, count - bytes.size() < kBlock ? count - bytes.size() : kBlock, 2);
        const Bytes block = Exchange(serial, camera, kReadMemory, data, timeoutMs);
        if (block.empty())
            throw Failure{CLP_DRIVER_BAD_ACKNOWLEDGE, "The camera's answer is empty."};
        bytes.insert(bytes.end(), block.begin(), block.end());
    }
    bytes.resize(count);
    return bytes;
}

void Write(ISerial& serial, Camera& camera, unsigned long long address, const Bytes& bytes, CLUINT32 timeoutMs) {
    for (std::size_t at = 0; at < bytes.size(); at += kBlock) {
        Bytes data;
        Append(data, address + at, 8);
        data.insert(data.end(), bytes.begin() + static_cast<long>(at),
                    bytes.size() - at < kBlock ? bytes.end() : bytes.begin() + static_cast<long>(at + kBlock));
        Exchange(serial, camera, kWriteMemory, data, timeoutMs);
    }
}

unsigned long long ReadNumber(ISerial& serial, Camera& camera, unsigned long long address, int count,
                              CLUINT32 timeoutMs) {
    return Number(Read(serial, camera, address, static_cast<std::size_t>(count), timeoutMs), 0, count);
}

// A text register as a token of a DeviceID.
std::string Token(ISerial& serial, Camera& camera, unsigned long long address, CLUINT32 timeoutMs) {
    const Bytes bytes = Read(serial, camera, address, 64, timeoutMs);
    std::string text(bytes.begin(), bytes.end());
    text.resize(std::strlen(text.c_str()));
    for (char& sign : text)
        if (sign == '#' || static_cast<unsigned char>(sign) < 0x20)
            sign = '_';
    return text;
}

std::string DeviceIdOf(ISerial& serial, Camera& camera, CLUINT32 timeoutMs) {
    const unsigned long long kManufacturer = 0x04, kModel = 0x44, kFamily = 0x84, kVersion = 0xC4, kSerial = 0x144;
    std::string id;
    for (const unsigned long long address : {kManufacturer, kFamily, kModel, kVersion, kSerial})
        id += (id.empty() ? "" : "#") + Token(serial, camera, address, timeoutMs);
    return id;
}

// The camera may have been left at any rate.
Camera FindCamera(ISerial& serial) {
    CLUINT32 rates = CL_BAUDRATE_9600;
    serial.clGetSupportedBaudRates(&rates);
    for (CLUINT32 rate = CL_BAUDRATE_9600; rate <= CL_BAUDRATE_921600; rate <<= 1) {
        Camera camera = {rate, 0};
        if ((rates & rate) == 0 || serial.clSetBaudRate(rate) < 0)
            continue;
        try {
            ReadNumber(serial, camera, 0, 4, kLookMs);
            return camera;
        } catch (const Failure&) {
            DropWhatCame(serial);
        }
    }
    throw Failure{CLP_DRIVER_NO_ANSWER, "No camera answers at any baud rate."};
}

// GenCP: the new rate is written at the old one, and once more at the new one.
void ChangeRate(ISerial& serial, Camera& camera, CLUINT32 rate, CLUINT32 timeoutMs) {
    const unsigned long long current = ReadNumber(serial, camera, 0x01D8, 8, timeoutMs) + 4;
    Bytes flag;
    Append(flag, rate, 4);
    Write(serial, camera, current, flag, timeoutMs);
    const CLINT32 result = serial.clSetBaudRate(rate);
    if (result < 0)
        throw Failure{result, "The host's port does not take the rate."};
    camera.rate = rate;
    Write(serial, camera, current, flag, timeoutMs);
}

// 9600 baud is 15, 19200 is 17 and so on up to 921600, which is 23.
unsigned RateEntry(CLUINT32 flag) {
    unsigned entry = flag == CL_BAUDRATE_9600 ? 15 : 16;
    for (; flag > 1; flag >>= 1)
        ++entry;
    return entry;
}

CLUINT32 RateOfEntry(unsigned long long entry) {
    for (CLUINT32 rate = CL_BAUDRATE_9600; rate <= CL_BAUDRATE_921600; rate <<= 1)
        if (RateEntry(rate) == entry)
            return rate;
    throw Failure{CL_ERR_BAUD_RATE_NOT_SUPPORTED, "There is no such baud rate."};
}

struct Description {
    std::string id;
    unsigned long long address;
    std::size_t size;
};

Description FindDescription(ISerial& serial, Camera& camera, CLUINT32 timeoutMs) {
    const unsigned long long table = ReadNumber(serial, camera, 0x01D0, 8, timeoutMs);
    const Bytes entry = Read(serial, camera, table + 8, 24, timeoutMs);
    const std::string device = DeviceIdOf(serial, camera, timeoutMs);
    Description description;
    description.id = "SchemaVersion." + std::to_string(entry[4]) + "." + std::to_string(entry[5]) + "@" + device +
                     "@XMLVersion." + std::to_string(entry[0]) + "." + std::to_string(entry[1]) + "." +
                     std::to_string(Number(entry, 2, 2));
    description.address = Number(entry, 8, 8);
    description.size = static_cast<std::size_t>(Number(entry, 16, 8));
    return description;
}

void GiveText(const std::string& text, CLINT8* buffer, CLUINT32* size) {
    const CLUINT32 given = *size;
    *size = static_cast<CLUINT32>(text.size() + 1);
    if (buffer == nullptr)
        return;
    if (given < *size)
        throw Failure{CL_ERR_BUFFER_TOO_SMALL, "The buffer is too small."};
    std::memcpy(buffer, text.c_str(), *size);
}

// The one way out of all functions: no exception leaves the driver, and what a code meant is remembered.
template <class Function>
CLINT32 Guarded(Function function) {
    try {
        function();
        return CL_ERR_NO_ERR;
    } catch (const Failure& failure) {
        const std::lock_guard<std::mutex> lock(g_mutex);
        g_texts[failure.code] = failure.text;
        return failure.code;
    } catch (...) {
        return CL_ERR_OUT_OF_MEMORY;
    }
}

// The camera of a cookie: a copy, so that no lock is held while a line is used.
template <class Function>
CLINT32 WithCamera(CLUINT32 cookie, Function function) {
    return Guarded([&] {
        std::unique_lock<std::mutex> lock(g_mutex);
        if (g_cameras.count(cookie) == 0)
            throw Failure{CLP_INVALID_COOKIE, "There is no such connection."};
        Camera camera = g_cameras[cookie];
        lock.unlock();
        const auto keep = [&] {
            lock.lock();
            if (g_cameras.count(cookie) != 0)
                g_cameras[cookie] = camera;
        };
        try {
            function(camera);
        } catch (...) {
            keep();
            lock.unlock();
            throw;
        }
        keep();
    });
}

}  // namespace

CLINT32 CLP_CC clpInitLib(CLP_LOGGER, CLINT32) {
    return CL_ERR_NO_ERR;
}

CLINT32 CLP_CC clpCloseLib(void) {
    const std::lock_guard<std::mutex> lock(g_mutex);
    g_cameras.clear();
    return CL_ERR_NO_ERR;
}

CLINT32 CLP_CC clpGetCLProtocolVersion(CLUINT32* major, CLUINT32* minor) {
    *major = CLP_VERSION_MAJOR;
    *minor = CLP_VERSION_MINOR;
    return CL_ERR_NO_ERR;
}

CLINT32 CLP_CC clpGetShortDeviceIDTemplates(CLINT8* templates, CLUINT32* size) {
    return Guarded([&] { GiveText("Marlow", templates, size); });
}

CLINT32 CLP_CC clpProbeDevice(ISerial* serial, const CLINT8* templateOrDeviceId, CLINT8* deviceId, CLUINT32* size,
                              CLUINT32* cookie, CLUINT32 timeoutMs) {
    return Guarded([&] {
        Camera camera = FindCamera(*serial);
        const std::string id = DeviceIdOf(*serial, camera, timeoutMs);
        const std::string wanted = templateOrDeviceId;
        if (id.compare(0, wanted.size(), wanted) != 0 || (id.size() > wanted.size() && id[wanted.size()] != '#'))
            throw Failure{CLP_NO_DEVICE_FOUND, "Another camera answers: " + id + "."};
        GiveText(id, deviceId, size);
        const std::lock_guard<std::mutex> lock(g_mutex);
        *cookie = ++g_lastCookie;
        g_cameras[*cookie] = camera;
    });
}

CLINT32 CLP_CC clpGetXMLIDs(ISerial* serial, CLUINT32 cookie, CLINT8* ids, CLUINT32* size, CLUINT32 timeoutMs) {
    return WithCamera(cookie,
                      [&](Camera& camera) { GiveText(FindDescription(*serial, camera, timeoutMs).id, ids, size); });
}

CLINT32 CLP_CC clpGetXMLDescription(ISerial* serial, CLUINT32 cookie, const CLINT8* xmlId, CLINT8* buffer,
                                    CLUINT32* size, CLUINT32 timeoutMs) {
    return WithCamera(cookie, [&](Camera& camera) {
        const Description description = FindDescription(*serial, camera, timeoutMs);
        if (description.id != xmlId)
            throw Failure{CLP_NO_XMLDESCRIPTION_FOUND, "The camera has no such description."};
        const CLUINT32 given = *size;
        *size = static_cast<CLUINT32>(description.size);
        if (buffer == nullptr)
            return;
        if (given < *size)
            throw Failure{CL_ERR_BUFFER_TOO_SMALL, "The buffer is too small."};
        const Bytes bytes = Read(*serial, camera, description.address, description.size, timeoutMs);
        std::memcpy(buffer, bytes.data(), bytes.size());
    });
}

CLINT32 CLP_CC clpReadRegister(ISerial* serial, CLUINT32 cookie, CLINT64 address, CLINT8* buffer, CLINT64 length,
                               CLUINT32 timeoutMs) {
    return WithCamera(cookie, [&](Camera& camera) {
        Bytes bytes;
        if (address == kRateRegister)
            Append(bytes, RateEntry(camera.rate), 4);
        else
            bytes = Read(*serial, camera, static_cast<unsigned long long>(address), static_cast<std::size_t>(length),
                         timeoutMs);
        if (bytes.size() != static_cast<std::size_t>(length))
            throw Failure{CLP_DRIVER_BAD_RANGE, "The register has another length."};
        std::memcpy(buffer, bytes.data(), bytes.size());
    });
}

CLINT32 CLP_CC clpWriteRegister(ISerial* serial, CLUINT32 cookie, CLINT64 address, const CLINT8* buffer, CLINT64 length,
                                CLUINT32 timeoutMs) {
    return WithCamera(cookie, [&](Camera& camera) {
        const Bytes bytes(buffer, buffer + length);
        if (address != kRateRegister)
            Write(*serial, camera, static_cast<unsigned long long>(address), bytes, timeoutMs);
        else if (length != 4)
            throw Failure{CLP_DRIVER_BAD_RANGE, "The register has another length."};
        else if (RateOfEntry(Number(bytes, 0, 4)) != camera.rate)
            ChangeRate(*serial, camera, RateOfEntry(Number(bytes, 0, 4)), timeoutMs);
    });
}

CLINT32 CLP_CC clpContinueWriteRegister(ISerial*, CLUINT32, BOOL8, CLUINT32) {
    return CL_ERR_NO_ERR;  // clpWriteRegister never answers CLP_PENDING_WRITE
}

CLINT32 CLP_CC clpGetErrorText(CLINT32 code, CLINT8* text, CLUINT32* size, CLUINT32) {
    std::string found;
    {
        const std::lock_guard<std::mutex> lock(g_mutex);
        if (g_texts.count(code) == 0)
            return CL_ERR_ERROR_NOT_FOUND;
        found = g_texts[code];
    }
    return Guarded([&] { GiveText(found, text, size); });
}

CLINT32 CLP_CC clpDisconnect(CLUINT32 cookie) {
    return Guarded([&] {
        const std::lock_guard<std::mutex> lock(g_mutex);
        g_cameras.erase(cookie);
    });
}

CLINT32 CLP_CC clpIsParamSupported(CLP_PARAMS param) {
    if (param == CLP_DEVICE_BAUDERATE || param == CLP_DEVICE_SUPPORTED_BAUDERATES)
        return CL_ERR_NO_ERR;
    return CLP_PARAM_NOT_SUPPORTED;
}

CLINT32 CLP_CC clpGetParam(ISerial* serial, CLP_PARAMS param, CLUINT32 cookie, CLINT8* buffer, CLINT64 length,
                           CLUINT32 timeoutMs) {
    return WithCamera(cookie, [&](Camera& camera) {
        if (clpIsParamSupported(param) < 0)
            throw Failure{CLP_PARAM_NOT_SUPPORTED, "There is no such parameter."};
        if (length != sizeof(CLUINT32))
            throw Failure{CLP_PARAM_SIZE, "The parameter has 4 bytes."};
        CLUINT32 value = camera.rate;
        if (param == CLP_DEVICE_SUPPORTED_BAUDERATES) {
            CLUINT32 ofHost = CL_BAUDRATE_9600;
            serial->clGetSupportedBaudRates(&ofHost);
            const unsigned long long map = ReadNumber(*serial, camera, 0x01D8, 8, timeoutMs);
            value = ofHost & static_cast<CLUINT32>(ReadNumber(*serial, camera, map, 4, timeoutMs));
        }
        std::memcpy(buffer, &value, sizeof value);
    });
}

CLINT32 CLP_CC clpSetParam(ISerial* serial, CLP_PARAMS param, CLUINT32 cookie, const CLINT8* buffer, CLINT64 length,
                           CLUINT32 timeoutMs) {
    return WithCamera(cookie, [&](Camera& camera) {
        CLUINT32 rate = 0;
        if (param != CLP_DEVICE_BAUDERATE || length != sizeof rate)
            throw Failure{CLP_PARAM_NOT_SUPPORTED, "Only the baud rate can be set."};
        std::memcpy(&rate, buffer, sizeof rate);
        if (rate != camera.rate)
            ChangeRate(*serial, camera, rate, timeoutMs);
    });
}
