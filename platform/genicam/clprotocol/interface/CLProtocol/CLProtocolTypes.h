/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Types and numbers of the CLProtocol C interface, versions 1.1 and 1.2
 */
#pragma once

/* For C99 and C++11 as well: C++ has the names in the namespace CLProtocol, C as they are. */
#include <stdarg.h>
#include <stdint.h>

/* How a driver's functions are called, and what stands in front of one that a driver exports. */
#ifdef _WIN32
#define CLP_CC __cdecl
#define CLP_VISIBLE __declspec(dllexport)
#else
#define CLP_CC
#define CLP_VISIBLE __attribute__((visibility("default")))
#endif
#ifdef __cplusplus
#define CLP_EXPORT extern "C" CLP_VISIBLE
#define CLP_SIZED : CLINT32
#else
#define CLP_EXPORT extern CLP_VISIBLE
#define CLP_SIZED
#endif

typedef char CLINT8;
typedef int32_t CLINT32;
typedef uint32_t CLUINT32;
typedef int64_t CLINT64;
typedef char BOOL8;

#ifdef __cplusplus
namespace CLProtocol {
#endif

/* The version that these headers are of: what clpGetCLProtocolVersion answers. */
enum CLP_SIZED { CLP_VERSION_MAJOR = 1, CLP_VERSION_MINOR = 2 };

/* Results beyond those of the Camera Link serial API. Negative is an error, positive a success with a remark. */
enum CLP_SIZED {
    CLP_PENDING_WRITE = 20101,
    CLP_INVALID_DEVICEID = -20100,
    CLP_NO_DEVICE_FOUND = -20101,
    CLP_NO_XMLDESCRIPTION_FOUND = -20102,
    CLP_INVALID_COOKIE = -20103,
    CLP_LAST_ERROR = -20104, /**< argument of clpGetErrorText: the text of the last error */
    CLP_PARAM_NOT_SUPPORTED = -20105,
    CLP_PARAM_READ_ONLY = -20106,
    CLP_PARAM_SIZE = -20107,
    CLP_PARAM_VALUE = -20108,
    CLP_DRIVER_ERROR_FIRST = -30000, /**< codes of the driver's own: -30000 down to -30999 */
    CLP_DRIVER_NO_ANSWER = -30209,   /**< no camera answers on the line */
    CLP_DRIVER_ERROR_LAST = -30999
};

enum CLP_PARAMS CLP_SIZED {
    CLP_LOG_LEVEL = 1,
    CLP_LOG_CALLBACK = 2,
    CLP_STOP_PROBE_DEVICE = 3,
    CLP_DEVICE_BAUDERATE = -1,           /**< the device's baud rate, a Camera Link flag; needs a cookie */
    CLP_DEVICE_SUPPORTED_BAUDERATES = -2 /**< rates that device and host both support; read-only, needs a cookie */
};

enum CLP_LOG_LEVELS CLP_SIZED {
    CLP_LOG_FATAL = 0,
    CLP_LOG_ALERT = 100,
    CLP_LOG_CRIT = 200,
    CLP_LOG_ERROR = 300,
    CLP_LOG_WARN = 400,
    CLP_LOG_NOTICE = 500,
    CLP_LOG_INFO = 600,
    CLP_LOG_DEBUG = 700,
    CLP_LOG_NOTSET = 800
};

/* The usual time-out of a register access, milliseconds. */
enum CLP_SIZED { CLP_REGISTER_TIMEOUT = 500 };

#ifdef __cplusplus
}  // namespace CLProtocol
#else
typedef CLINT32 CLP_PARAMS;
typedef CLINT32 CLP_LOG_LEVELS;
#endif
