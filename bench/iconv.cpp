#include <iconv.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>

#include "bench/peers.h"

namespace bench {

namespace {

struct Close {
  void operator()(iconv_t descriptor) const { iconv_close(descriptor); }
};
using Descriptor = std::shared_ptr<std::remove_pointer_t<iconv_t>>;

Descriptor open(const Encoding& from, const Encoding& to) {
  const iconv_t descriptor = iconv_open(to.iconvName, from.iconvName);
  if (descriptor == iconv_t(-1)) {
    throw std::runtime_error(std::string("iconv has no conversion from ") + from.iconvName + " to " + to.iconvName);
  }
  return {descriptor, Close{}};
}

template <bool finish>
Converter converter(const Descriptor& held) {
  return makeConverter("iconv", [held](Bytes input, Room output) -> size_t {
    char* source = const_cast<char*>(reinterpret_cast<const char*>(input.data()));
    char* target = reinterpret_cast<char*>(output.data());
    size_t sourceLeft = input.size();
    size_t targetLeft = output.size();
    size_t status = iconv(held.get(), &source, &sourceLeft, &target, &targetLeft);
    if constexpr (finish) status |= iconv(held.get(), nullptr, nullptr, &target, &targetLeft);
    return status == 0 ? output.size() - targetLeft : 0;
  });
}

}  // namespace

std::vector<Converter> iconvConverters(const Encoding& from, const Encoding& to) {
  if (from.iconvName == nullptr || to.iconvName == nullptr) return {};
  const Descriptor held = open(from, to);
  const bool mustFinish = from.iconvMustFinish || to.iconvMustFinish;
  return {mustFinish ? converter<true>(held) : converter<false>(held)};
}

}  // namespace bench
