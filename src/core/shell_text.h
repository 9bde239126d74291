// Text from outside that goes into a shell command line: is it read there as nothing but itself?
#pragma once

namespace usbdev {

bool isSafeInDoubleQuotes(const char *text);
bool isSafeInSingleQuotes(const char *text);
/// As one bare word.
bool isSafeWord(const char *text);
/// As bare words: a word in which blanks may stand.
bool areSafeWords(const char *text);

}  // namespace usbdev
