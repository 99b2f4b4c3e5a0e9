/* The part of POSIX's iconv that libmdb and orlo-jet use; the C library of Windows has none. */
#ifndef ORLO_ICONV_H
#define ORLO_ICONV_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The two code pages, from and to. */
typedef void* iconv_t;

/* (iconv_t)-1 and EINVAL for an encoding that the system doesn't know. */
iconv_t iconv_open(const char* to, const char* from);
/* No encoding has a state here, so a call without a source does nothing. */
size_t iconv(iconv_t converter, char** from, size_t* left, char** to, size_t* room);
int iconv_close(iconv_t converter);

#ifdef __cplusplus
}
#endif

#endif
