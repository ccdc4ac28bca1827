// What veld convert tells on standard error.
#pragma once

#include <string>
#include <vector>

#include "convert.h"
#include "loss.h"

namespace veld {

// A file's part of the report, in the order of the calls: sentences as they come, or one object at the end.
class ConvertReport {
 public:
  ConvertReport(QZNLS& nls, const ConvertArguments& arguments, CEI to, Progress& progress)
      : nls_(nls), onLoss_(arguments.onLoss), format_(arguments.report), to_(to), progress_(progress) {}

  // What holds for all files.
  void warn(const std::vector<std::string>& warnings);

  void begin(const std::string& file) { file_ = {file, 0, {}}; }
  // The encoding of the file.
  void setSource(CEI from) { file_.from = from; }
  void addLoss(const Loss& loss);
  void end(uint64_t bytesRead, uint64_t bytesWritten, bool stopped);
  // Returns false where the sentence remains to be said.
  bool tellFailure(const std::string& sentence);

  // True while nothing was lost.
  bool isWhole() const { return whole_; }

 private:
  struct File {
    std::string name = {};  // empty between two files
    CEI from = 0;
    std::vector<Loss> losses = {};
  };

  void say(const std::string& sentence);
  std::string lossSentence(const Loss& loss) const;
  std::string cure(const Loss& loss) const;
  bool targetHoldsAll() const;

  QZNLS& nls_;
  OnLoss onLoss_;
  ReportFormat format_;
  CEI to_;
  Progress& progress_;
  std::vector<std::string> warnings_;
  File file_;
  bool whole_ = true;
};

}  // namespace veld
