/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What each system does in its own way for a consumer in C
 */
#include "tests/gentl/consumer/ProducerFile.h"

#include <dirent.h>
#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static void* OrExit(void* found) {
    if (found == NULL) {
        fprintf(stderr, "%s\n", dlerror());
        exit(2);
    }
    return found;
}

static int FlagsOf(const char* mode) {
    if (strcmp(mode, "global") == 0)
        return RTLD_GLOBAL;
    return strcmp(mode, "deep") == 0 ? RTLD_LOCAL | RTLD_DEEPBIND : RTLD_LOCAL;
}

void* LoadFile(const char* path, const char* mode) {
    return OrExit(dlopen(path, RTLD_NOW | FlagsOf(mode)));
}

void* FindFunction(void* file, const char* name) {
    return OrExit(dlsym(file, name));
}

void UnloadFile(void* file) {
    dlclose(file);
}

int CountThreads(void) {
    int count = -2; /* . and .. */
    DIR* const folder = opendir("/proc/self/task");
    while (folder != NULL && readdir(folder) != NULL)
        ++count;
    closedir(folder);
    return count;
}
