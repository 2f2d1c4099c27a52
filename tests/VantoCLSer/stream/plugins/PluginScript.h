/* SPDX-License-Identifier: Apache-2.0 */
/*
 * How tests steer the plain plug-in, in C. The tables below are the binary interface, written down once more.
 */
#pragma once

#include <stdbool.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

struct PlainCallee;
typedef void (*PlainNodeCallback)(int64_t value, void* context, uint32_t kind);

/* The stream grabber's operations, in their slots. */
struct PlainCalleeTable {
    bool (*frameDelivered)(struct PlainCallee* self, const void* frame);
    uint64_t (*registerDeviceNodeCallback)(struct PlainCallee* self, const char* name, PlainNodeCallback function,
                                           void* context, uint32_t kind);
    bool (*deregisterNodeCallback)(struct PlainCallee* self, uint64_t handle);
    uint64_t (*registerStreamNodeCallback)(struct PlainCallee* self, const char* name, PlainNodeCallback function,
                                           void* context, uint32_t kind);
};

struct PlainCallee {
    const struct PlainCalleeTable* table;
};

/* A frame, byte by byte. */
struct PlainFrame {
    uint32_t width;
    int32_t lineCount;
    uint64_t notRead1[2];
    uint64_t lineLength;
    uint64_t linePitch;
    uint64_t notRead2;
    uint64_t dataSize;
    const void* data;
    uint32_t frameTag;
};

/* What the plug-in has seen and what it does. A hook is called, if it is set, before the operation returns. */
struct PluginScript {
    char calls[512]; /* names of the operations in their order, each with a blank behind it */
    char createParameters[256];
    char initParameters[256];
    struct PlainCallee* callee;
    bool makesObject;
    bool initResult;
    bool startResult;
    bool stopResult;
    bool hidesDestroy; /* where the plug-in can: the function is not found any more */
    const char* errorText;
    uint32_t claimedLength; /* of the text, if it is not 0 */
    uint32_t textSizes[2];  /* the sizes that the text was asked with */
    uint64_t value;
    uint32_t valueParameter;
    int32_t poCLResult;
    uint32_t poCLCommand;
    int poCLCalls;
    void* hookContext;
    void (*onInit)(void* context);
    void (*onShutdown)(void* context);
    void (*onStart)(void* context);
    void (*onStop)(void* context);
    void (*onValue)(void* context);
};

typedef struct PluginScript* GetPluginScriptFunction(void);

#ifdef __cplusplus
}
#endif
