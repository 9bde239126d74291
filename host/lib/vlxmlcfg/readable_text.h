/*
 * Values as they stand in the file: ordinary text as itself, and what XML cannot carry or readers trim (control
 * characters, line ends, bytes that are not UTF-8, blanks at either end) as \xHH, so that every value comes back byte
 * for byte. A backslash is written \x5c; a backslash without x and two digits behind it is read as itself.
 */
#ifndef HOST_LIB_VLXMLCFG_READABLE_TEXT_H
#define HOST_LIB_VLXMLCFG_READABLE_TEXT_H

#include <string>
#include <string_view>

namespace xmlcfg {

std::string to_readable(std::string_view value);
std::string from_readable(std::string_view text);

}  // namespace xmlcfg

#endif
