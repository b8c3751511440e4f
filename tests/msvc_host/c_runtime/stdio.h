/* What the host in C calls, of a run-time library whose headers this system does not have. */
#pragma once

int printf(const char* format, ...);
int puts(const char* text);
