#include "differential/multi_byte_peers.h"

#include <iconv.h>
#include <unicode/ucnv.h>

#include <cstring>
#include <stdexcept>

namespace differential_test {

namespace {

constexpr size_t room = 64;

iconv_t openIconv(const std::string& target, const std::string& source) {
  const iconv_t handle = iconv_open(target.c_str(), source.c_str());
  if (handle == reinterpret_cast<iconv_t>(-1)) throw std::runtime_error("iconv has no " + source + " to " + target);
  return handle;
}

std::optional<Bytes> convert(iconv_t handle, Span text) {
  constexpr auto failed = static_cast<size_t>(-1);
  Bytes input(text.begin(), text.end());
  Bytes bytes(room);
  char* in = reinterpret_cast<char*>(input.data());
  char* out = reinterpret_cast<char*>(bytes.data());
  size_t inLeft = input.size();
  size_t outLeft = bytes.size();
  iconv(handle, nullptr, nullptr, nullptr, nullptr);
  if (iconv(handle, &in, &inLeft, &out, &outLeft) != 0) return std::nullopt;
  // Some hold a character back for a mark behind it; others end with a shift.
  if (iconv(handle, nullptr, nullptr, &out, &outLeft) == failed) return std::nullopt;
  bytes.resize(bytes.size() - outLeft);
  return bytes;
}

UConverter* openIcu(const std::string& name) {
  UErrorCode error = U_ZERO_ERROR;
  UConverter* converter = ucnv_open(name.c_str(), &error);
  if (U_FAILURE(error)) throw std::runtime_error("ICU has no " + name);
  ucnv_setToUCallBack(converter, UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
  ucnv_setFromUCallBack(converter, UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
  ucnv_setFallback(converter, true);
  return converter;
}

}  // namespace

struct PeerConverter::Handles {
  UConverter* icu = nullptr;
  iconv_t toUnits = nullptr;
  iconv_t fromUnits = nullptr;
};

PeerConverter::PeerConverter(const std::string& peer, const std::string& converter)
    : handles_(std::make_unique<Handles>()) {
  if (peer == icu.name) {
    handles_->icu = openIcu(converter);
  } else {
    handles_->toUnits = openIconv("UTF-16LE", converter);
    handles_->fromUnits = openIconv(converter, "UTF-16LE");
  }
}

PeerConverter::~PeerConverter() {
  if (handles_->icu != nullptr) ucnv_close(handles_->icu);
  if (handles_->toUnits != nullptr) iconv_close(handles_->toUnits);
  if (handles_->fromUnits != nullptr) iconv_close(handles_->fromUnits);
}

std::optional<Bytes> PeerConverter::decode(Span text) {
  if (handles_->icu == nullptr) return convert(handles_->toUnits, text);
  UErrorCode error = U_ZERO_ERROR;
  char16_t units[room];
  const int32_t count = ucnv_toUChars(handles_->icu, units, room, reinterpret_cast<const char*>(text.data()),
                                      static_cast<int32_t>(text.size()), &error);
  if (U_FAILURE(error)) return std::nullopt;
  Bytes bytes(static_cast<size_t>(count) * sizeof(char16_t));
  std::memcpy(bytes.data(), units, bytes.size());
  return bytes;
}

std::optional<Bytes> PeerConverter::encode(Span units) {
  if (handles_->icu == nullptr) return convert(handles_->fromUnits, units);
  UErrorCode error = U_ZERO_ERROR;
  char16_t input[room];
  std::memcpy(input, units.data(), units.size());
  Bytes bytes(room);
  const int32_t length = ucnv_fromUChars(handles_->icu, reinterpret_cast<char*>(bytes.data()), room, input,
                                         static_cast<int32_t>(units.size() / sizeof(char16_t)), &error);
  if (U_FAILURE(error)) return std::nullopt;
  bytes.resize(static_cast<size_t>(length));
  return bytes;
}

}  // namespace differential_test
