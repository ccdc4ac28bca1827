#include "slots.h"

#include <array>

#include "modules/qznlsgb/tables.h"
#include "modules/qznlsmb/tables.h"

namespace test::kernels {

namespace {

using std::endian;
using veldnls::ItemKernel;
using veldnls::KernelRun;
using veldnls::Kernels;
using veldnls::KernelTier;
using veldnls::PrefixKernel;
using veldnls::TextKernel;
using veldnls::WholeKernel;

using Run = decltype(Slot::run);

Run prefix(std::function<PrefixKernel*(const Kernels&)> slot) {
  return [slot](const Kernels& kernels, const uint8_t* in, size_t count, uint8_t*, size_t) {
    return KernelRun{slot(kernels)(in, count), 0};
  };
}

Run items(std::function<ItemKernel*(const Kernels&)> slot) {
  return [slot](const Kernels& kernels, const uint8_t* in, size_t count, uint8_t* out, size_t) {
    const size_t done = slot(kernels)(in, out, count);
    return KernelRun{done, done};
  };
}

Run whole(std::function<WholeKernel*(const Kernels&)> slot) {
  return [slot](const Kernels& kernels, const uint8_t* in, size_t count, uint8_t* out, size_t) {
    slot(kernels)(in, out, count);
    return KernelRun{count, count};
  };
}

Run text(std::function<TextKernel*(const Kernels&)> slot) {
  return [slot](const Kernels& kernels, const uint8_t* in, size_t count, uint8_t* out, size_t room) {
    return slot(kernels)(in, count, out, room);
  };
}

// A table without order.
uint8_t mapped(size_t byte) { return static_cast<uint8_t>(byte * 167 + 13); }

const std::array<uint8_t, 256>& byteTable() {
  static const auto table = [] {
    std::array<uint8_t, 256> bytes{};
    for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = mapped(i);
    return bytes;
  }();
  return table;
}

std::array<char16_t, 256> unitTable(bool keepsAscii) {
  std::array<char16_t, 256> units{};
  for (size_t i = 0; i < units.size(); ++i) {
    units[i] = keepsAscii && i < 0x80 ? static_cast<char16_t>(i) : static_cast<char16_t>(i * 40503 + 7);
  }
  return units;
}

// Pages of which a text meets some that are null and some with zeros.
const uint8_t* const* pages() {
  static const auto bytes = [] {
    std::array<std::array<uint8_t, 256>, 8> content{};
    for (size_t page = 0; page < content.size(); ++page) {
      for (size_t i = 0; i < 256; ++i) {
        const bool without = page != 0 && i % 61 == 7;
        content[page][i] =
            without ? uint8_t{0} : static_cast<uint8_t>(i * (2 * page + 1) | (page == 0 && i == 0 ? 0 : 1));
      }
    }
    return content;
  }();
  static const auto table = [] {
    std::array<const uint8_t*, 256> addresses{};
    for (size_t i = 0; i < bytes.size(); ++i) addresses[i] = bytes[i].data();
    addresses[0x30] = bytes[3].data();
    addresses[0xD8] = bytes[5].data();
    return addresses;
  }();
  return table.data();
}

void addCodes(std::vector<Slot>& all) {
  static const veldnls::UnitCodes codes = veldnls::fromUnicodeSets[shiftJisSet].codes;
  static const veldnls::UnitCells cells = {veldnls::gbFromUnicodeIndex.blocks, veldnls::gbFromUnicodeIndex.cells};
  static const veldnls::CodeRows rows = veldnls::toUnicodeSets[shiftJisSet].codes;
  static const veldnls::LeadBytes leads = {0x81, 0x9F - 0x81, 0xE0, 0xFC - 0xE0};
  constexpr uint32_t blankCode = 0x8140;
  constexpr uint32_t blank = 0x4081;
  constexpr size_t eucSet = 2;
  static const veldnls::UnitCodes eucCodes = veldnls::fromUnicodeSets[eucSet].codes;
  constexpr uint32_t eucBlank = 0xA1A1;
  static constexpr uint8_t four[] = {0x0E, 0x0F, 0x1B, 0xE1};
  all.push_back({"unitsToCodes", Form::utf16Little, 1, 2, true,
                 [](const Kernels& k, const uint8_t* in, size_t count, uint8_t* out, size_t room) {
                   return k.unitsToCodes(codes, blank, in, count, out, room);
                 }});
  all.push_back({"unitsToDoubles", Form::utf16Little, 1, 2, true,
                 [](const Kernels& k, const uint8_t* in, size_t count, uint8_t* out, size_t room) {
                   return k.unitsToDoubles(codes, blank, in, count, out, room);
                 }});
  all.push_back({"unitsToCells", Form::utf16Little, 1, 2, true,
                 [](const Kernels& k, const uint8_t* in, size_t count, uint8_t* out, size_t room) {
                   return k.unitsToCells(cells, in, count, out, room);
                 }});
  all.push_back({"codesToUnits", Form::shiftJis, 2, 1, true,
                 [](const Kernels& k, const uint8_t* in, size_t count, uint8_t* out, size_t room) {
                   return k.codesToUnits(rows, leads, blankCode, in, count, out, room);
                 }});
  all.push_back({"codesToUtf8", Form::shiftJis, 1, 3, true,
                 [](const Kernels& k, const uint8_t* in, size_t count, uint8_t* out, size_t room) {
                   return k.codesToUtf8(rows, blankCode, in, count, out, room);
                 }});
  all.push_back({"codesToCodes", Form::shiftJis, 1, 2, true,
                 [](const Kernels& k, const uint8_t* in, size_t count, uint8_t* out, size_t room) {
                   return k.codesToCodes(rows, blankCode, eucCodes, eucBlank, in, count, out, room);
                 }});
  all.push_back({"codesToCells", Form::shiftJis, 1, 2, true,
                 [](const Kernels& k, const uint8_t* in, size_t count, uint8_t* out, size_t room) {
                   return k.codesToCells(rows, blankCode, cells, in, count, out, room);
                 }});
  all.push_back({"doublesToUnits", Form::shiftJisPairs, 2, 1, false,
                 [](const Kernels& k, const uint8_t* in, size_t count, uint8_t* out, size_t) {
                   const size_t done = k.doublesToUnits(rows, blankCode, in, out, count);
                   return KernelRun{done, done};
                 }});
  for (const bool before : {false, true}) {
    const std::string mode = before ? ", double mode" : ", single mode";
    all.push_back({"shiftedToUnits" + mode, Form::shifted, 2, 1, true,
                   [before](const Kernels& k, const uint8_t* in, size_t count, uint8_t* out, size_t room) {
                     bool inDouble = before;
                     return k.shiftedToUnits(shiftedSource(), inDouble, in, count, out, room);
                   }});
    all.push_back({"unitsToShifted" + mode, Form::utf16Little, 1, 3, true,
                   [before](const Kernels& k, const uint8_t* in, size_t count, uint8_t* out, size_t room) {
                     bool inDouble = before;
                     return k.unitsToShifted(shiftedTarget(), inDouble, in, count, out, room);
                   }});
  }
  all.push_back(
      {"runWithout", Form::bytes, 0, 0, false, [](const Kernels& k, const uint8_t* in, size_t count, uint8_t*, size_t) {
         return KernelRun{k.runWithout(four, in, count), 0};
       }});
}

std::vector<Slot> makeSlots() {
  std::vector<Slot> all = {
      {"byteMap", Form::bytes, 1, 1, false,
       [](const Kernels& kernels, const uint8_t* in, size_t count, uint8_t* out, size_t) {
         kernels.byteMap(byteTable().data(), in, out, count);
         return KernelRun{count, count};
       }},
      {"asciiRun", Form::utf8, 0, 0, false, prefix([](const Kernels& k) { return k.asciiRun; })},
      {"widenAscii16", Form::utf8, 2, 1, false, items([](const Kernels& k) { return k.widenAscii16; })},
      {"widenAscii32", Form::utf8, 4, 1, false, items([](const Kernels& k) { return k.widenAscii32; })},
      {"swap16", Form::utf16Little, 2, 1, false, whole([](const Kernels& k) { return k.swap16; })},
      {"swap32", Form::utf32Little, 4, 1, false, whole([](const Kernels& k) { return k.swap32; })},
      {"utf8Valid", Form::utf8, 0, 0, false, prefix([](const Kernels& k) { return k.utf8Valid; })},
      {"utf8ToUtf16", Form::utf8, 2, 1, true, text([](const Kernels& k) { return k.utf8ToUtf16; })},
      {"utf8ToUtf32", Form::utf8, 4, 1, true, text([](const Kernels& k) { return k.utf8ToUtf32; })},
  };
  for (const bool keepsAscii : {false, true}) {
    all.push_back({keepsAscii ? "expand of an ASCII page" : "expand", Form::bytes, 2, 1, false,
                   [table = unitTable(keepsAscii)](const Kernels& kernels, const uint8_t* in, size_t count,
                                                   uint8_t* out, size_t) {
                     kernels.expand(table.data(), in, out, count);
                     return KernelRun{count, count};
                   }});
  }
  all.push_back({"pagesToBytes", Form::utf16Little, 1, 1, false,
                 [](const Kernels& kernels, const uint8_t* in, size_t count, uint8_t* out, size_t) {
                   const size_t done = kernels.pagesToBytes(pages(), in, out, count);
                   return KernelRun{done, done};
                 }});
  const auto addOrders = [&all](const std::string& name, Form little, size_t outputUnit, size_t mostPerItem,
                                bool mayStopForRoom, const std::function<Run(bool)>& slot) {
    const Form big = little == Form::utf16Little ? Form::utf16Big : Form::utf32Big;
    all.push_back({name + " little", little, outputUnit, mostPerItem, mayStopForRoom, slot(false)});
    all.push_back({name + " big", big, outputUnit, mostPerItem, mayStopForRoom, slot(true)});
  };
  const auto pick = [](auto member, auto shape) {
    return [member, shape](bool big) {
      return shape([member, big](const Kernels& k) { return big ? (k.*member).big : (k.*member).little; });
    };
  };
  addOrders("asciiRun16", Form::utf16Little, 0, 0, false, pick(&Kernels::asciiRun16, prefix));
  addOrders("narrowAscii16", Form::utf16Little, 1, 1, false, pick(&Kernels::narrowAscii16, items));
  addOrders("narrowAscii32", Form::utf32Little, 1, 1, false, pick(&Kernels::narrowAscii32, items));
  addOrders("utf16ToUtf8", Form::utf16Little, 1, 3, true, pick(&Kernels::utf16ToUtf8, text));
  addOrders("utf16ToUtf32", Form::utf16Little, 4, 1, true, pick(&Kernels::utf16ToUtf32, text));
  addOrders("utf32ToUtf8", Form::utf32Little, 1, 4, true, pick(&Kernels::utf32ToUtf8, text));
  addOrders("utf32ToUtf16", Form::utf32Little, 2, 2, true, pick(&Kernels::utf32ToUtf16, text));
  addCodes(all);
  return all;
}

}  // namespace

const std::vector<Slot>& slots() {
  static const std::vector<Slot> all = makeSlots();
  return all;
}

veldnls::ShiftedSource shiftedSource() {
  static const std::array<char16_t, 256> singles = unitTable(false);
  return {veldnls::toUnicodeSets[shiftedSet].codes, singles.data(), 0x4040, 0xE1, 0x0E, 0x0F};
}

veldnls::ShiftedTarget shiftedTarget() {
  return {veldnls::fromUnicodeSets[shiftedSet].codes, byteTable().data(), 0x4040, 0, 0x0E, 0x0F};
}

std::vector<KernelTier> vectorTiers() {
  std::vector<KernelTier> tiers;
  for (const KernelTier tier : {KernelTier::avx2, KernelTier::avx512}) {
    if (ForcedTier(tier).held()) tiers.push_back(tier);
  }
  return tiers;
}

std::string nameOf(KernelTier tier) {
  switch (tier) {
    case KernelTier::avx512:
      return "avx512";
    case KernelTier::avx2:
      return "avx2";
    case KernelTier::scalar:
      break;
  }
  return "scalar";
}

}  // namespace test::kernels
