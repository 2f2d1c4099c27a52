/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Information commands: each has the type and size of the interface's tables, in both calls
 */
#include <vector>

#include "tests/gentl/StreamConsumer.h"

namespace gentl_test {

namespace {

class Infos : public StreamConsumer {
protected:
    // Those of a module from 0 on, and that there is none behind them. Nothing stands for NO_DATA.
    template <class Ask>
    static void ExpectTypes(const std::vector<INFO_DATATYPE>& types, Ask&& ask) {
        for (std::size_t index = 0; index < types.size(); ++index) {
            SCOPED_TRACE("command " + std::to_string(index));
            const auto command = static_cast<std::int32_t>(index);
            std::vector<char> value(4096, '#');
            std::size_t needed = 77;
            INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN;
            const GC_ERROR result = ask(command, &type, nullptr, &needed);
            if (types[index] == kNoData || types[index] == kNotAvailable) {
                EXPECT_EQ(result, types[index] == kNoData ? GC_ERR_NO_DATA : GC_ERR_NOT_AVAILABLE);
                continue;
            }
            EXPECT_EQ(result, GC_ERR_SUCCESS);
            EXPECT_EQ(type, types[index]);
            EXPECT_TRUE(SizeOf(type) == 0 || SizeOf(type) == needed) << needed;
            type = INFO_DATATYPE_UNKNOWN;
            std::size_t size = needed;
            EXPECT_EQ(ask(command, &type, value.data(), &size), GC_ERR_SUCCESS);
            EXPECT_EQ(type, types[index]);
            EXPECT_EQ(size, needed);
            EXPECT_TRUE(type != INFO_DATATYPE_STRING || value[size - 1] == '\0');
            EXPECT_EQ(value[size], '#');
            if (needed > 1) {
                size = needed - 1;
                EXPECT_EQ(ask(command, &type, value.data(), &size), GC_ERR_BUFFER_TOO_SMALL);
            }
        }
        std::size_t size = 0;
        for (const std::int32_t unknown : {static_cast<std::int32_t>(types.size()), -1, 1000})
            EXPECT_EQ(ask(unknown, nullptr, nullptr, &size), GC_ERR_NOT_IMPLEMENTED) << unknown;
    }
    static std::size_t SizeOf(INFO_DATATYPE type) {
        switch (type) {
            case INFO_DATATYPE_BOOL8:
                return 1;
            case INFO_DATATYPE_INT32:
            case INFO_DATATYPE_UINT32:
                return 4;
            case INFO_DATATYPE_UINT64:
                return 8;
            case INFO_DATATYPE_PTR:
            case INFO_DATATYPE_SIZET:
                return sizeof(void*);
            default:
                return 0;
        }
    }

    static constexpr INFO_DATATYPE kNoData = -1;
    static constexpr INFO_DATATYPE kNotAvailable = -2;
    static constexpr INFO_DATATYPE kText = INFO_DATATYPE_STRING;
    static constexpr INFO_DATATYPE kSize = INFO_DATATYPE_SIZET;
    static constexpr INFO_DATATYPE kFlag = INFO_DATATYPE_BOOL8;
    static constexpr INFO_DATATYPE kLong = INFO_DATATYPE_UINT64;
    static constexpr INFO_DATATYPE kInt = INFO_DATATYPE_INT32;
};

TEST_F(Infos, OfTheSystemHaveTheirTypes) {
    AddCamera();
    OpenSystem();
    ExpectTypes(
        {kText, kText, kText, kText, kText, kText, kText, kText, kInt, INFO_DATATYPE_UINT32, INFO_DATATYPE_UINT32},
        [&](auto... arguments) { return TL().TLGetInfo(system, arguments...); });
}

TEST_F(Infos, OfAnInterfaceHaveTheirTypes) {
    AddCamera();
    OpenInterface();
    const std::vector<INFO_DATATYPE> types{kText, kText, kText};
    ExpectTypes(types, [&](auto... arguments) { return TL().IFGetInfo(interface, arguments...); });
    ExpectTypes(types, [&](auto... arguments) { return TL().TLGetInterfaceInfo(system, kPort.c_str(), arguments...); });
}

TEST_F(Infos, OfADeviceHaveTheirTypes) {
    AddCamera();
    OpenDevice();
    const std::vector<INFO_DATATYPE> types{kText, kText, kText, kText, kText, kInt, kNotAvailable, kText, kText, kLong};
    ExpectTypes(types, [&](auto... arguments) { return TL().DevGetInfo(device, arguments...); });
    ExpectTypes(types,
                [&](auto... arguments) { return TL().IFGetDeviceInfo(interface, kCamera.c_str(), arguments...); });
}

TEST_F(Infos, OfAStreamHaveTheirTypes) {
    Prepare(1);
    ExpectTypes({kText, kLong, kLong, kSize, kSize, kSize, kLong, kSize, kFlag, kFlag, kText, kSize, kSize, kSize,
                 kNoData, kNoData},
                [&](auto... arguments) { return TL().DSGetInfo(stream, arguments...); });
}

TEST_F(Infos, OfABufferWithAFrameHaveTheirTypes) {
    Prepare(2);
    Register();
    QueueAll();
    Start();
    const BUFFER_HANDLE buffer = Next();
    ExpectTypes({INFO_DATATYPE_PTR,
                 kSize,
                 INFO_DATATYPE_PTR,
                 kLong,
                 kFlag,
                 kFlag,
                 kFlag,
                 kFlag,
                 kText,
                 kSize,
                 kSize,
                 kSize,
                 kSize,
                 kSize,
                 kSize,
                 kSize,
                 kLong,
                 kFlag,
                 kSize,
                 kSize,
                 kLong,
                 kLong,
                 kSize,
                 kSize,
                 kNotAvailable,
                 kNotAvailable,
                 kInt,
                 kSize,
                 kLong,
                 kFlag,
                 kFlag,
                 kFlag},
                [&](auto... arguments) { return TL().DSGetBufferInfo(stream, buffer, arguments...); });
    Stop();
}

TEST_F(Infos, OfASegmentHaveTheirTypes) {
    Prepare(1);
    ExpectTypes({INFO_DATATYPE_PTR, kSize, kFlag, kSize, kSize},
                [&](auto... arguments) { return TL().DSGetBufferSegmentInfo(stream, buffers[0], 0, arguments...); });
}

TEST_F(Infos, OfAPortHaveTheirTypes) {
    Prepare(1);
    const std::vector<INFO_DATATYPE> types{kText, kText, kText, kText, kText, kFlag, kFlag,
                                           kFlag, kFlag, kFlag, kFlag, kText, kText};
    for (const PORT_HANDLE port : {system, interface, device, stream, remote})
        ExpectTypes(types, [&](auto... arguments) { return TL().GCGetPortInfo(port, arguments...); });
}

TEST_F(Infos, OfAUrlHaveTheirTypes) {
    Prepare(1);
    for (const PORT_HANDLE port : {system, interface, device, stream, remote})
        ExpectTypes({kText, kInt, kInt, kInt, kInt, kInt, INFO_DATATYPE_BUFFER, kLong, kLong, kInt, kText},
                    [&](auto... arguments) { return TL().GCGetPortURLInfo(port, 0, arguments...); });
}

}  // namespace

}  // namespace gentl_test
