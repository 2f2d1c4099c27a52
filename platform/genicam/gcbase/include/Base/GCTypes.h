/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Export macros and integer types of the GenICam base
 */
#pragma once

#include <cstddef>
#include <cstdint>

#ifdef _WIN32
#define GCBASE_EXPORT __declspec(dllexport)
#define GCBASE_IMPORT __declspec(dllimport)
#else
#define GCBASE_EXPORT __attribute__((visibility("default")))
#define GCBASE_IMPORT GCBASE_EXPORT
#endif

#ifdef GCBase_EXPORTS
#define GCBASE_API GCBASE_EXPORT
#else
#define GCBASE_API GCBASE_IMPORT
#endif
