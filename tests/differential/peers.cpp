#include "differential/peers.h"

#include <iconv.h>
#include <unicode/ucnv.h>

#include <map>
#include <memory>
#include <stdexcept>

namespace differential_test {

namespace {

// Room for any form of a text of single characters.
size_t roomFor(Span text) { return 4 * text.size() + 16; }

UConverter* icuConverter(const std::string& name) {
  static std::map<std::string, std::unique_ptr<UConverter, decltype(&ucnv_close)>> opened;
  const auto [place, fresh] = opened.try_emplace(name, nullptr, &ucnv_close);
  UConverter* converter = place->second.get();
  if (fresh) {
    UErrorCode error = U_ZERO_ERROR;
    converter = ucnv_open(name.c_str(), &error);
    if (U_FAILURE(error)) throw std::runtime_error("ICU has no " + name);
    place->second.reset(converter);
    ucnv_setToUCallBack(converter, UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
    ucnv_setFromUCallBack(converter, UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
    ucnv_setFallback(converter, false);
  }
  return converter;
}

std::optional<Bytes> byIcu(const std::string& source, const std::string& target, Span text) {
  UErrorCode error = U_ZERO_ERROR;
  std::u16string units(roomFor(text), 0);
  const int32_t count =
      ucnv_toUChars(icuConverter(source), units.data(), static_cast<int32_t>(units.size()),
                    reinterpret_cast<const char*>(text.data()), static_cast<int32_t>(text.size()), &error);
  if (U_FAILURE(error)) return std::nullopt;
  Bytes bytes(roomFor(text));
  const int32_t length = ucnv_fromUChars(icuConverter(target), reinterpret_cast<char*>(bytes.data()),
                                         static_cast<int32_t>(bytes.size()), units.data(), count, &error);
  if (U_FAILURE(error)) return std::nullopt;
  bytes.resize(static_cast<size_t>(length));
  return bytes;
}

class IconvHandle {
 public:
  IconvHandle(const std::string& source, const std::string& target)
      : handle_(iconv_open(target.c_str(), source.c_str())) {
    if (handle_ == reinterpret_cast<iconv_t>(-1)) throw std::runtime_error("iconv has no " + source + " to " + target);
  }
  ~IconvHandle() { iconv_close(handle_); }
  IconvHandle(const IconvHandle&) = delete;
  IconvHandle& operator=(const IconvHandle&) = delete;
  operator iconv_t() const { return handle_; }

 private:
  iconv_t handle_;
};

std::optional<Bytes> byIconv(const std::string& source, const std::string& target, Span text) {
  constexpr auto failed = static_cast<size_t>(-1);
  static std::map<std::pair<std::string, std::string>, IconvHandle> opened;
  const iconv_t handle = opened.try_emplace({source, target}, source, target).first->second;
  iconv(handle, nullptr, nullptr, nullptr, nullptr);
  Bytes input(text.begin(), text.end());
  Bytes bytes(roomFor(text));
  char* in = reinterpret_cast<char*>(input.data());
  char* out = reinterpret_cast<char*>(bytes.data());
  size_t inLeft = input.size();
  size_t outLeft = bytes.size();
  if (iconv(handle, &in, &inLeft, &out, &outLeft) == failed) return std::nullopt;
  bytes.resize(bytes.size() - outLeft);
  return bytes;
}

}  // namespace

const Peer icu{"ICU", byIcu};
const Peer systemIconv{"iconv", byIconv};

}  // namespace differential_test
