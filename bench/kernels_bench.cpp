// Each kernel on each tier, beside memcpy: words of a text in random order, 64 KB of them and a field.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "core/kernels/kernels.h"
#include "modules/qznlsgb/tables.h"
#include "modules/qznlsmb/tables.h"

namespace {

using veldnls::KernelRun;
using veldnls::Kernels;
using veldnls::KernelTier;
using Bytes = std::vector<uint8_t>;

constexpr size_t pieceBytes = 65536;
constexpr size_t pieces = 20;
constexpr size_t fieldBytes = 16;

// Pieces of UTF-8 of whole words, so that a loop over them isn't learned by heart.
std::vector<Bytes> shuffledPieces(const std::string& name, size_t size) {
  std::ifstream file(std::string(BENCH_TEXTS "/") + name + ".txt");
  const std::vector<std::string> words{std::istream_iterator<std::string>(file), {}};
  std::mt19937 random(1);
  std::vector<Bytes> all(pieces);
  for (Bytes& piece : all) {
    while (!words.empty()) {
      const std::string& word = words[random() % words.size()];
      if (piece.size() + word.size() + 1 > size && !piece.empty()) break;
      piece.insert(piece.end(), word.begin(), word.end());
      piece.push_back(' ');
      if (piece.size() >= size) break;
    }
  }
  return all;
}

using Conversion = Bytes (*)(const Bytes& utf8);

Bytes same(const Bytes& utf8) { return utf8; }

Bytes utf16Of(const Bytes& utf8) {
  Bytes units(2 * utf8.size());
  units.resize(2 * veldnls::kernels().utf8ToUtf16(utf8.data(), utf8.size(), units.data(), utf8.size()).written);
  return units;
}

Bytes utf32Of(const Bytes& utf8) {
  Bytes units(4 * utf8.size());
  units.resize(4 * veldnls::kernels().utf8ToUtf32(utf8.data(), utf8.size(), units.data(), utf8.size()).written);
  return units;
}

// The sets of shift-jis, euc-jp and ibm-939 by number.
constexpr int leadByteSet = 3;
constexpr int eucSet = 2;
constexpr int shiftedSet = 1;
constexpr veldnls::LeadBytes leads = {0x81, 0x9F - 0x81, 0xE0, 0xFC - 0xE0};
constexpr uint32_t leadByteBlank = 0x8140;
constexpr uint32_t leadByteBlankOut = 0x4081;
constexpr uint32_t eucBlankOut = 0xA1A1;
constexpr uint32_t shiftedBlank = 0x4040;

const veldnls::ShiftedSource& shiftedSource() {
  static const veldnls::ShiftedSource source = {
      veldnls::toUnicodeSets[shiftedSet].codes, veldnls::singleToUnicode[4], shiftedBlank, 0xE1, 0x0E, 0x0F};
  return source;
}

const veldnls::ShiftedTarget& shiftedTarget() {
  static const veldnls::ShiftedTarget target = {
      veldnls::fromUnicodeSets[shiftedSet].codes, veldnls::singleFromUnicode[4], shiftedBlank, 1, 0x0E, 0x0F};
  return target;
}

KernelRun toCodes(const Kernels& kernels, const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  return kernels.unitsToCodes(veldnls::fromUnicodeSets[leadByteSet].codes, leadByteBlankOut, in, count, out, room);
}

veldnls::UnitCells gb18030Cells() { return {veldnls::gbFromUnicodeIndex.blocks, veldnls::gbFromUnicodeIndex.cells}; }

// Units that have a code in a second encoding, too.
KernelRun toCodesOfEuc(const Kernels& kernels, const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  const KernelRun common =
      kernels.unitsToCodes(veldnls::fromUnicodeSets[eucSet].codes, eucBlankOut, in, count, out, room);
  return toCodes(kernels, in, common.read, out, room);
}

KernelRun toCodesOfGb18030(const Kernels& kernels, const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  const KernelRun common = kernels.unitsToCells(gb18030Cells(), in, count, out, room);
  return toCodes(kernels, in, common.read, out, room);
}

KernelRun toShifted(const Kernels& kernels, const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  bool inDouble = false;
  return kernels.unitsToShifted(shiftedTarget(), inDouble, in, count, out, room);
}

// UTF-16 without the units at which the kernel stops.
template <auto kernel>
Bytes takenBy(const Bytes& utf8) {
  const Bytes units = utf16Of(utf8);
  Bytes taken;
  Bytes out(2 * units.size() + 2);
  for (size_t at = 0; at < units.size(); at += 2) {
    const KernelRun run =
        kernel(veldnls::kernels(), units.data() + at, (units.size() - at) / 2, out.data(), out.size());
    const auto first = units.begin() + static_cast<std::ptrdiff_t>(at);
    taken.insert(taken.end(), first, first + static_cast<std::ptrdiff_t>(2 * run.read));
    at += 2 * run.read;
  }
  return taken;
}

template <auto kernel>
Bytes convertedBy(const Bytes& utf8) {
  const Bytes units = takenBy<kernel>(utf8);
  Bytes out(2 * units.size() + 2);
  out.resize(kernel(veldnls::kernels(), units.data(), units.size() / 2, out.data(), out.size()).written);
  return out;
}

const auto unitTable = [] {
  std::array<char16_t, 256> table{};
  for (size_t i = 0; i < table.size(); ++i) table[i] = static_cast<char16_t>(i < 128 ? i : 0x400 + i);
  return table;
}();

const auto byteTable = [] {
  std::array<uint8_t, 256> table{};
  for (size_t i = 0; i < table.size(); ++i) table[i] = static_cast<uint8_t>(i * 167 + 13);
  return table;
}();

const auto pageTable = [] {
  static std::array<uint8_t, 256> page;
  page.fill(0x41);
  std::array<const uint8_t*, 256> table{};
  table.fill(page.data());
  return table;
}();

struct Job {
  const char* name;
  Conversion source;
  void (*run)(const Kernels&, const Bytes& in, Bytes& out);
};

const Job jobs[] = {
    {"memcpy", same,
     [](const Kernels&, const Bytes& in, Bytes& out) { std::memcpy(out.data(), in.data(), in.size()); }},
    {"byteMap", same,
     [](const Kernels& k, const Bytes& in, Bytes& out) {
       k.byteMap(byteTable.data(), in.data(), out.data(), in.size());
     }},
    {"expand", same,
     [](const Kernels& k, const Bytes& in, Bytes& out) {
       k.expand(unitTable.data(), in.data(), out.data(), in.size());
     }},
    {"pagesToBytes", utf16Of,
     [](const Kernels& k, const Bytes& in, Bytes& out) {
       k.pagesToBytes(pageTable.data(), in.data(), out.data(), in.size() / 2);
     }},
    {"asciiRun", same,
     [](const Kernels& k, const Bytes& in, Bytes&) { benchmark::DoNotOptimize(k.asciiRun(in.data(), in.size())); }},
    {"widenAscii16", same,
     [](const Kernels& k, const Bytes& in, Bytes& out) { k.widenAscii16(in.data(), out.data(), in.size()); }},
    {"narrowAscii16", utf16Of,
     [](const Kernels& k, const Bytes& in, Bytes& out) {
       k.narrowAscii16.little(in.data(), out.data(), in.size() / 2);
     }},
    {"narrowAscii32", utf32Of,
     [](const Kernels& k, const Bytes& in, Bytes& out) {
       k.narrowAscii32.little(in.data(), out.data(), in.size() / 4);
     }},
    {"swap16", utf16Of,
     [](const Kernels& k, const Bytes& in, Bytes& out) { k.swap16(in.data(), out.data(), in.size() / 2); }},
    {"swap32", utf32Of,
     [](const Kernels& k, const Bytes& in, Bytes& out) { k.swap32(in.data(), out.data(), in.size() / 4); }},
    {"utf8Valid", same,
     [](const Kernels& k, const Bytes& in, Bytes&) { benchmark::DoNotOptimize(k.utf8Valid(in.data(), in.size())); }},
    {"utf8ToUtf16", same,
     [](const Kernels& k, const Bytes& in, Bytes& out) { k.utf8ToUtf16(in.data(), in.size(), out.data(), in.size()); }},
    {"utf8ToUtf32", same,
     [](const Kernels& k, const Bytes& in, Bytes& out) { k.utf8ToUtf32(in.data(), in.size(), out.data(), in.size()); }},
    {"utf16ToUtf8", utf16Of,
     [](const Kernels& k, const Bytes& in, Bytes& out) {
       k.utf16ToUtf8.little(in.data(), in.size() / 2, out.data(), out.size());
     }},
    {"utf16ToUtf32", utf16Of,
     [](const Kernels& k, const Bytes& in, Bytes& out) {
       k.utf16ToUtf32.little(in.data(), in.size() / 2, out.data(), in.size() / 2);
     }},
    {"utf32ToUtf8", utf32Of,
     [](const Kernels& k, const Bytes& in, Bytes& out) {
       k.utf32ToUtf8.little(in.data(), in.size() / 4, out.data(), out.size());
     }},
    {"utf32ToUtf16", utf32Of,
     [](const Kernels& k, const Bytes& in, Bytes& out) {
       k.utf32ToUtf16.little(in.data(), in.size() / 4, out.data(), in.size() / 2);
     }},
    {"unitsToCodes", takenBy<toCodes>,
     [](const Kernels& k, const Bytes& in, Bytes& out) {
       toCodes(k, in.data(), in.size() / 2, out.data(), in.size());
     }},
    {"codesToUnits", convertedBy<toCodes>,
     [](const Kernels& k, const Bytes& in, Bytes& out) {
       k.codesToUnits(veldnls::toUnicodeSets[leadByteSet].codes, leads, leadByteBlank, in.data(), in.size(), out.data(),
                      in.size());
     }},
    {"codesToUtf8", convertedBy<toCodes>,
     [](const Kernels& k, const Bytes& in, Bytes& out) {
       k.codesToUtf8(veldnls::toUnicodeSets[leadByteSet].codes, leadByteBlank, in.data(), in.size(), out.data(),
                     out.size());
     }},
    {"codesToCodes", convertedBy<toCodesOfEuc>,
     [](const Kernels& k, const Bytes& in, Bytes& out) {
       k.codesToCodes(veldnls::toUnicodeSets[leadByteSet].codes, leadByteBlank, veldnls::fromUnicodeSets[eucSet].codes,
                      eucBlankOut, in.data(), in.size(), out.data(), out.size());
     }},
    {"codesToCells", convertedBy<toCodesOfGb18030>,
     [](const Kernels& k, const Bytes& in, Bytes& out) {
       k.codesToCells(veldnls::toUnicodeSets[leadByteSet].codes, leadByteBlank, gb18030Cells(), in.data(), in.size(),
                      out.data(), out.size());
     }},
    {"unitsToShifted", takenBy<toShifted>,
     [](const Kernels& k, const Bytes& in, Bytes& out) {
       toShifted(k, in.data(), in.size() / 2, out.data(), out.size());
     }},
    {"shiftedToUnits", convertedBy<toShifted>,
     [](const Kernels& k, const Bytes& in, Bytes& out) {
       bool inDouble = false;
       k.shiftedToUnits(shiftedSource(), inDouble, in.data(), in.size(), out.data(), in.size());
     }},
};

void measure(benchmark::State& state, const Job& job, KernelTier tier, const std::string& text, size_t size) {
  veldnls::forceKernelTier(tier);
  std::vector<Bytes> inputs;
  size_t total = 0;
  size_t longest = 0;
  for (const Bytes& piece : shuffledPieces(text, size)) {
    inputs.push_back(job.source(piece));
    total += inputs.back().size();
    longest = std::max(longest, inputs.back().size());
  }
  Bytes output(4 * longest);
  const Kernels& kernels = veldnls::kernels();
  for (auto _ : state) {
    for (const Bytes& input : inputs) job.run(kernels, input, output);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(total) * static_cast<int64_t>(state.iterations()));
}

}  // namespace

int main(int argc, char** argv) {
  struct Tier {
    KernelTier tier;
    const char* name;
  };
  const Tier tiers[] = {{KernelTier::scalar, "scalar"}, {KernelTier::avx2, "avx2"}, {KernelTier::avx512, "avx512"}};
  for (const Job& job : jobs) {
    for (const char* text : {"en", "de", "ru", "ja", "emoji"}) {
      for (const size_t size : {pieceBytes, fieldBytes}) {
        for (const Tier& tier : tiers) {
          if (!veldnls::forceKernelTier(tier.tier)) continue;
          std::ostringstream name;
          name << job.name << '/' << text << '/' << size << '/' << tier.name;
          benchmark::RegisterBenchmark(name.str().c_str(), [&job, tier, text, size](benchmark::State& state) {
            measure(state, job, tier.tier, text, size);
          });
        }
      }
    }
  }
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
