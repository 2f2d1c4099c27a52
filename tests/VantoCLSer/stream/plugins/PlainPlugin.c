/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A frame-grabber plug-in of plain structures and functions
 */

#include <string.h>

#include "PluginScript.h"

#define EXPORTED __attribute__((visibility("default")))

struct Grabber;

struct GrabberTable {
    bool (*init)(struct Grabber* self, const char* parameters, struct PlainCallee* callee);
    void (*shutdown)(struct Grabber* self);
    bool (*startGrab)(struct Grabber* self);
    bool (*stopGrab)(struct Grabber* self);
    uint32_t (*getLastErrorText)(struct Grabber* self, char* buffer, uint32_t size);
    uint64_t (*getValue)(struct Grabber* self, uint32_t parameter);
    int32_t (*poCLControl)(struct Grabber* self, uint32_t command);
};

struct Grabber {
    const struct GrabberTable* table;
};

EXPORTED struct PluginScript* GetPluginScript(void);
EXPORTED struct Grabber* CreateFrameGrabberObject(const char* parameters);
EXPORTED void DestroyFrameGrabberObject(struct Grabber* grabber);

static struct PluginScript script = {.makesObject = true, .initResult = true, .startResult = true, .stopResult = true};

static void Note(const char* call) {
    const size_t length = strlen(script.calls);
    if (length + strlen(call) + 2 > sizeof(script.calls))
        return;
    strcat(script.calls, call);
    strcat(script.calls, " ");
}

static void Keep(char* to, size_t size, const char* text) {
    strncpy(to, text, size - 1);
}

static void Run(void (*hook)(void*)) {
    if (hook != NULL)
        hook(script.hookContext);
}

static bool Init(struct Grabber* self, const char* parameters, struct PlainCallee* callee) {
    (void)self;
    Note("Init");
    Keep(script.initParameters, sizeof(script.initParameters), parameters);
    script.callee = callee;
    Run(script.onInit);
    return script.initResult;
}

static void Shutdown(struct Grabber* self) {
    (void)self;
    Note("Shutdown");
    Run(script.onShutdown);
}

static bool StartGrab(struct Grabber* self) {
    (void)self;
    Note("StartGrab");
    Run(script.onStart);
    return script.startResult;
}

static bool StopGrab(struct Grabber* self) {
    (void)self;
    Note("StopGrab");
    Run(script.onStop);
    return script.stopResult;
}

/* Fills the whole buffer, as a careless plug-in would: the text has no NUL. */
static uint32_t GetLastErrorText(struct Grabber* self, char* buffer, uint32_t size) {
    (void)self;
    const uint32_t length = script.errorText != NULL ? (uint32_t)strlen(script.errorText) : 0;
    script.textSizes[buffer != NULL ? 1 : 0] = size;
    if (buffer != NULL) {
        memset(buffer, '#', size);
        memcpy(buffer, script.errorText != NULL ? script.errorText : "", length < size ? length : size);
    }
    return script.claimedLength != 0 ? script.claimedLength : length;
}

static uint64_t GetValue(struct Grabber* self, uint32_t parameter) {
    (void)self;
    script.valueParameter = parameter;
    Run(script.onValue);
    return script.value;
}

static int32_t PoCLControl(struct Grabber* self, uint32_t command) {
    (void)self;
    script.poCLCommand = command;
    ++script.poCLCalls;
    return script.poCLResult;
}

static const struct GrabberTable table = {Init, Shutdown, StartGrab, StopGrab, GetLastErrorText, GetValue, PoCLControl};
static struct Grabber object = {&table};

struct PluginScript* GetPluginScript(void) {
    return &script;
}

#ifndef LACKS_CREATE
struct Grabber* CreateFrameGrabberObject(const char* parameters) {
    Note("Create");
    Keep(script.createParameters, sizeof(script.createParameters), parameters);
    return script.makesObject ? &object : NULL;
}
#endif

#ifdef HIDES_DESTROY
typedef void DestroyFunction(struct Grabber* grabber);

static void Destroy(struct Grabber* grabber) {
    (void)grabber;
    Note("Destroy");
}

/* Called whenever the function is looked up, which clang does not see. */
__attribute__((used)) static DestroyFunction* FindDestroy(void) {
    return script.hidesDestroy ? NULL : &Destroy;
}

void DestroyFrameGrabberObject(struct Grabber* grabber) __attribute__((ifunc("FindDestroy")));
#elif !defined(LACKS_DESTROY)
void DestroyFrameGrabberObject(struct Grabber* grabber) {
    Note(grabber == &object ? "Destroy" : "DestroySomethingElse");
}
#endif
