#include "silent_loss.h"

#include <algorithm>
#include <numeric>

#include "names.h"
#include "route.h"
#include "veldnls/cei.h"

namespace veld {

namespace {

constexpr size_t byteValues = 256;
constexpr size_t firstBeyondAscii = 0x80;
constexpr uint8_t firstTrail = 0x80;
constexpr uint8_t firstTrailBeyondUnicode = 0x90;
constexpr char16_t noMeaning = 0xFFFD;

// All byte values through a pipeline, each of which becomes one Unit; nothing if there is no such pipeline.
template <class Unit>
std::optional<std::array<Unit, byteValues>> mapAllBytes(const Pipeline& pipeline) {
  if (pipeline == nullptr) return std::nullopt;
  std::array<uint8_t, byteValues> bytes;
  std::iota(bytes.begin(), bytes.end(), uint8_t{0});
  std::array<Unit, byteValues> units{};
  uint32_t written = 0;
  pipeline->transcode(pipeline.get(), bytes.data(), byteValues, units.data(), sizeof units, &written, nullptr);
  if (written != sizeof units) return std::nullopt;
  return units;
}

std::optional<std::array<char16_t, byteValues>> meanings(QZNLS& nls, CEI cei) {
  return mapAllBytes<char16_t>(Pipeline(nls.createToUtf16Pipeline(&nls, cei, nullptr, nullptr)));
}

bool passesThroughUtf16(int32_t targetClass) { return targetClass == NLS_CLASS_UTF8 || targetClass == NLS_CLASS_UTF16; }

}  // namespace

SilentLoss::SilentLoss(QZNLS& nls, CEI from, CEI to) {
  const bool asItIs = (isWildCard(from) || isWildCard(to)) && nls.conversionNeeded(&nls, from, to) == 0;
  if (asItIs) return;
  const int32_t source = rowOf(nls, from).encodingClass;
  if (from == U_B_UNICODE_CE || from == U_B_UCS4_CE) order_ = ByteOrder::big;
  if (source == NLS_CLASS_UTF16) {
    form_ = Form::utf16;
  } else if (source == NLS_CLASS_UTF32) {
    form_ = Form::utf32;
  } else if (from == U_UTF8_CE && to != U_ASCII_CE) {
    form_ = Form::utf8;
    lostTrail_ = passesThroughUtf16(rowOf(nls, to).encodingClass) ? firstTrail : firstTrailBeyondUnicode;
  } else {
    countBytes(nls, from, to);
  }
}

void SilentLoss::countBytes(QZNLS& nls, CEI from, CEI to) {
  if (rowOf(nls, from).encodingClass == NLS_CLASS_SINGLE_BYTE) {
    countWithoutMeaning(nls, from);
    if (rowOf(nls, to).encodingClass == NLS_CLASS_SINGLE_BYTE) countChangedMeaning(nls, from, to);
  } else if (to == U_ASCII_CE && nls.conversionNeeded(&nls, from, to) == 0) {
    std::fill(lost_.begin() + firstBeyondAscii, lost_.end(), true);
  }
}

void SilentLoss::countWithoutMeaning(QZNLS& nls, CEI from) {
  const auto source = meanings(nls, from);
  if (!source) return;
  for (size_t byte = 0; byte < byteValues; ++byte) lost_[byte] |= (*source)[byte] == noMeaning;
}

// The way through UTF-16 reports what it replaces, so only direct byte maps and copies are looked at.
void SilentLoss::countChangedMeaning(QZNLS& nls, CEI from, CEI to) {
  if (planRoute(nls, from, to).size() > 2) return;
  const auto source = meanings(nls, from);
  const auto target = meanings(nls, to);
  const auto map = mapAllBytes<uint8_t>(Pipeline(nls.createPipeline(&nls, from, to, nullptr, nullptr)));
  if (!source || !target || !map) return;
  for (size_t byte = 0; byte < byteValues; ++byte) lost_[byte] |= (*source)[byte] != (*target)[(*map)[byte]];
}

Bytes SilentLoss::judgeable(Bytes block) const {
  switch (form_) {
    case Form::utf8:
      return withoutOpenPlane16(block);
    case Form::utf16:
      return withoutOpenPair(block, order_);
    case Form::utf32:
      return withoutOpenUnit(block);
    case Form::bytes:
      break;
  }
  return block;
}

std::optional<size_t> SilentLoss::first(Bytes block) const {
  switch (form_) {
    case Form::utf8:
      return findPlane16(block, lostTrail_);
    case Form::utf16:
      return findUnpaired(block, order_);
    case Form::utf32:
      return findNoCharacter(block, order_);
    case Form::bytes:
      break;
  }
  const auto lost = std::find_if(block.begin(), block.end(), [this](uint8_t byte) { return lost_[byte]; });
  if (lost == block.end()) return std::nullopt;
  return static_cast<size_t>(lost - block.begin());
}

}  // namespace veld
