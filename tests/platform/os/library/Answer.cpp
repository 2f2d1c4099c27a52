/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A library for the tests of os::Library to load
 */

#ifdef _WIN32
#define ANSWER_EXPORT __declspec(dllexport)
#else
#define ANSWER_EXPORT __attribute__((visibility("default")))
#endif

extern "C" ANSWER_EXPORT int Answer() noexcept {
    return 42;
}
