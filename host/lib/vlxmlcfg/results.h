/* What the functions of the XML configuration interface answer, besides 1 for a successful open and 0 elsewhere. */
#ifndef HOST_LIB_VLXMLCFG_RESULTS_H
#define HOST_LIB_VLXMLCFG_RESULTS_H

namespace xmlcfg {

constexpr int kOpened = 1;
constexpr int kDone = 0;

constexpr int kBadArgument = -1;  // a null pointer, an unknown mode, a name that XML cannot carry
constexpr int kMissing = -2;      // no such file; for a write open: no such folder either
constexpr int kUnreadable = -3;   // no permission, not a plain file, an input error
constexpr int kDamaged = -4;      // empty, or not one complete XML element
constexpr int kNotWritable = -5;  // a write open that may not write, or cannot create the missing file
constexpr int kReadOnly = -6;     // a value set on a handle that was opened for reading
constexpr int kNotStored = -7;    // the close could not replace the file, which is as it was

}  // namespace xmlcfg

#endif
