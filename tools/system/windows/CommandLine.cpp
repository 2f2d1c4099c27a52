/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Command lines of child processes
 */
#include "system/windows/CommandLine.h"

#include "system/Files.h"

namespace tools {

namespace {

void AppendArgument(std::wstring& line, const std::wstring& argument) {
    if (!line.empty())
        line += L' ';
    if (!argument.empty() && argument.find_first_of(L" \t\n\"") == std::wstring::npos) {
        line += argument;
        return;
    }
    line += L'"';
    std::size_t backslashes = 0;
    for (const wchar_t character : argument) {
        if (character == L'"')
            line.append(backslashes + 1, L'\\');
        backslashes = character == L'\\' ? backslashes + 1 : 0;
        line += character;
    }
    line.append(backslashes, L'\\');
    line += L'"';
}

}  // namespace

std::wstring CommandLineOf(const std::filesystem::path& program, const std::vector<std::string>& arguments) {
    std::wstring line;
    AppendArgument(line, program.wstring());
    for (const std::string& argument : arguments)
        AppendArgument(line, PathOf(argument).wstring());
    return line;
}

}  // namespace tools
