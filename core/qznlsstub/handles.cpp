// Bodies that all handles share.
#include <cstring>

#include "core/qznlsstub.h"

namespace veldnls {

namespace {

void writeVersion(int32_t* output, int32_t value) {
  if (output != nullptr) *output = value;
}

}  // namespace

NlsStatus versionQuery(const void* /*handle*/, int32_t* major, int32_t* minor, int32_t* patch) {
  writeVersion(major, 3);
  writeVersion(minor, 1);
  writeVersion(patch, 1);
  return 0;
}

NlsStatus minimumVersionQuery(const void* /*handle*/, int32_t* major, int32_t* minor, int32_t* patch) {
  writeVersion(major, 3);
  writeVersion(minor, 0);
  writeVersion(patch, 0);
  return 0;
}

void setMagic(uint8_t (&magic)[4]) { std::memcpy(magic, "nevo", sizeof magic); }

}  // namespace veldnls
