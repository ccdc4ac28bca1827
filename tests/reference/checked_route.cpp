#include "reference/checked_route.h"

namespace transcode_test {

const std::vector<CEI>& multiByteCeis() {
  static const std::vector<CEI> all = [] {
    std::vector<CEI> ceis;
    for (CEI cei = 0; cei < NLS_CEI_COUNT; ++cei) {
      if (isMultiByteClass(encodingText(cei).encodingClass)) ceis.push_back(cei);
    }
    return ceis;
  }();
  return all;
}

void loadGbModule() { const Pipeline fromGb18030(U_GB18030_CE, U_L_UNICODE_CE); }

void unloadMultiByteModules() {
  if (nls()->multiByteModule == nullptr) return;
  nls()->multiByteModule->destroy(nls()->multiByteModule);
  nls()->multiByteModule = nullptr;
}

bool gbModuleIsLoaded() {
  const auto* module = reinterpret_cast<const MultiByteModule*>(nls()->multiByteModule);
  return module != nullptr && module->gbModule != nullptr;
}

CheckedRoute::CheckedRoute(CEI source, CEI target)
    : source_(source),
      target_(target),
      gbLoaded_(gbModuleIsLoaded() || source == U_GB18030_CE),
      pipeline_(source, target) {
  if (pipeline_ == nullptr) {
    ADD_FAILURE() << name() << " is refused";
  } else if (pipeline_->sourceCei != source || pipeline_->targetCei != target) {
    ADD_FAILURE() << name() << " became " << pipeline_->sourceCei << " to " << pipeline_->targetCei;
  }
}

std::string CheckedRoute::name() const {
  const auto nameOf = [](CEI cei) {
    const std::string& name = encodingText(cei).name;
    return name.empty() ? "type " + std::to_string(cei) : name;
  };
  return nameOf(source_) + " to " + nameOf(target_);
}

MultiByteOutcome CheckedRoute::run(Span text, size_t room, const RunState& state) const {
  const TranscodeOptions* options = state.mayDropBlanks ? &dropBlanks : nullptr;
  if (!state.resumable) return {transcode_test::run(pipeline_, text, room, options), false};
  TranscodeProgress progress{};
  progress.flags = state.doubleMode ? NLS_PROGRESS_DOUBLE_MODE : 0;
  Outcome outcome = resume(pipeline_, text, room, progress, options);
  return {std::move(outcome), (progress.flags & NLS_PROGRESS_DOUBLE_MODE) != 0};
}

MultiByteOutcome CheckedRoute::expected(Span text, size_t room, const RunState& state) const {
  RunState known = state;
  known.gbLoaded = gbLoaded_;
  return expectedMultiByte(source_, target_, text, room, known);
}

void CheckedRoute::checkRun(Span text, size_t room, const RunState& state) const {
  ASSERT_EQ(run(text, room, state), expected(text, room, state))
      << name() << (state.resumable ? "" : ", without a record") << (state.doubleMode ? ", double mode" : "")
      << (state.mayDropBlanks ? ", dropping blanks" : "") << ", room " << room << ", input " << test::toHex(text);
}

void CheckedRoute::check(Span text, size_t room, bool doubleMode, bool mayDropBlanks) const {
  ASSERT_NO_FATAL_FAILURE(checkRun(text, room, {true, doubleMode, mayDropBlanks, false}));
  if (doubleMode) return;
  ASSERT_NO_FATAL_FAILURE(checkRun(text, room, {false, false, mayDropBlanks, false}));
}

}  // namespace transcode_test
