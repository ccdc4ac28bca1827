#include "fuzz/support/object.h"

#include <iterator>

#include "fuzz/support/require.h"
#include "veldnls/cei.h"
#include "veldnls/nls.h"

namespace fuzz {

namespace {

constexpr CEI frequent[] = {
    U_UTF8_CE,       U_UTFE_CE,  U_L_UNICODE_CE, U_B_UNICODE_CE, U_L_UCS4_CE,    U_B_UCS4_CE, U_WLATIN1_CE,
    U_EBCDIC1047_CE, U_ASCII_CE, U_WHEBREW_CE,   U_WARABIC_CE,   U_EBCDIC424_CE, U_ANY_CE,
};
constexpr uint16_t frequentBit = 0x8000;
constexpr uint16_t multiByteBit = 0x4000;

// Encoding 0 and the double-byte types are read from options, which these hosts don't have.
bool isNamed(CEI cei) { return cei == 20 || cei >= 24; }

using Rows = std::vector<const EncodingDescriptor*>;

Rows rowsOf(bool multiByte) {
  QZNLS* nls = host().nls;
  Rows rows;
  for (CEI cei = 0; cei < NLS_CEI_COUNT; ++cei) {
    const EncodingDescriptor* row = nullptr;
    require(nls->getEncodingDescriptor(nls, cei, &row) == 0, "a row of the table");
    if (isNamed(cei) && (row->encodingClass > NLS_CLASS_UTF32) == multiByte) rows.push_back(row);
  }
  return rows;
}

const Rows& multiByteRows() {
  static const Rows rows = rowsOf(true);
  return rows;
}

}  // namespace

test::NlsHost& host() {
  static test::NlsHost made(VELDNLSLIB);
  require(made.nls != nullptr, "an object is made");
  return made;
}

const EncodingDescriptor& chooseEncoding(Input& input) {
  static const Rows rows = rowsOf(false);
  const uint16_t choice = input.word();
  if ((choice & frequentBit) == 0) {
    const Rows& all = (choice & multiByteBit) != 0 ? multiByteRows() : rows;
    return *all[choice % all.size()];
  }
  const EncodingDescriptor* row = nullptr;
  host().nls->getEncodingDescriptor(host().nls, frequent[choice % std::size(frequent)], &row);
  return *row;
}

CEI chooseMultiByte(Input& input) { return multiByteRows()[input.word() % multiByteRows().size()]->cei; }

OnTier::OnTier(unsigned choice) : before_(veldnls::kernels().tier) {
  using veldnls::KernelTier;
  constexpr KernelTier tiers[] = {KernelTier::avx512, KernelTier::avx2, KernelTier::scalar};
  const unsigned index = choice % (std::size(tiers) + 1);
  if (index < std::size(tiers)) veldnls::forceKernelTier(tiers[index]);
}

OnTier::~OnTier() { veldnls::forceKernelTier(before_); }

Bytes outputOf(TranscodingPipeline* pipeline, Span text) {
  Bytes output(6 * text.size() + 32);
  uint32_t written = 0;
  pipeline->transcodeResumable(pipeline, text.data(), static_cast<uint32_t>(text.size()), output.data(),
                               static_cast<uint32_t>(output.size()), &written, nullptr, nullptr);
  output.resize(written);
  return output;
}

}  // namespace fuzz
