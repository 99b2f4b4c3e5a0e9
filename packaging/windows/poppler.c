/* Poppler's tools for the tests under Wine: NAME.exe ARGUMENT... runs Linux's NAME, by way of the poppler.sh beside it.
   Wine can start such a program, but gives it no pipe and doesn't hear of its end; so what it says goes to a file. */
#include <windows.h>

#include <stdio.h>
#include <wchar.h>

enum { Longest = 32767, LookEvery = 10 /* ms */ };

int main(void)
{
    static wchar_t own[MAX_PATH], folder[MAX_PATH], told[MAX_PATH], done[MAX_PATH], line[Longest];
    GetModuleFileNameW(NULL, own, MAX_PATH);
    *wcsrchr(own, L'\\') = 0;
    GetTempPathW(MAX_PATH, folder);
    GetTempFileNameW(folder, L"pdf", 0, told);
    swprintf(done, MAX_PATH, L"%ls.done", told);
    swprintf(line, Longest, L"\"%ls\\poppler.sh\" \"%ls\" %ls", own, told, GetCommandLineW());
    STARTUPINFOW start = {.cb = sizeof start};
    PROCESS_INFORMATION process;
    if (!CreateProcessW(NULL, line, NULL, NULL, FALSE, 0, NULL, NULL, &start, &process))
        return 1;
    while (GetFileAttributesW(done) == INVALID_FILE_ATTRIBUTES)
        Sleep(LookEvery);
    FILE* text = _wfopen(told, L"rb");
    static char block[1 << 16];
    size_t got;
    while (text && (got = fread(block, 1, sizeof block, text)) > 0)
        fwrite(block, 1, got, stdout);
    if (text)
        fclose(text);
    int code = 1;
    FILE* end = _wfopen(done, L"rb");
    if (end && fscanf(end, "%d", &code) != 1)
        code = 1;
    if (end)
        fclose(end);
    _wremove(told);
    _wremove(done);
    return code;
}
