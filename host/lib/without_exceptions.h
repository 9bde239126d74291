/* For functions whose callers are not C++: what cannot be done for lack of memory reaches them as a failure. */
#ifndef HOST_LIB_WITHOUT_EXCEPTIONS_H
#define HOST_LIB_WITHOUT_EXCEPTIONS_H

#include <exception>

/* Returns what the operation returns, or the failure when it throws. */
template <typename Operation, typename Failure>
Failure without_exceptions(Failure failure, Operation operation) {
  try {
    return operation();
  } catch (const std::exception &) {
    return failure;
  }
}

#endif
