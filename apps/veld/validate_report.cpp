#include "validate_report.h"

#include <iostream>

#include "json_report.h"
#include "loss.h"
#include "names.h"
#include "text.h"

namespace veld {

void ValidateReport::begin(const std::string& file, CEI encoding) {
  file_ = file;
  encoding_ = encoding;
  faults_ = 0;
  if (format_ == ReportFormat::text) return;
  // An object that stays open for its faults.
  std::string head = toLine(Json{{"file", file}, {"encoding", displayName(nls_, encoding)}});
  head.resize(head.rfind('}'));
  progress_.clear();
  std::cout << head << ",\"faults\":[";
}

void ValidateReport::addFault(const Fault& fault) {
  progress_.clear();
  const std::string bytes = hexBytes(fault.bytes);
  ++faults_;
  if (format_ == ReportFormat::text) {
    std::cout << onOneLine(file_) << ": offset " << fault.offset << ", line " << fault.line << ", column "
              << fault.column << ": malformed in " << displayName(nls_, encoding_) << " at " << bytes << '\n';
    return;
  }
  const Json object{{"offset", fault.offset}, {"line", fault.line}, {"column", fault.column}, {"bytes", bytes}};
  std::string line = toLine(object);
  line.pop_back();
  std::cout << (faults_ > 1 ? "," : "") << line;
}

void ValidateReport::tellNarrowRules() {
  for (const std::string& rule : narrowRules(nls_, encoding_)) std::cerr << "veld: note: " << rule << '\n';
}

void ValidateReport::end(uint64_t bytes, bool wholeFile) {
  progress_.clear();
  if (format_ == ReportFormat::json) {
    Json object{{"result", faults_ == 0 ? "valid" : "invalid"}, {"read", bytes}};
    const std::vector<std::string> notes = narrowRules(nls_, encoding_);
    if (faults_ > 0 && !notes.empty()) object["notes"] = notes;
    const std::string tail = toLine(object);
    std::cout << "]," << tail.substr(1);
  } else if (faults_ == 0) {
    std::cout << onOneLine(file_) << ": valid " << displayName(nls_, encoding_) << ", " << bytes << " bytes\n";
  } else {
    if (wholeFile)
      std::cout << onOneLine(file_) << ": " << faults_ << (faults_ == 1 ? " fault in " : " faults in ") << bytes
                << " bytes\n";
    tellNarrowRules();
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
  std::cout.flush();
}

}  // namespace veld
