#include "convert.h"

#include <algorithm>
#include <iostream>
#include <map>
#include <optional>

#include "chain.h"
#include "failure.h"
#include "input.h"
#include "locate.h"
#include "names.h"
#include "output.h"
#include "route.h"
#include "silent_loss.h"
#include "text.h"
#include "veldnls/cei.h"

namespace veld {

namespace {

constexpr size_t markSize = 2;  // of a byte order mark

// One way between two encodings, with what has to be known to run it.
struct Conversion {
  Conversion(QZNLS& nls, CEI from, CEI to) : chain(nls, planRoute(nls, from, to)), silent(nls, from, to) {}

  Chain chain;
  SilentLoss silent;
};

// The conversions of one run by their source: two when byte order marks choose.
class Conversions {
 public:
  Conversions(QZNLS& nls, CEI to) : nls_(nls), to_(to) {}
  Conversion& from(CEI source) { return byCei_.try_emplace(source, nls_, source, to_).first->second; }

 private:
  QZNLS& nls_;
  CEI to_;
  std::map<CEI, Conversion> byCei_;
};

// "utf-16" leaves the byte order to the text.
bool readsByteOrderMark(const std::string& name) {
  const std::string_view wanted = "utf-16";
  return std::equal(name.begin(), name.end(), wanted.begin(), wanted.end(),
                    [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a - 'A' + 'a' : a) == b; });
}

// Takes a byte order mark off the start of the file and tells the encoding; without one the file is little-endian.
CEI takeByteOrderMark(Input& input) {
  while (input.bytes().size() < markSize && input.fill()) {
  }
  const Bytes start = input.bytes();
  if (start.size() < markSize) return U_L_UNICODE_CE;
  const bool little = start[0] == 0xFF && start[1] == 0xFE;
  const bool big = start[0] == 0xFE && start[1] == 0xFF;
  if (little || big) input.take(markSize);
  return big ? U_B_UNICODE_CE : U_L_UNICODE_CE;
}

// Converts one file after the other into one output.
class Run {
 public:
  Run(QZNLS& nls, const ConvertArguments& arguments)
      : nls_(nls),
        onLoss_(arguments.onLoss),
        marked_(readsByteOrderMark(arguments.from)),
        from_(resolveEncoding(nls, findEncoding(nls, arguments.from))),
        to_(resolveEncoding(nls, findEncoding(nls, arguments.to))),
        conversions_(nls, to_) {
    conversions_.from(from_);  // a way that doesn't exist shows before any file is touched
    if (from_ == U_UTFE_CE && to_ != U_ANY_CE) warnOfUtfEbcdic();
  }

  // Returns false when the run has to stop.
  bool convertFile(const std::string& path, Output& output);
  bool lossless() const { return lossless_; }

 private:
  void warnOfUtfEbcdic() const;
  std::optional<int64_t> findLoss(Conversion& conversion, const ChainState& before, Bytes block,
                                  const ChainStep& step) const;
  void reportLoss(const Input& input, uint64_t offset);
  void reportCut(const Input& input, uint64_t offset);

  QZNLS& nls_;
  OnLoss onLoss_;
  bool marked_;
  CEI from_;
  CEI to_;
  Conversions conversions_;
  bool lossless_ = true;
};

void Run::warnOfUtfEbcdic() const {
  std::cerr << "veld: warning: the library reads two-byte characters of utf-e (U+00A0 to U+03FF) as others, and does "
               "not report it; convert such text where it was written\n";
}

void Run::reportLoss(const Input& input, uint64_t offset) {
  lossless_ = false;
  const int32_t target = rowOf(nls_, to_).encodingClass;
  const bool holdsAll = target == NLS_CLASS_UTF8 || target == NLS_CLASS_UTF16 || target == NLS_CLASS_UTF32;
  std::cerr << "veld: " << input.name() << ": offset " << offset << ": this character is malformed or has no place in "
            << displayName(nls_, to_)
            << (onLoss_ == OnLoss::fail ? "; the conversion stopped ahead of it"
                                        : " and didn't come over, the first in this file")
            << " (check that the text is in " << displayName(nls_, from_)
            << (holdsAll ? "" : ", or choose a target that has it, as utf-8") << ")\n";
}

void Run::reportCut(const Input& input, uint64_t offset) {
  lossless_ = false;
  std::cerr
      << "veld: " << input.name() << ": offset " << offset
      << ": the file ends inside the character that begins here, which was left out (get the whole file, or check "
         "that it is in "
      << displayName(nls_, from_) << ")\n";
}

// The start of the first character of a block that didn't come over, counted from the block's start.
std::optional<int64_t> Run::findLoss(Conversion& conversion, const ChainState& before, Bytes block,
                                     const ChainStep& step) const {
  std::optional<int64_t> first;
  if (const auto silent = conversion.silent.first(block)) first = static_cast<int64_t>(*silent);
  if (step.substituted) {
    const int64_t reported = locateSubstitution(conversion.chain, before, block);
    if (!first || reported < *first) first = reported;
  }
  return first;
}

bool Run::convertFile(const std::string& path, Output& output) {
  Input input(path);
  Conversion& conversion = conversions_.from(marked_ ? takeByteOrderMark(input) : from_);
  Chain& chain = conversion.chain;
  ChainState state{};
  bool reported = false;
  for (bool more = true; more;) {
    more = input.fill();
    const Bytes block = conversion.silent.judgeable(input.bytes());
    const ChainState before = state;
    ChainStep step = chain.run(block, state);
    if (const auto loss = reported ? std::nullopt : findLoss(conversion, before, block, step)) {
      reported = true;
      reportLoss(input, static_cast<uint64_t>(static_cast<int64_t>(input.offset()) + *loss));
      const size_t kept = onLoss_ == OnLoss::fail ? static_cast<size_t>(std::max<int64_t>(*loss, 0)) : block.size();
      state = before;
      step = chain.run(block.first(kept), state);
    }
    output.write(step.output);
    if (reported && onLoss_ == OnLoss::fail) return false;
    input.take(step.taken);
  }
  const size_t waiting = chain.heldBytes(state) + input.bytes().size();
  if (waiting == 0) return true;
  reportCut(input, input.offset() + input.bytes().size() - waiting);
  return onLoss_ != OnLoss::fail;
}

}  // namespace

int convert(QZNLS& nls, const ConvertArguments& arguments) {
  Run run(nls, arguments);
  Output output(arguments.output);
  const std::vector<std::string> standardInput{"-"};
  for (const std::string& file : arguments.files.empty() ? standardInput : arguments.files) {
    if (!run.convertFile(file, output)) return exitLoss;
  }
  output.commit();
  return run.lossless() ? exitWhole : exitLoss;
}

}  // namespace veld
