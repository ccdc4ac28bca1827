// The conversion of one file.
#pragma once

#include <optional>
#include <vector>

#include "chain.h"
#include "convert_report.h"
#include "input.h"
#include "locate.h"
#include "output.h"
#include "route.h"
#include "seam.h"
#include "silent_loss.h"
#include "text_place.h"

namespace veld {

// One way between two encodings, with what has to be known to run it. Throws Failure where there is none.
struct Conversion {
  Conversion(QZNLS& nls, CEI source, CEI target);

  CEI from;
  CEI to;
  Chain chain;
  SilentLoss silent;
  LossJudge judge;
};

class FileConversion {
 public:
  FileConversion(QZNLS& nls, Conversion& conversion, Input& input, Output& output, ConvertReport& report,
                 Progress& progress);

  // Returns false when a loss stopped it.
  bool run(OnLoss onLoss);
  // Bytes that were read: in all, or ahead of the loss that stopped it.
  uint64_t read() const { return read_; }
  // Bytes that came out.
  uint64_t written() const { return written_; }

 private:
  std::optional<Extent> findLoss(const ChainState& before, Bytes block, const ChainStep& step) const;
  void reportLoss(const Extent& extent, const ChainState& before, Bytes block);
  void tell(const Loss& loss);
  void reportAtHeld(Bytes bytes, LossReason reason);
  ChainStep runBlock(Bytes block, OnLoss onLoss);
  size_t convertBlock(Bytes block, OnLoss onLoss);
  void follow(Bytes taken);
  bool convertEnd(OnLoss onLoss);
  void write(Bytes piece);

  Conversion& conversion_;
  Input& input_;
  Output& output_;
  ConvertReport& report_;
  Progress& progress_;
  CharacterForm form_;
  ChainState state_{};
  uint64_t offset_;            // of the text that is not yet run
  std::vector<uint8_t> held_;  // bytes ahead of that which the state holds
  TextPlace place_;            // of the first of these
  Seam seam_;
  uint64_t read_ = 0;
  uint64_t written_ = 0;
  bool lost_ = false;
  uint64_t lossOffset_ = 0;  // of the last one told
};

}  // namespace veld
