#include "output/json.h"

namespace usbdevctl {

namespace {

// Texts come from devices: what is not UTF-8 becomes U+FFFD, so that the output is JSON whatever a device calls itself.
std::string dump(const Json &document, int indent) {
  return document.dump(indent, ' ', false, Json::error_handler_t::replace) + '\n';
}

}  // namespace

Json jsonDocument() { return Json{{"schema", kJsonSchema}}; }

std::string jsonText(const Json &document) { return dump(document, 2); }

std::string jsonLine(const Json &document) { return dump(document, -1); }

}  // namespace usbdevctl
