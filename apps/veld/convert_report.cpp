#include "convert_report.h"

#include <iostream>
#include <nlohmann/json.hpp>
#include <utility>

#include "json_report.h"
#include "names.h"
#include "text.h"
#include "veldnls/cei.h"

namespace veld {

namespace {

Json describe(const Loss& loss) {
  Json object{{"offset", loss.offset},
              {"line", loss.line},
              {"column", loss.column},
              {"bytes", hexBytes(loss.bytes)},
              {"reason", reasonName(loss.reason)}};
  if (loss.character) object["character"] = codePoint(*loss.character);
  return object;
}

}  // namespace

void ConvertReport::say(const std::string& sentence) {
  progress_.clear();
  std::cerr << "veld: " << onOneLine(sentence) << '\n';
}

void ConvertReport::warn(const std::vector<std::string>& warnings) {
  warnings_ = warnings;
  if (format_ == ReportFormat::json) return;
  for (const std::string& warning : warnings) say("warning: " + warning);
}

bool ConvertReport::targetHoldsAll() const {
  const int32_t target = rowOf(nls_, to_).encodingClass;
  return target == NLS_CLASS_UTF8 || target == NLS_CLASS_UTF16 || target == NLS_CLASS_UTF32;
}

std::string ConvertReport::cure(const Loss& loss) const {
  const std::string source = displayName(nls_, file_.from);
  switch (loss.reason) {
    case LossReason::cut:
      return " (get the whole file, or check that it is in " + source + ")";
    case LossReason::unmappable:
      return targetHoldsAll() ? " (the library has no way for it; choose another form of Unicode)"
                              : " (choose a target that has it, as utf-8)";
    default:
      return " (check that the text is in " + source + ")";
  }
}

std::string ConvertReport::lossSentence(const Loss& loss) const {
  const std::string bytes = hexBytes(loss.bytes);
  if (loss.reason == LossReason::cut) {
    return bytes + ": the file ends inside this character" +
           (onLoss_ == OnLoss::fail ? "; the conversion stopped ahead of it" : ", which was left out");
  }
  std::string sentence = bytes;
  switch (loss.reason) {
    case LossReason::malformed:
      sentence += " is malformed in " + displayName(nls_, file_.from);
      break;
    case LossReason::unassigned:
      sentence += " stands for no character in " + displayName(nls_, file_.from);
      break;
    default:
      if (loss.character) sentence += " (" + codePoint(*loss.character) + ")";
      sentence += " has no place in " + displayName(nls_, to_);
  }
  if (onLoss_ == OnLoss::fail) return sentence + "; the conversion stopped ahead of it";
  const bool copies = to_ == U_ASCII_CE && nls_.conversionNeeded(&nls_, file_.from, to_) == 0;
  return sentence + ", the first loss in this file; " +
         (copies ? "its bytes stay as they are" : "a substitute stands for it");
}

void ConvertReport::addLoss(const Loss& loss) {
  whole_ = false;
  file_.losses.push_back(loss);
  if (format_ == ReportFormat::json) return;
  say(file_.name + ": offset " + std::to_string(loss.offset) + ", line " + std::to_string(loss.line) + ", column " +
      std::to_string(loss.column) + ": " + lossSentence(loss) + cure(loss));
}

void ConvertReport::end(uint64_t bytesRead, uint64_t bytesWritten, bool stopped) {
  const File file = std::exchange(file_, {});
  if (format_ != ReportFormat::json) return;
  Json losses = Json::array();
  for (const Loss& loss : file.losses) losses.push_back(describe(loss));
  Json object{{"file", file.name},
              {"from", displayName(nls_, file.from)},
              {"to", displayName(nls_, to_)},
              {"result", stopped               ? "stopped"
                         : file.losses.empty() ? "whole"
                                               : "loss"},
              {"read", bytesRead},
              {"written", bytesWritten},
              {"losses", losses}};
  if (!warnings_.empty()) object["warnings"] = warnings_;
  progress_.clear();
  std::cerr << toLine(object);
}

bool ConvertReport::tellFailure(const std::string& sentence) {
  if (format_ != ReportFormat::json || file_.name.empty()) return false;
  progress_.clear();
  std::cerr << toLine(Json{{"file", file_.name}, {"result", "failed"}, {"error", sentence}});
  return true;
}

}  // namespace veld
