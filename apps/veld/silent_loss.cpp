#include "silent_loss.h"

#include <algorithm>
#include <numeric>
#include <vector>

#include "byte_meanings.h"
#include "names.h"
#include "route.h"
#include "veldnls/cei.h"

namespace veld {

namespace {

constexpr uint8_t firstTrail = 0x80;
constexpr uint8_t firstTrailBeyondUnicode = 0x90;

// What a byte map makes of every byte; nothing if there is none.
std::optional<std::array<uint8_t, byteValues>> mapAllBytes(const Pipeline& pipeline) {
  if (pipeline == nullptr) return std::nullopt;
  std::array<uint8_t, byteValues> bytes;
  std::iota(bytes.begin(), bytes.end(), uint8_t{0});
  std::array<uint8_t, byteValues> mapped{};
  if (convertShort(*pipeline, bytes, mapped).size != byteValues) return std::nullopt;
  return mapped;
}

bool passesThroughUtf16(int32_t targetClass) { return targetClass == NLS_CLASS_UTF8 || targetClass == NLS_CLASS_UTF16; }

}  // namespace

SilentLoss::SilentLoss(QZNLS& nls, CEI from, CEI to)
    : characters_(nls, from), order_(byteOrderOf(from)), unwritable_(nls, to) {
  if (passesAsItIs(nls, from, to)) return;
  const int32_t source = rowOf(nls, from).encodingClass;
  if (source == NLS_CLASS_UTF16) {
    form_ = Form::utf16;
  } else if (source == NLS_CLASS_UTF32) {
    form_ = Form::utf32;
  } else if (from == U_UTF8_CE && to != U_ASCII_CE) {
    form_ = Form::utf8;
    utf8_ =
        Utf8Scan(unwritable_, passesThroughUtf16(rowOf(nls, to).encodingClass) ? firstTrail : firstTrailBeyondUnicode);
  } else if (from == U_UTFE_CE && unwritable_.mayHaveAny()) {
    form_ = Form::utfEbcdic;
    utfEbcdic_.emplace(nls);
  } else if (isMultiByte(nls, from)) {
    form_ = Form::multiByte;
    countSingles(nls, from);
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
  const auto source = byteMeanings(nls, from);
  if (!source) return;
  for (size_t byte = 0; byte < byteValues; ++byte) {
    lost_[byte] |= (*source)[byte] == noMeaning || unwritable_.has((*source)[byte]);
  }
}

// The way through UTF-16 reports what it replaces, so only direct byte maps and copies are looked at.
void SilentLoss::countChangedMeaning(QZNLS& nls, CEI from, CEI to) {
  if (planRoute(nls, from, to).size() > 2) return;
  const auto source = byteMeanings(nls, from);
  const auto target = byteMeanings(nls, to);
  const auto map = mapAllBytes(makePipeline(nls, from, to));
  if (!source || !target || !map) return;
  for (size_t byte = 0; byte < byteValues; ++byte) lost_[byte] |= (*source)[byte] != (*target)[(*map)[byte]];
}

void SilentLoss::countSingles(QZNLS& nls, CEI from) {
  multiByte_.emplace(nls, from);
  const auto source = byteMeanings(nls, from);
  if (!source) return;
  for (size_t byte = 0; byte < byteValues; ++byte) {
    const char16_t meaning = (*source)[byte];
    if (meaning == noMeaning || unwritable_.has(meaning)) multiByte_->lose(static_cast<uint8_t>(byte));
  }
}

Bytes SilentLoss::judgeable(Bytes block) const {
  switch (form_) {
    case Form::utf8:
      return utf8_.judgeable(block);
    case Form::utfEbcdic:
      return utfEbcdic_->judgeable(block);
    case Form::utf16:
      return withoutOpenPair(block, order_);
    case Form::utf32:
      return withoutOpenUnit(block);
    case Form::bytes:
    case Form::multiByte:
      break;
  }
  return block;
}

std::optional<size_t> SilentLoss::find(Bytes block) {
  switch (form_) {
    case Form::utf8:
      return utf8_.find(block, unwritable_);
    case Form::utfEbcdic:
      return utfEbcdic_->find(block, unwritable_);
    case Form::utf16:
      return findLost(block, order_, unwritable_);
    case Form::utf32:
      return findNoCharacter(block, order_, unwritable_);
    case Form::bytes:
    case Form::multiByte:
      break;
  }
  const auto lost = std::find_if(block.begin(), block.end(), [this](uint8_t byte) { return lost_[byte]; });
  if (lost == block.end()) return std::nullopt;
  return static_cast<size_t>(lost - block.begin());
}

std::optional<Extent> SilentLoss::firstOfMultiByte(Bytes block, const ChainState& before) {
  const Bytes held = heldSource(before);
  const bool inDouble = (before[0].flags & NLS_PROGRESS_DOUBLE_MODE) != 0;
  std::vector<uint8_t> joined;
  if (!held.empty()) {
    joined.assign(held.begin(), held.end());
    joined.insert(joined.end(), block.begin(), block.end());
    block = joined;
  }
  const auto found = multiByte_->find(block, inDouble, unwritable_);
  if (!found) return std::nullopt;
  const int64_t start = static_cast<int64_t>(found->place) - static_cast<int64_t>(held.size());
  return Extent{start, start + static_cast<int64_t>(found->length)};
}

size_t SilentLoss::lengthAt(Bytes text) const {
  return form_ == Form::utfEbcdic ? utfEbcdic_->lengthAt(text[0]) : characters_.lengthAt(text, false);
}

std::optional<Extent> SilentLoss::first(Bytes block, const ChainState& before) {
  if (form_ == Form::multiByte) return firstOfMultiByte(block, before);
  const auto place = find(block);
  if (!place) return std::nullopt;
  const size_t end = std::min(block.size(), *place + lengthAt(block.subspan(*place)));
  return Extent{static_cast<int64_t>(*place), static_cast<int64_t>(end)};
}

}  // namespace veld
