/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Export macros and integer types of the GenICam base
 */
#pragma once

#include <cstddef>
#include <cstdint>

// GCBASE_INTERFACE is for a class of nothing but pure virtual operations: its type is one in all libraries, and none of
// them holds code of it. VANTO_STATIC links all libraries into one file, which shows nothing of them.
#if !defined(_WIN32)
#define GCBASE_EXPORT __attribute__((visibility("default")))
#define GCBASE_IMPORT GCBASE_EXPORT
#define GCBASE_INTERFACE GCBASE_EXPORT
#elif defined(VANTO_STATIC)
#define GCBASE_EXPORT
#define GCBASE_IMPORT
#define GCBASE_INTERFACE
#else
#define GCBASE_EXPORT __declspec(dllexport)
#define GCBASE_IMPORT __declspec(dllimport)
#define GCBASE_INTERFACE
#endif

#ifdef GCBase_EXPORTS
#define GCBASE_API GCBASE_EXPORT
#else
#define GCBASE_API GCBASE_IMPORT
#endif
