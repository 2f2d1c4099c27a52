/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What each system does in its own way for a consumer in C
 */
#include "tests/gentl/consumer/ProducerFile.h"

#include <stdio.h>
#include <stdlib.h>
#include <windows.h>
/* Wants the types of the line above. */
#include <tlhelp32.h>

static void* OrExit(void* found, const char* name) {
    if (found == NULL) {
        fprintf(stderr, "%s: error %lu\n", name, GetLastError());
        exit(2);
    }
    return found;
}

void* LoadFile(const char* path, const char* mode) {
    (void)mode;
    return OrExit((void*)LoadLibraryA(path), path);
}

void* FindFunction(void* file, const char* name) {
    return OrExit((void*)GetProcAddress((HMODULE)file, name), name);
}

void UnloadFile(void* file) {
    FreeLibrary((HMODULE)file);
}

int CountThreads(void) {
    int count = 0;
    THREADENTRY32 entry = {.dwSize = sizeof entry};
    const HANDLE threads = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    for (BOOL more = Thread32First(threads, &entry); more; more = Thread32Next(threads, &entry))
        count += entry.th32OwnerProcessID == GetCurrentProcessId();
    CloseHandle(threads);
    return count;
}
