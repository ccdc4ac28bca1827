#include "validate_report.h"

#include <iostream>

#include "failure.h"
#include "json_report.h"
#include "loss.h"
#include "names.h"
#include "text.h"

namespace veld {

void ValidateReport::begin(const std::string& file, CEI encoding) {
  file_ = file;
  encoding_ = encoding;
  faults_ = 0;
  mayBeSound_ = false;
  if (format_ == ReportFormat::text) return;
  // An object that stays open for its faults.
  std::string head = toLine(Json{{"file", file}, {"encoding", displayName(nls_, encoding)}});
  head.resize(head.rfind('}'));
  progress_.clear();
  std::cout << head << ",\"faults\":[";
}

void ValidateReport::addFault(const TextFault& fault) {
  progress_.clear();
  const std::string bytes = hexBytes(fault.bytes);
  ++faults_;
  const NarrowRules& narrow = narrow_.try_emplace(encoding_, nls_, encoding_).first->second;
  mayBeSound_ = mayBeSound_ || narrow.mayBeSound(fault.bytes);
  if (format_ == ReportFormat::text) {
    std::cout << onOneLine(file_) << ": offset " << fault.offset << ", line " << fault.line << ", column "
              << fault.column << ": malformed in " << displayName(nls_, encoding_) << " at " << bytes << '\n';
  } else {
    const Json object{{"offset", fault.offset}, {"line", fault.line}, {"column", fault.column}, {"bytes", bytes}};
    std::string line = toLine(object);
    line.pop_back();
    std::cout << (faults_ > 1 ? "," : "") << line;
  }
  requireStandardOutput();
}

std::vector<std::string> ValidateReport::notes() const {
  return mayBeSound_ ? narrow_.at(encoding_).notes() : std::vector<std::string>{};
}

void ValidateReport::end(uint64_t bytes, bool wholeFile) {
  progress_.clear();
  if (format_ == ReportFormat::json) {
    Json object{{"result", faults_ == 0 ? "valid" : "invalid"}, {"read", bytes}};
    if (const std::vector<std::string> told = notes(); !told.empty()) object["notes"] = told;
    const std::string tail = toLine(object);
    std::cout << "]," << tail.substr(1);
  } else if (faults_ == 0) {
    std::cout << onOneLine(file_) << ": valid " << displayName(nls_, encoding_) << ", " << bytes << " bytes\n";
  } else {
    if (wholeFile)
      std::cout << onOneLine(file_) << ": " << faults_ << (faults_ == 1 ? " fault in " : " faults in ") << bytes
                << " bytes\n";
    for (const std::string& note : notes()) std::cerr << "veld: note: " << note << '\n';
  }
  std::cout.flush();
  file_.clear();
}

void ValidateReport::fail(const std::string& file, const std::string& sentence) {
  progress_.clear();
  if (format_ == ReportFormat::text) {
    std::cout.flush();
    std::cerr << "veld: " << onOneLine(sentence) << '\n';
    return;
  }
  if (file_ == file) {
    const std::string tail = toLine(Json{{"result", "failed"}, {"error", sentence}});
    std::cout << "]," << tail.substr(1);
  } else {
    std::cout << toLine(Json{{"file", file}, {"result", "failed"}, {"error", sentence}});
  }
  file_.clear();
  std::cout.flush();
}

}  // namespace veld
