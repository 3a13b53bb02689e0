#pragma once

// Just enough of a Mac for scripts/check-mac, written here: what the program uses, as Apple
// documents it, and nothing else. A Mac's compiler never reads these files.

// There, what LLVM's C++ library asks of locales; here the system's own headers have it.
#include <ctype.h>
#include <locale.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <wchar.h>
#include <wctype.h>

// Macros here, functions there.
#undef isdigit_l
#undef isxdigit_l

#ifdef __cplusplus
extern "C" {
#endif
int asprintf_l(char **text, locale_t locale, const char *format, ...);
int snprintf_l(char *text, size_t size, locale_t locale, const char *format, ...);
int sscanf_l(const char *text, locale_t locale, const char *format, ...);
int isdigit_l(int character, locale_t locale);
int isxdigit_l(int character, locale_t locale);
#ifdef __cplusplus
}
#endif
