/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A consumer in C:
 *
 *     gentl_consumer PRODUCER local|global|deep close|leave|unload|exit PORT CAMERA
 *
 * Where its own functions could be taken for the producer's it is linked with some under all the names that the
 * producer hides, each of which ends the program. It takes some images. "close" closes all, "leave" only the library,
 * "unload" unloads the file at once, "exit" does nothing at all. Prints how many threads there are before the producer
 * is initialised and after it was closed.
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "gentl/GenTL.h"
#include "tests/gentl/consumer/ProducerFile.h"

static void* g_file;

#define TL(name) ((__typeof__(&(name)))FindFunction(g_file, #name))
#define CHECK(call)                                                 \
    do {                                                            \
        const GC_ERROR result = (call);                             \
        if (result != GC_ERR_SUCCESS) {                             \
            fprintf(stderr, "%s answers %d\n", #call, (int)result); \
            exit(3);                                                \
        }                                                           \
    } while (0)

static DEV_HANDLE OpenDevice(TL_HANDLE* system, IF_HANDLE* interface, const char* port, const char* camera) {
    DEV_HANDLE device = NULL;
    CHECK(TL(TLOpen)(system));
    CHECK(TL(TLUpdateInterfaceList)(*system, NULL, 1000));
    CHECK(TL(TLOpenInterface)(*system, port, interface));
    CHECK(TL(IFOpenDevice)(*interface, camera, DEVICE_ACCESS_CONTROL, &device));
    return device;
}

static DS_HANDLE Grab(DEV_HANDLE device) {
    char id[256];
    size_t size = sizeof id;
    size_t payload = 0;
    DS_HANDLE stream = NULL;
    EVENT_HANDLE event = NULL;
    CHECK(TL(DevGetDataStreamID)(device, 0, id, &size));
    CHECK(TL(DevOpenDataStream)(device, id, &stream));
    size = sizeof payload;
    CHECK(TL(DSGetInfo)(stream, STREAM_INFO_PAYLOAD_SIZE, NULL, &payload, &size));
    CHECK(TL(GCRegisterEvent)(stream, EVENT_NEW_BUFFER, &event));
    for (int i = 0; i < 3; ++i) {
        BUFFER_HANDLE buffer = NULL;
        CHECK(TL(DSAllocAndAnnounceBuffer)(stream, payload, NULL, &buffer));
        CHECK(TL(DSQueueBuffer)(stream, buffer));
    }
    CHECK(TL(DSStartAcquisition)(stream, ACQ_START_FLAGS_DEFAULT, GENTL_INFINITE));
    for (int i = 0; i < 5; ++i) {
        EVENT_NEW_BUFFER_DATA data;
        size = sizeof data;
        CHECK(TL(EventGetData)(event, &data, &size, 30000));
        CHECK(TL(DSQueueBuffer)(stream, data.BufferHandle));
    }
    return stream;
}

static void ReadDescription(DEV_HANDLE device) {
    PORT_HANDLE port = NULL;
    uint64_t address = 0;
    size_t size = sizeof address;
    char text[5];
    CHECK(TL(DevGetPort)(device, &port));
    CHECK(TL(GCGetPortURLInfo)(port, 0, URL_INFO_FILE_REGISTER_ADDRESS, NULL, &address, &size));
    size = sizeof text;
    CHECK(TL(GCReadPort)(port, address, text, &size));
    if (memcmp(text, "<?xml", sizeof text) != 0)
        exit(4);
}

int main(int argc, char** argv) {
    TL_HANDLE system = NULL;
    IF_HANDLE interface = NULL;
    if (argc != 6)
        return 1;
    g_file = LoadFile(argv[1], argv[2]);
    const int before = CountThreads();
    CHECK(TL(GCInitLib)());
    DEV_HANDLE device = OpenDevice(&system, &interface, argv[4], argv[5]);
    ReadDescription(device);
    DS_HANDLE stream = Grab(device);
    if (strcmp(argv[3], "unload") == 0)
        UnloadFile(g_file);
    if (strcmp(argv[3], "unload") == 0 || strcmp(argv[3], "exit") == 0)
        return 0;
    if (strcmp(argv[3], "close") == 0) {
        CHECK(TL(DSStopAcquisition)(stream, ACQ_STOP_FLAGS_DEFAULT));
        CHECK(TL(DSClose)(stream));
        CHECK(TL(DevClose)(device));
        CHECK(TL(IFClose)(interface));
        CHECK(TL(TLClose)(system));
    }
    CHECK(TL(GCCloseLib)());
    printf("%d %d\n", before, CountThreads());
    UnloadFile(g_file);
    return 0;
}
