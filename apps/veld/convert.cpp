#include "convert.h"

#include <unistd.h>

#include <map>

#include "convert_report.h"
#include "failure.h"
#include "file_conversion.h"
#include "input.h"
#include "names.h"
#include "output.h"
#include "route.h"
#include "source_encoding.h"

namespace veld {

namespace {

bool goesToTerminal(const std::string& output) {
  return (output.empty() || output == "-") && isatty(STDOUT_FILENO) != 0;
}

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

// Converts one file after the other into one output.
class Run {
 public:
  Run(QZNLS& nls, const ConvertArguments& arguments, const std::vector<std::string>& files)
      : nls_(nls),
        onLoss_(arguments.onLoss),
        source_(nls, arguments.from),
        to_(resolveEncoding(nls, findEncoding(nls, arguments.to))),
        conversions_(nls, to_),
        progress_(arguments.progress, files, goesToTerminal(arguments.output)),
        report_(nls, arguments, to_, progress_) {
    conversions_.from(source_.cei());  // a way that doesn't exist shows before any file is touched
    report_.warn(warningsFor(nls, source_.cei(), to_));
  }

  // Returns the exit status.
  int convertFiles(const std::vector<std::string>& files, Output& output);

 private:
  bool convertFile(const std::string& path, Output& output);

  QZNLS& nls_;
  OnLoss onLoss_;
  SourceEncoding source_;
  CEI to_;
  Conversions conversions_;
  Progress progress_;
  ConvertReport report_;
};

// Returns false when the run has to stop.
bool Run::convertFile(const std::string& path, Output& output) {
  report_.begin(inputName(path));
  Input input(path);
  const CEI from = source_.begin(input);
  report_.setSource(from);
  FileConversion file(nls_, conversions_.from(from), input, output, report_, progress_);
  const bool goOn = file.run(onLoss_);
  report_.end(file.read(), file.written(), !goOn);
  return goOn;
}

int Run::convertFiles(const std::vector<std::string>& files, Output& output) {
  try {
    bool goOn = true;
    for (auto file = files.begin(); file != files.end() && goOn; ++file) goOn = convertFile(*file, output);
    progress_.finish();
    if (!goOn) return exitLoss;
    output.commit();
  } catch (const Failure& failure) {
    progress_.clear();
    if (!report_.tellFailure(failure.what())) throw;
    return exitNotDone;
  }
  return report_.isWhole() ? exitWhole : exitLoss;
}

}  // namespace

int convert(QZNLS& nls, const ConvertArguments& arguments) {
  const std::vector<std::string> files = arguments.files.empty() ? std::vector<std::string>{"-"} : arguments.files;
  Run run(nls, arguments, files);
  Output output(arguments.output, files);
  return run.convertFiles(files, output);
}

}  // namespace veld
