/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What each system does in its own way for a consumer in C. What fails ends the program, which says why.
 */
#pragma once

/* mode: how its names are bound, "local", "global" or "deep", where the system knows a difference. */
void* LoadFile(const char* path, const char* mode);
void* FindFunction(void* file, const char* name);
void UnloadFile(void* file);
/* Threads of this process. */
int CountThreads(void);
