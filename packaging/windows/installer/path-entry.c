/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Puts a folder on a list of folders in the machine's environment, or takes it off, for the installer:
 * path-entry add|remove VARIABLE FOLDER
 *
 * The installer's own texts end after 1,023 characters, which would cut a longer list off. Here it has any length,
 * keeps its type and its other entries as they are, and running programs are told. A list without entries goes away.
 */
#include <stdlib.h>
#include <wchar.h>
#include <windows.h>

static const wchar_t kKey[] = L"SYSTEM\\CurrentControlSet\\Control\\Session Manager\\Environment";

static BOOL IsEntry(const wchar_t* entry, size_t length, const wchar_t* folder) {
    while (length > 0 && entry[length - 1] == L'\\')
        --length;
    return length == wcslen(folder) && _wcsnicmp(entry, folder, length) == 0;
}

/* The path without the folder, in memory of its own. */
static wchar_t* Without(const wchar_t* path, const wchar_t* folder) {
    wchar_t* result = calloc(wcslen(path) + 1, sizeof *result);
    wchar_t* end = result;
    while (result != NULL && *path != L'\0') {
        const size_t length = wcscspn(path, L";");
        if (length != 0 && !IsEntry(path, length, folder)) {
            if (end != result)
                *end++ = L';';
            wmemcpy(end, path, length);
            end += length;
        }
        path += length + (path[length] == L';' ? 1 : 0);
    }
    return result;
}

static wchar_t* With(const wchar_t* path, const wchar_t* folder) {
    const size_t room = wcslen(path) + wcslen(folder) + 2;
    wchar_t* result = malloc(room * sizeof *result);
    if (result != NULL)
        _snwprintf(result, room, L"%ls%ls%ls", path, *path != L'\0' ? L";" : L"", folder);
    return result;
}

static LONG ReadPath(HKEY key, const wchar_t* variable, wchar_t** path, DWORD* type) {
    DWORD size = 0;
    LONG status = RegQueryValueExW(key, variable, NULL, type, NULL, &size);
    if (status != ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND)
        return status;
    if (status == ERROR_FILE_NOT_FOUND)
        *type = REG_EXPAND_SZ;
    *path = calloc(size / sizeof **path + 2, sizeof **path); /* the value may lack its end */
    if (*path == NULL)
        return ERROR_OUTOFMEMORY;
    return status == ERROR_SUCCESS ? RegQueryValueExW(key, variable, NULL, type, (BYTE*)*path, &size) : ERROR_SUCCESS;
}

static LONG WritePath(HKEY key, const wchar_t* variable, const wchar_t* path, DWORD type) {
    if (*path != L'\0')
        return RegSetValueExW(key, variable, 0, type, (const BYTE*)path, (DWORD)((wcslen(path) + 1) * sizeof *path));
    const LONG status = RegDeleteValueW(key, variable);
    return status == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : status;
}

static LONG Change(const wchar_t* variable, const wchar_t* folder, BOOL add) {
    HKEY key;
    DWORD type = REG_NONE;
    wchar_t* path = NULL;
    LONG status = RegOpenKeyExW(HKEY_LOCAL_MACHINE, kKey, 0, KEY_READ | KEY_WRITE, &key);
    if (status != ERROR_SUCCESS)
        return status;
    status = ReadPath(key, variable, &path, &type);
    if (status == ERROR_SUCCESS) {
        wchar_t* rest = Without(path, folder);
        wchar_t* changed = rest != NULL && add ? With(rest, folder) : rest;
        status = ERROR_OUTOFMEMORY;
        if (changed != NULL)
            status = WritePath(key, variable, changed, type);
        if (changed != rest)
            free(changed);
        free(rest);
    }
    free(path);
    RegCloseKey(key);
    return status;
}

int wmain(int argc, wchar_t** argv) {
    if (argc != 4 || (wcscmp(argv[1], L"add") != 0 && wcscmp(argv[1], L"remove") != 0))
        return 2;
    if (Change(argv[2], argv[3], wcscmp(argv[1], L"add") == 0) != ERROR_SUCCESS)
        return 1;
    DWORD_PTR ignored;
    SendMessageTimeoutW(HWND_BROADCAST, WM_SETTINGCHANGE, 0, (LPARAM)L"Environment", SMTO_ABORTIFHUNG, 1000, &ignored);
    return 0;
}
