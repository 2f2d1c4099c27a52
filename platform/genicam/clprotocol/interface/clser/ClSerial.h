/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The C interface of a Camera Link serial library (clser???), versions 1.0 to 2.1 of the Camera Link standard
 */
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#ifdef _WIN32
#define CLSER_CC __cdecl
#else
#define CLSER_CC
#endif

typedef void* hSerRef;

/* What clGetManufacturerInfo reports as version. */
enum {
    CL_DLL_VERSION_NO_VERSION = 1, /* not a Camera Link library */
    CL_DLL_VERSION_1_0 = 2,
    CL_DLL_VERSION_1_1 = 3,
    CL_DLL_VERSION_2_0 = 4,
    CL_DLL_VERSION_2_1 = 5
};

/* Results; 0 is success. */
enum {
    CL_ERR_NO_ERR = 0,
    CL_ERR_BUFFER_TOO_SMALL = -10001,
    CL_ERR_MANU_DOES_NOT_EXIST = -10002,
    CL_ERR_PORT_IN_USE = -10003,
    CL_ERR_TIMEOUT = -10004,
    CL_ERR_INVALID_INDEX = -10005,
    CL_ERR_INVALID_REFERENCE = -10006,
    CL_ERR_ERROR_NOT_FOUND = -10007,
    CL_ERR_BAUD_RATE_NOT_SUPPORTED = -10008,
    CL_ERR_OUT_OF_MEMORY = -10009,
    CL_ERR_REGISTRY_KEY_NOT_FOUND = -10010,
    CL_ERR_INVALID_PTR = -10011,
    CL_ERR_IN_USE = -10012,
    CL_ERR_UNABLE_TO_LOAD_DLL = -10098,
    CL_ERR_FUNCTION_NOT_FOUND = -10099
};

/* Baud rates, one bit each. */
enum {
    CL_BAUDRATE_9600 = 0x01,
    CL_BAUDRATE_19200 = 0x02,
    CL_BAUDRATE_38400 = 0x04,
    CL_BAUDRATE_57600 = 0x08,
    CL_BAUDRATE_115200 = 0x10,
    CL_BAUDRATE_230400 = 0x20,
    CL_BAUDRATE_460800 = 0x40,
    CL_BAUDRATE_921600 = 0x80,
    CL_BAUDRATE_FASTEST = 0x40000000
};

/* The exported functions, by type; the export has the name without the leading P. */
typedef int32_t(CLSER_CC* PclGetManufacturerInfo)(char* name, uint32_t* size, uint32_t* version);
typedef int32_t(CLSER_CC* PclGetNumSerialPorts)(uint32_t* count);
typedef int32_t(CLSER_CC* PclGetSerialPortIdentifier)(uint32_t index, char* id, uint32_t* size);
typedef int32_t(CLSER_CC* PclSerialInit)(uint32_t index, hSerRef* ref);
typedef void(CLSER_CC* PclSerialClose)(hSerRef ref);
typedef int32_t(CLSER_CC* PclSerialRead)(hSerRef ref, char* buffer, uint32_t* size, uint32_t timeoutMs);
typedef int32_t(CLSER_CC* PclSerialWrite)(hSerRef ref, char* buffer, uint32_t* size, uint32_t timeoutMs);
typedef int32_t(CLSER_CC* PclGetNumBytesAvail)(hSerRef ref, uint32_t* count);
typedef int32_t(CLSER_CC* PclFlushPort)(hSerRef ref);
typedef int32_t(CLSER_CC* PclGetSupportedBaudRates)(hSerRef ref, uint32_t* mask);
typedef int32_t(CLSER_CC* PclSetBaudRate)(hSerRef ref, uint32_t flag);
typedef int32_t(CLSER_CC* PclGetErrorText)(int32_t code, char* text, uint32_t* size);

#ifdef __cplusplus
}
#endif
