/* The memory functions of the test program and all its libraries: they can be made to fail ("memory"), and count. */
#ifndef TESTS_HOST_FAILING_MEMORY_H
#define TESTS_HOST_FAILING_MEMORY_H

#include "failing.h"

namespace failing {

/* Pieces of memory that are in use. */
int pieces_in_use();

}  // namespace failing

#endif
