#include "texts.h"

#include <algorithm>
#include <initializer_list>

#include "modules/qznlsmb/tables.h"

namespace test::kernels {

namespace {

struct Range {
  uint32_t first;
  uint32_t last;
};

struct Mixture {
  const char* name;
  std::vector<Range> ranges;  // chosen from evenly
};

const std::vector<Mixture> mixtures = {
    {"ascii", {{0x00, 0x7F}}},
    {"seldom two", {{0x20, 0x7E}, {0x20, 0x7E}, {0x20, 0x7E}, {0x20, 0x7E}, {0x20, 0x7E}, {0x20, 0x7E}, {0xC0, 0xFF}}},
    {"two", {{0x400, 0x45F}, {0x410, 0x44F}, {0x20, 0x20}}},
    {"edges of two", {{0x7F, 0x80}, {0x7FF, 0x800}}},
    {"three", {{0x3041, 0x3096}, {0x4E00, 0x9FFF}, {0x20, 0x20}}},
    {"edges of three", {{0x7FE, 0x801}, {0xD7FE, 0xD7FF}, {0xE000, 0xE001}, {0xFFFE, 0xFFFF}}},
    {"four", {{0x1F300, 0x1F6FF}}},
    {"edges of four", {{0xFFFF, 0x10001}, {0x3FFFF, 0x40000}, {0xFFFFE, 0xFFFFF}, {0x41, 0x41}}},
    {"all lengths", {{0x20, 0x7E}, {0xA0, 0x17F}, {0x900, 0x97F}, {0x10000, 0xFFFFF}}},
    {"last plane at times",
     {{0x20, 0x7E}, {0x20, 0x7E}, {0x20, 0x7E}, {0x430, 0x44F}, {0x430, 0x44F}, {0x100000, 0x10FFFF}}},
};

CodePoints draw(const Mixture& mixture, size_t count, std::mt19937& random) {
  CodePoints text;
  for (size_t i = 0; i < count; ++i) {
    const Range& range = mixture.ranges[random() % mixture.ranges.size()];
    text.push_back(range.first + static_cast<uint32_t>(random() % (range.last - range.first + 1)));
  }
  return text;
}

void appendUnit(Bytes& text, uint32_t unit, size_t size, bool big) {
  for (size_t i = 0; i < size; ++i) {
    text.push_back(static_cast<uint8_t>(unit >> 8 * (big ? size - 1 - i : i)));
  }
}

// Units of more pages than a block of a vector form goes through, behind a block of two pages. Every page of the slots'
// tables has a byte for each of them.
void drawPages(Bytes& text, size_t count, std::mt19937& random) {
  constexpr uint32_t highBytes[] = {0x00, 0x04, 0x01, 0x02, 0x03, 0x05, 0x06, 0x07, 0x30, 0xD8};
  constexpr size_t withFewPages = 70;
  for (size_t i = 0; i < count; ++i) {
    const size_t pages = i < withFewPages ? 2 : std::size(highBytes);
    appendUnit(text, highBytes[random() % pages] << 8 | (0x08 + static_cast<uint32_t>(random() % 60)), 2, false);
  }
}

// Units that are keys of a table, one for each `others` below 0x80.
void drawKeys(Bytes& text, Form form, const NlsPairTable& table, size_t count, unsigned others, std::mt19937& random) {
  for (size_t i = 0; i < count; ++i) {
    const uint32_t key = table.pairs[random() % static_cast<uint32_t>(table.count)].key;
    if (random() % (others + 1) != 0) {
      appendUnit(text, 0x20 + static_cast<uint32_t>(random() % 0x5F), form == Form::shiftJis ? 1 : 2, false);
    } else {
      appendUnit(text, key, 2, form != Form::utf16Little);
    }
  }
}

// Runs of up to `longest` characters of each mode, in turn.
void drawShifted(Bytes& text, size_t count, unsigned longest, std::mt19937& random) {
  const NlsPairTable& table = veldnls::toUnicodeSets[shiftedSet].table;
  for (bool inDouble = false; text.size() < count; inDouble = !inDouble) {
    for (size_t left = random() % (longest + 1); left > 0; --left) {
      if (inDouble) {
        appendUnit(text, table.pairs[random() % table.count].key, 2, true);
      } else {
        text.push_back(static_cast<uint8_t>(0x40 + random() % 0xC0));
      }
    }
    text.push_back(inDouble ? 0x0F : 0x0E);
  }
}

// Breaks about one unit in `distance`.
void damage(Bytes& text, Form form, size_t distance, std::mt19937& random) {
  const size_t size = unitSize(form);
  const uint32_t values8[] = {0x80, 0xBF, 0xC0, 0xC1, 0xC2, 0xE0, 0xED, 0xEF,
                              0xF0, 0xF3, 0xF4, 0xF5, 0xFF, 0x41, 0x0E, 0x0F};
  const uint32_t values[] = {0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0x41, 0x110000, 0x1FFFFF, 0x200000, 0x80000000};
  for (size_t at = random() % distance; (at + 1) * size <= text.size(); at += 1 + random() % (2 * distance)) {
    Bytes unit;
    appendUnit(unit, size == 1 ? values8[random() % std::size(values8)] : values[random() % std::size(values)], size,
               form == Form::utf16Big || form == Form::utf32Big);
    std::copy(unit.begin(), unit.end(), text.begin() + static_cast<std::ptrdiff_t>(at * size));
  }
}

}  // namespace

size_t unitSize(Form form) {
  switch (form) {
    case Form::bytes:
    case Form::utf8:
    case Form::shiftJis:
    case Form::shifted:
      return 1;
    case Form::utf16Little:
    case Form::utf16Big:
    case Form::shiftJisPairs:
      return 2;
    default:
      return 4;
  }
}

void appendUtf8(Bytes& text, uint32_t value) {
  const size_t trails = value < 0x80 ? 0 : value < 0x800 ? 1 : value < 0x10000 ? 2 : 3;
  const uint8_t marks[] = {0, 0xC0, 0xE0, 0xF0};
  text.push_back(static_cast<uint8_t>(marks[trails] | value >> 6 * trails));
  for (size_t i = trails; i > 0; --i) text.push_back(static_cast<uint8_t>(0x80 | (value >> 6 * (i - 1) & 0x3F)));
}

Bytes encode(Form form, const CodePoints& text) {
  const bool big = form == Form::utf16Big || form == Form::utf32Big;
  Bytes bytes;
  for (const uint32_t value : text) {
    if (form == Form::utf8 || form == Form::bytes) {
      appendUtf8(bytes, value);
    } else if (unitSize(form) == 4) {
      appendUnit(bytes, value, 4, big);
    } else if (value < 0x10000) {
      appendUnit(bytes, value, 2, big);
    } else {
      appendUnit(bytes, 0xD800 + ((value - 0x10000) >> 10), 2, big);
      appendUnit(bytes, 0xDC00 + (value & 0x3FF), 2, big);
    }
  }
  return bytes;
}

std::vector<Text> textsIn(Form form, size_t units) {
  std::mt19937 random(20240229);
  std::vector<Text> texts;
  const auto add = [&](const std::string& name, const Bytes& plain) {
    texts.push_back({name, plain});
    for (const size_t distance : {8u, 40u, 150u}) {
      texts.push_back({name + ", damaged by " + std::to_string(distance), plain});
      damage(texts.back().bytes, form, distance, random);
    }
  };
  const bool isShiftJis = form == Form::shiftJis || form == Form::shiftJisPairs;
  if (form == Form::shifted) {
    for (const unsigned longest : {1u, 3u, 10u, 80u}) {
      Bytes text;
      drawShifted(text, units, longest, random);
      add("runs of up to " + std::to_string(longest), text);
    }
  } else if (!isShiftJis) {
    for (const Mixture& mixture : mixtures) add(mixture.name, encode(form, draw(mixture, units, random)));
  }
  if (isShiftJis || form == Form::utf16Little) {
    const NlsPairTable& keys =
        isShiftJis ? veldnls::toUnicodeSets[shiftJisSet].table : veldnls::fromUnicodeSets[shiftJisSet].table;
    for (const unsigned others : {0u, 1u, 9u, 70u}) {
      Bytes text;
      drawKeys(text, form, keys, units, others, random);
      add("one character of the set for " + std::to_string(others) + " of ASCII", text);
    }
  }
  if (form == Form::utf16Little) {
    Bytes text;
    drawPages(text, units, random);
    add("many pages", text);
  }
  Bytes noise(units * unitSize(form));
  for (uint8_t& byte : noise) byte = static_cast<uint8_t>(random());
  texts.push_back({"noise", noise});
  return texts;
}

}  // namespace test::kernels
