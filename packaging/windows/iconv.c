/* iconv by way of the system's code pages; built into libmdb.dll. */
#include "iconv.h"

#include <windows.h>

#include <errno.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

enum { Utf16 = 1200, LongestLetter = 4 /* bytes, of any encoding */ };

/* By its name, or by the number at its end: CP1252, WINDOWS-1250, IBM437. */
static UINT code_page(const char* name)
{
    static const struct {
        const char* name;
        UINT page;
    } named[] = {{"UTF-8", CP_UTF8}, {"UTF-16LE", Utf16}, {"UCS-2LE", Utf16},   {"SHIFT-JIS", 932},
                 {"BIG-5", 950},     {"KOI8-R", 20866},   {"KOI8-U", 21866}};
    for (size_t i = 0; i < sizeof named / sizeof *named; ++i)
        if (strcmp(name, named[i].name) == 0)
            return named[i].page;
    const UINT number = (UINT)strtoul(name + strcspn(name, "0123456789"), NULL, 10);
    return strncmp(name, "ISO-", 4) != 0 && IsValidCodePage(number) ? number : 0;
}

iconv_t iconv_open(const char* to, const char* from)
{
    const uintptr_t pages = (uintptr_t)code_page(from) << 16 | code_page(to);
    if (pages >> 16 == 0 || (pages & 0xFFFF) == 0) {
        errno = EINVAL;
        return (iconv_t)-1;
    }
    return (iconv_t)pages;
}

/* Decodes the letter at the beginning, and returns its size in bytes; 0 if there is none. */
static int decoded(UINT page, const char* bytes, size_t left, wchar_t letter[2], int* units)
{
    const int most = left < LongestLetter ? (int)left : LongestLetter;
    if (page == Utf16) {
        memcpy(letter, bytes, (size_t)(most & ~1));
        *units = most == 4 && IS_SURROGATE_PAIR(letter[0], letter[1]) ? 2 : 1;
        return most < 2 ? 0 : 2 * *units;
    }
    for (int size = 1; size <= most; ++size) {
        *units = MultiByteToWideChar(page, MB_ERR_INVALID_CHARS, bytes, size, letter, 2);
        if (*units > 0)
            return size;
    }
    return 0;
}

size_t iconv(iconv_t converter, char** from, size_t* left, char** to, size_t* room)
{
    const UINT source = (UINT)((uintptr_t)converter >> 16 & 0xFFFF), target = (UINT)((uintptr_t)converter & 0xFFFF);
    if (converter == (iconv_t)-1) {
        errno = EBADF;
        return (size_t)-1;
    }
    while (from && *from && *left > 0) {
        wchar_t letter[2];
        char bytes[LongestLetter];
        int units;
        const int size = decoded(source, *from, *left, letter, &units);
        if (size == 0) {
            errno = *left < LongestLetter ? EINVAL : EILSEQ;
            return (size_t)-1;
        }
        int length = (int)(units * sizeof *letter);
        if (target == Utf16)
            memcpy(bytes, letter, (size_t)length);
        else
            length = WideCharToMultiByte(target, target == CP_UTF8 ? WC_ERR_INVALID_CHARS : 0, letter, units, bytes,
                                         sizeof bytes, NULL, NULL);
        if (length == 0 || (size_t)length > *room) {
            errno = length == 0 ? EILSEQ : E2BIG;
            return (size_t)-1;
        }
        memcpy(*to, bytes, (size_t)length);
        *from += size;
        *left -= (size_t)size;
        *to += length;
        *room -= (size_t)length;
    }
    return 0;
}

int iconv_close(iconv_t converter)
{
    (void)converter;
    return 0;
}
