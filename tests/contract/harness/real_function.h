// The C library's own definition of a function that the test program defines itself.
#ifndef CONTRACT_HARNESS_REAL_FUNCTION_H
#define CONTRACT_HARNESS_REAL_FUNCTION_H

#include <dlfcn.h>

namespace contract {

template <typename Function>
Function *realFunction(const char *name) {
  return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

}  // namespace contract

#endif
