#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Finds names of the standard library and of fmt in files that include their header neither themselves nor through ours.

    git ls-files '*.h' '*.cpp' | xargs cmake/check-includes.py

The compilers do not: other headers bring what is missing, and the precompiled ones bring nearly everything. Says what to
include, and fails when there is something.
"""
import collections
import os
import re
import sys

NAMES = {
    "algorithm": "all_of any_of none_of find find_if find_if_not count_if copy copy_n copy_if fill fill_n transform remove "
                 "remove_if replace replace_if reverse unique min max clamp minmax min_element max_element lower_bound "
                 "upper_bound equal_range binary_search sort stable_sort equal search mismatch for_each rotate shuffle "
                 "generate generate_n is_sorted lexicographical_compare adjacent_find partition",
    "any": "any any_cast",
    "array": "array",
    "atomic": "atomic atomic_bool atomic_int atomic_flag memory_order_relaxed memory_order_acquire memory_order_release "
              "atomic_thread_fence",
    "bit": "bit_cast bit_ceil bit_width countr_zero countl_zero popcount endian has_single_bit",
    "bitset": "bitset",
    "cctype": "isalnum isalpha isdigit isprint isspace isxdigit tolower toupper",
    "cerrno": "errno",
    "charconv": "from_chars to_chars chars_format",
    "chrono": "chrono",
    "cmath": "isnan isinf isfinite lround llround trunc floor ceil pow sqrt fabs round nextafter ldexp",
    "compare": "strong_ordering weak_ordering partial_ordering",
    "concepts": "same_as integral floating_point convertible_to derived_from invocable",
    "condition_variable": "condition_variable condition_variable_any cv_status",
    "csignal": "raise sig_atomic_t",
    "cstddef": "size_t byte ptrdiff_t nullptr_t max_align_t",
    "cstdint": "int8_t int16_t int32_t int64_t uint8_t uint16_t uint32_t uint64_t uintptr_t intptr_t uintmax_t",
    "cstdio": "FILE fopen fclose snprintf fprintf printf fputs fwrite fread perror rename",
    "cstdlib": "atoi strtod strtol strtoull getenv abort exit malloc free",
    "cstring": "memcpy memset memcmp memmove memchr strlen strcmp strncmp strchr strerror",
    "ctime": "time_t localtime gmtime strftime",
    "deque": "deque",
    "exception": "exception exception_ptr current_exception rethrow_exception make_exception_ptr terminate set_terminate "
                 "uncaught_exceptions",
    "filesystem": "filesystem",
    "fstream": "ifstream ofstream fstream",
    "functional": "function hash bind ref cref less greater invoke mem_fn",
    "future": "future promise async packaged_task shared_future future_status",
    "initializer_list": "initializer_list",
    "iomanip": "setw setfill setprecision",
    "iostream": "cout cerr cin clog",
    "iterator": "back_inserter inserter istreambuf_iterator ostreambuf_iterator istream_iterator ostream_iterator next prev "
                "distance advance make_move_iterator",
    "limits": "numeric_limits",
    "list": "list",
    "map": "map multimap",
    "memory": "unique_ptr shared_ptr weak_ptr make_unique make_shared enable_shared_from_this construct_at destroy_at "
              "static_pointer_cast dynamic_pointer_cast",
    "mutex": "mutex recursive_mutex timed_mutex recursive_timed_mutex lock_guard unique_lock scoped_lock once_flag call_once "
             "adopt_lock defer_lock try_to_lock",
    "new": "nothrow nothrow_t bad_alloc launder",
    "numeric": "accumulate iota reduce gcd",
    "optional": "optional nullopt make_optional",
    "ostream": "endl flush",
    "queue": "queue priority_queue",
    "random": "mt19937 mt19937_64 random_device uniform_int_distribution uniform_real_distribution bernoulli_distribution",
    "ranges": "ranges views",
    "regex": "regex smatch regex_match regex_search regex_replace",
    "set": "set multiset",
    "shared_mutex": "shared_mutex shared_timed_mutex shared_lock",
    "source_location": "source_location",
    "span": "span as_bytes as_writable_bytes",
    "sstream": "stringstream istringstream ostringstream",
    "stdexcept": "runtime_error logic_error invalid_argument out_of_range length_error overflow_error domain_error range_error",
    "stop_token": "stop_token stop_source stop_callback",
    "string": "string basic_string to_string stoi stol stoul stoull getline",
    "string_view": "string_view",
    "system_error": "system_error error_code errc generic_category system_category error_category",
    "thread": "thread jthread this_thread",
    "tuple": "tuple tie make_tuple forward_as_tuple apply",
    "type_traits": "is_same_v is_base_of_v is_integral_v is_signed_v is_floating_point_v is_trivially_copyable_v is_void_v "
                   "enable_if_t decay_t remove_cvref_t conditional_t make_unsigned_t underlying_type_t invoke_result_t",
    "typeinfo": "type_info bad_cast",
    "unordered_map": "unordered_map unordered_multimap",
    "unordered_set": "unordered_set",
    "utility": "move forward pair make_pair swap exchange as_const in_range cmp_less index_sequence make_index_sequence",
    "variant": "variant visit monostate get_if holds_alternative",
    "vector": "vector",
}
HEADER = {name: header for header, names in NAMES.items() for name in names.split()}

# What is taken for included with another header: its own interface is made of it.
WITH = {
    "algorithm": "utility cstddef iterator type_traits ranges",
    "array": "utility cstddef iterator initializer_list type_traits",
    "atomic": "type_traits",
    "chrono": "cstdint",
    "condition_variable": "mutex chrono stop_token",
    "cstdint": "cstddef",
    "cstdio": "cstddef",
    "cstdlib": "cstddef",
    "cstring": "cstddef",
    "deque": "cstddef iterator initializer_list",
    "filesystem": "string system_error iterator",
    "fstream": "string ostream",
    "functional": "utility cstddef type_traits tuple typeinfo",
    "future": "chrono memory exception system_error utility mutex",
    "iostream": "string ostream",
    "list": "cstddef iterator initializer_list",
    "map": "utility tuple cstddef iterator initializer_list type_traits compare",
    "memory": "utility cstddef exception new type_traits tuple",
    "mutex": "chrono system_error",
    "new": "exception cstddef",
    "optional": "utility type_traits initializer_list compare cstddef",
    "random": "cstdint",
    "set": "utility cstddef iterator initializer_list",
    "shared_mutex": "mutex chrono",
    "span": "cstddef iterator",
    "sstream": "string ostream",
    "stdexcept": "exception",
    "string": "string_view utility cstddef iterator initializer_list type_traits compare",
    "string_view": "cstddef iterator compare",
    "system_error": "exception",
    "thread": "chrono system_error utility stop_token",
    "tuple": "utility type_traits",
    "unordered_map": "utility iterator",
    "variant": "utility type_traits",
    "vector": "utility cstddef iterator initializer_list type_traits compare",
}
GTEST = ("algorithm atomic cstdint cstdio cstdlib cstring exception functional iostream limits map memory mutex optional set sstream "
         "string tuple typeinfo utility variant vector").split()

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.M)
NO_CODE = re.compile(r'R"(\w*)\(.*?\)\1"|"(?:\\.|[^"\\\n])*"|/\*.*?\*/|//[^\n]*', re.S)


class Tree:
    def __init__(self, files):
        self.text = {file: open(file, encoding="utf-8").read() for file in files}
        self.by_name = collections.defaultdict(list)
        for file in files:
            self.by_name[os.path.basename(file)].append(file)
        self.includes = {file: INCLUDE.findall(text) for file, text in self.text.items()}

    def ours(self, file, name):
        """The files that an include can mean: from the root, below a folder of headers, or beside the file."""
        beside = os.path.normpath(os.path.join(os.path.dirname(file), name))
        return [one for one in self.by_name[os.path.basename(name)] if one in (name, beside) or one.endswith("/" + name)]

    def included(self, file):
        """The standard headers that a file and our headers below it include."""
        seen, todo, headers = {file}, [file], set()
        while todo:
            one = todo.pop()
            for kind, name in self.includes[one]:
                if kind == "<":
                    headers.update(GTEST if name.startswith(("gtest/", "gmock/")) else [name])
                else:
                    new = set(self.ours(one, name)) - seen
                    seen |= new
                    todo += new
        return headers | {other for header in headers for other in WITH.get(header, "").split()}

    def missing(self, file):
        names = collections.defaultdict(set)
        present = self.included(file)
        code = NO_CODE.sub(" ", self.text[file])
        for name in re.findall(r"\bstd::(\w+)\b", code):
            if name in HEADER and HEADER[name] not in present:
                names[HEADER[name]].add("std::" + name)
        formatting = set(re.findall(r"\bfmt::\w+", code))
        if formatting and not any(header.startswith("fmt/") for header in present):
            names["fmt/format.h"] = formatting
        return names


def main():
    files = [file for file in sys.argv[1:] if file.endswith((".h", ".cpp"))]
    tree = Tree(files)
    wrong = 0
    for file in files:
        for header, names in sorted(tree.missing(file).items()):
            wrong += 1
            print(f"{file}: #include <{header}> for {', '.join(sorted(names))}")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
