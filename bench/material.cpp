#include "bench/material.h"

#include <algorithm>
#include <array>
#include <memory>
#include <unordered_map>

#include "bench/peers.h"

namespace bench {

namespace {

// Shift-out, two bytes and shift-in, or the four bytes of gb18030.
constexpr size_t longestCharacter = 4;
constexpr size_t bothShifts = 2;

}  // namespace

std::vector<Converter> allConverters(const Library& library, const Encoding& from, const Encoding& to) {
  std::vector<Converter> all{library.converter(from, to)};
  for (Converter& peer : icuConverters(from, to)) all.push_back(std::move(peer));
  for (Converter& peer : iconvConverters(from, to)) all.push_back(std::move(peer));
  return all;
}

Text Material::restrictedTo(const Encoding& target, const Text& text) const {
  const Encoding& wide = encoding("utf-32le");
  const std::vector<Converter> there = allConverters(library_, wide, target);
  const std::vector<Converter> back = allConverters(library_, target, wide);
  return restricted(text, [&](char32_t character) {
    const std::u32string source(1, character);
    std::array<uint8_t, longestCharacter> code{};
    std::u32string result(1, 0);
    const Room resultRoom(reinterpret_cast<uint8_t*>(result.data()), sizeof(char32_t));
    for (size_t i = 0; i < there.size(); ++i) {
      std::array<uint8_t, longestCharacter> own{};
      const size_t length = there[i].convert(asBytes(source), own);
      if (length == 0) return false;
      if (i == 0) code = own;
      if (own != code) return false;
      if (back[i].convert(Bytes(own).first(length), resultRoom) != sizeof(char32_t) || result != source) return false;
    }
    return true;
  });
}

Pieces Material::cut(const Text& text, const Encoding& from, const Form& form) {
  const Converter encode = library_.converter(encoding("utf-32le"), from);
  const bool isWide = std::string(from.name) == "utf-32le";
  const auto next = characters(text, form.order);
  const Sizes sizes = sizesIn(from);
  Pieces pieces;
  for (size_t i = 0; i < form.pieceCount; ++i) {
    const std::u32string piece = takeCharacters(next, sizes, form.pieceBytes);
    pieces.add(isWide ? asBytes(piece) : Bytes(room_).first(encode.convert(asBytes(piece), room_)));
  }
  return pieces;
}

Sizes Material::sizesIn(const Encoding& target) const {
  if (hasKnownSizes(target)) {
    return {[&target](char32_t character) { return encodedSize(target, character); }};
  }
  const Converter encode = library_.converter(encoding("utf-32le"), target);
  const auto known = std::make_shared<std::unordered_map<char32_t, size_t>>();
  return {[encode, known](char32_t character) {
            const auto [entry, isNew] = known->try_emplace(character, 0);
            if (isNew) {
              std::array<uint8_t, longestCharacter> code{};
              entry->second = encode.convert(asBytes(std::u32string(1, character)), code);
            }
            return entry->second;
          },
          target.shape == Shape::shifted ? bothShifts : 0};
}

}  // namespace bench
