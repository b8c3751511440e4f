/* What the host in C calls, of a run-time library whose headers this system does not have. */
#pragma once

#include <stddef.h>

int strcmp(const char* one, const char* other);
size_t strlen(const char* text);
char* strstr(const char* text, const char* piece);
