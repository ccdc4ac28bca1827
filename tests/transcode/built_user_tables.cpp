#include "transcode/built_user_tables.h"

#include "faults/failing_memory.h"
#include "transcode/user_tables.h"

namespace transcode_test {

uint64_t used() { return faults_test::usedBytes(nls()->pool); }

void PrintTo(const Built& built, std::ostream* stream) {
  *stream << "result " << built.result << std::hex;
  for (const Pairs* pairs : {&built.fromSource, &built.toTarget}) {
    *stream << (pairs == &built.toTarget ? ", to target" : ", from source");
    for (const auto& [key, value] : *pairs) *stream << " " << key << ":" << value;
  }
}

Pairs pairsOf(CodeOverlay*& overlay) {
  Pairs pairs;
  if (overlay == nullptr) return pairs;
  for (uint32_t i = 0; i < overlay->count; ++i) pairs.emplace_back(overlay->pairs[i].key, overlay->pairs[i].value);
  veldnls::freeOverlay(nls()->pool, overlay);
  return pairs;
}

Built build(CEI source, CEI target, const UserCharacterTable* list) {
  const uint64_t before = used();
  CodeOverlay unset{};
  CodeOverlay* from = &unset;
  CodeOverlay* to = &unset;
  Built built;
  built.result = veldnls::buildUserTables(nls(), source, target, list, &from, &to);
  EXPECT_EQ(from != nullptr, (built.result & veldnls::builtFromSource) != 0);
  EXPECT_EQ(to != nullptr, (built.result & veldnls::builtToTarget) != 0);
  built.fromSource = pairsOf(from);
  built.toTarget = pairsOf(to);
  EXPECT_EQ(used(), before);
  return built;
}

Codes turned(const Codes& codes, size_t surplus) {
  std::vector<int> scratch(codes.size() + 2 * surplus, 0);
  std::vector<int> old(codes.begin(), codes.end());
  old.resize(codes.size() + 3 * surplus, 0);
  for (size_t i = 0; i < surplus; ++i) scratch[i] = old[2 * surplus + i];
  for (size_t i = 0; i + surplus < codes.size(); ++i) scratch[2 * surplus + i] = old[i];
  Codes result;
  for (size_t i = 0; i < codes.size(); ++i) result.push_back(static_cast<uint16_t>(scratch[i]));
  return result;
}

}  // namespace transcode_test
