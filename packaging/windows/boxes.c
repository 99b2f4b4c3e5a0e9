/* Reads and works the installer's windows under Wine, for boxes.sh: boxes.exe BUTTON [press]
   Waits for a window with a button of that text that can be pressed; then writes what the window says, or presses. */
#include <windows.h>

#include <stdio.h>
#include <wchar.h>

enum { Longest = 2000, LookEvery = 50 /* ms */, Looks = 2400, Settle = 500 /* ms */ };

static const wchar_t* wanted;
static HWND found;

static const wchar_t* textOf(HWND window)
{
    static wchar_t text[Longest];
    text[0] = 0;
    SendMessageTimeoutW(window, WM_GETTEXT, Longest, (LPARAM)text, SMTO_ABORTIFHUNG, 2000, NULL);
    return text;
}

static LONG kindOf(HWND window, const wchar_t* class, LONG mask) /* -1: of another class */
{
    wchar_t name[64];
    GetClassNameW(window, name, 64);
    return _wcsicmp(name, class) ? -1 : GetWindowLongW(window, GWL_STYLE) & mask;
}

static BOOL canBePressed(HWND window)
{
    const LONG kind = kindOf(window, L"Button", BS_TYPEMASK);
    return kind >= 0 && kind != BS_GROUPBOX && IsWindowVisible(window) && IsWindowEnabled(window) &&
           !wcscmp(textOf(window), wanted);
}

static BOOL CALLBACK findChild(HWND window, LPARAM unused)
{
    if (canBePressed(window))
        found = window;
    return !found;
}

static BOOL CALLBACK findIn(HWND window, LPARAM unused)
{
    if (IsWindowVisible(window) && IsWindowEnabled(window))
        EnumChildWindows(window, findChild, 0);
    return !found;
}

static void say(const wchar_t* text)
{
    static char bytes[3 * Longest];
    WideCharToMultiByte(CP_UTF8, 0, text, -1, bytes, sizeof bytes, NULL, NULL);
    for (const char* at = bytes; *at; ++at)
        if (*at != '\r' && !(*at == '\n' && at[1] == '\r')) /* empty lines are left out */
            putchar(*at);
}

static BOOL CALLBACK sayChild(HWND window, LPARAM unused)
{
    const LONG shown = kindOf(window, L"Static", SS_TYPEMASK);
    const LONG button = kindOf(window, L"Button", BS_TYPEMASK);
    if (!IsWindowVisible(window) || !*textOf(window) || shown == SS_ICON || shown == SS_BITMAP)
        return TRUE;
    say(textOf(window));
    if (button == BS_AUTOCHECKBOX)
        printf(" [%s]", SendMessageW(window, BM_GETCHECK, 0, 0) ? "x" : " ");
    else if (button >= 0 && button != BS_GROUPBOX)
        printf(" [%s]", !IsWindowEnabled(window) ? "off" : button == BS_DEFPUSHBUTTON ? "Enter" : "button");
    putchar('\n');
    return TRUE;
}

int wmain(int count, wchar_t** arguments)
{
    wanted = count > 1 ? arguments[1] : L"";
    for (int look = 0; look < Looks && !found; ++look) {
        Sleep(LookEvery);
        EnumWindows(findIn, 0);
    }
    if (!found) {
        fprintf(stderr, "No window has a button \"%ls\" that can be pressed.\n", wanted);
        return 1;
    }
    if (count == 2) {
        Sleep(Settle);
        say(textOf(GetAncestor(found, GA_ROOT)));
        puts(":");
        EnumChildWindows(GetAncestor(found, GA_ROOT), sayChild, 0);
        return 0;
    }
    PostMessageW(found, BM_CLICK, 0, 0);
    if (kindOf(found, L"Button", BS_TYPEMASK) != BS_AUTOCHECKBOX)
        for (int look = 0; look < Looks && canBePressed(found); ++look)
            Sleep(LookEvery);
    return 0;
}
