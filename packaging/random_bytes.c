/* Random bytes for the files that go to other Linux systems. The C++ library and expat of the
 * system that they are built on call these two, which only its own C library, glibc 2.36, has:
 * systems a year older could not start them. Defined here they stay inside of the file, and ask the
 * kernel. */
#include <sys/random.h>
#include <errno.h>
#include <stddef.h>
#include <stdint.h>
#include <stdlib.h>

uint32_t arc4random(void);
// NOLINTNEXTLINE(readability-identifier-naming): the name is the C library's
void arc4random_buf(void* bytes, size_t size);

void arc4random_buf(void* bytes, size_t size) {
  unsigned char* next = bytes;
  while (size > 0) {
    const ssize_t got = getrandom(next, size, 0);
    if (got > 0) {
      next += got;
      size -= (size_t)got;
    } else if (errno != EINTR) {
      abort(); /* callers cannot be told, and must not go on with what lay there */
    }
  }
}

uint32_t arc4random(void) {
  uint32_t value = 0;
  arc4random_buf(&value, sizeof value);
  return value;
}
