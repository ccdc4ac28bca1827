// A text in pieces, wherever it is cut and however little room there is, against the text in one piece.
//
// Input: source and target (two bytes each), room (one), count of cuts and tier of kernels (one), lengths of pieces
// (one each), then the text.
#include "fuzz/support/area.h"
#include "fuzz/support/object.h"
#include "fuzz/support/shifts.h"
#include "veldnls/cei.h"
#include "veldnls/nls.h"
#include "veldnls/status.h"

namespace fuzz {

namespace {

constexpr size_t longestText = 2200;  // beyond what scratch memory on the stack holds
constexpr size_t mostBytes = 9;       // that a byte becomes
constexpr size_t mostCuts = 15;
constexpr size_t longestPieceFactor = 9;
// Every character finds room, also behind held bytes.
constexpr size_t leastRoom = 8;
constexpr size_t roomChoices = 40;

struct Case {
  const EncodingDescriptor& source;
  const EncodingDescriptor& target;
  TranscodingPipeline* pipeline;
  Bytes text;
  std::vector<size_t> cuts;  // ascending places in the text

  size_t plenty() const { return mostBytes * text.size() + 64; }
};

// What a caller has when the whole text was given.
struct Fed {
  Bytes bytes;
  bool substituted = false;
  Bytes held;
  size_t notTaken = 0;
};

// Gives text[at, end) until it is taken or nothing moves. Returns how far it got.
size_t feedPiece(const Case& what, size_t at, size_t end, size_t room, TranscodeProgress& progress, Fed& fed) {
  static Area inputArea(longestText + 4096);
  static Area outputArea(mostBytes * longestText + 4096);
  const Room output = outputArea.place(room, At::end);
  for (;;) {
    const Span piece = Span(what.text).subspan(at, end - at);
    const Room input = inputArea.place(piece.size(), At::end);
    std::ranges::copy(piece, input.begin());
    std::ranges::fill(output, canary);
    uint32_t written = 0;
    const NlsStatus status = what.pipeline->transcodeResumable(
        what.pipeline, piece.empty() ? nullptr : input.data(), static_cast<uint32_t>(piece.size()), output.data(),
        static_cast<uint32_t>(room), &written, &progress, nullptr);
    require(written <= room, "more bytes are reported than there was room for");
    require(isUntouched(output.subspan(written)), "bytes behind those reported");
    require(progress.consumed <= piece.size(), "more is consumed than there was");
    require(progress.heldCount <= sizeof progress.held, "more is held than there is room for");
    fed.bytes.insert(fed.bytes.end(), output.begin(), output.begin() + static_cast<std::ptrdiff_t>(written));
    fed.substituted |= (progress.flags & NLS_PROGRESS_SUBSTITUTED) != 0;
    // All of the piece is taken or held.
    if (status == nlsIncompleteInput) return end;
    at += progress.consumed;
    if (at == end || (progress.consumed == 0 && written == 0)) return at;
  }
}

Fed feed(const Case& what, bool inPieces, size_t room) {
  TranscodeProgress progress{};
  Fed fed;
  size_t at = 0;
  if (inPieces) {
    for (const size_t cut : what.cuts) at = feedPiece(what, at, cut, room, progress, fed);
  }
  at = feedPiece(what, at, what.text.size(), room, progress, fed);
  fed.notTaken = what.text.size() - at;
  if (progress.pending != 0) fed.held.assign(progress.held, progress.held + progress.heldCount);
  return fed;
}

// In shifted text pieces begin and end in single-byte mode.
Fed joined(const Case& what, Fed fed) {
  joinSeams(fed.bytes, what.target.cei);
  return fed;
}

void requireSame(const Fed& actual, const Fed& wanted) {
  requireEqual(actual.bytes, wanted.bytes, "pieces give the text of the whole");
  require(actual.substituted == wanted.substituted, "pieces give the flag of the whole");
  requireEqual(actual.held, wanted.held, "pieces leave the held bytes of the whole");
  require(actual.notTaken == wanted.notTaken, "pieces take what the whole takes");
}

// UTF-16LE of a text, as the first step of a route that goes through it gives it.
Bytes unitsOf(CEI source, Span text) {
  // Where nothing is converted, bytes are checked as UTF-8.
  const Pipeline toUnits(source == U_ASCII_CE || source == U_ANY_CE ? U_UTF8_CE : source, U_L_UNICODE_CE);
  return toUnits == nullptr ? Bytes() : outputOf(toUnits, text);
}

// Whether a first step gives UTF-16 units that a second one, to UTF-8 or UTF-EBCDIC, puts together again.
bool isThroughUnits(const Case& what) {
  const CEI source = what.source.cei;
  return what.target.encodingClass == NLS_CLASS_UTF8 &&
         (what.source.encodingClass == NLS_CLASS_UTF8 || source == U_ASCII_CE || source == U_ANY_CE);
}

// Whether a step to a page sees the units of the text, two of which share a substitution byte.
bool isUnitsToPage(const Case& what) {
  const bool units = what.source.encodingClass == NLS_CLASS_UTF16 ||
                     (what.source.encodingClass == NLS_CLASS_UTF8 && what.source.cei != U_UTF8_CE);
  return units && what.target.encodingClass == NLS_CLASS_SINGLE_BYTE;
}

unsigned highByte(uint8_t byte) { return unsigned{byte} << 8; }

bool endsInHalf(const Case& what, size_t place) {
  const Bytes units = unitsOf(what.source.cei, Span(what.text).first(place));
  return units.size() >= 2 && isHighSurrogate(highByte(units.back()));
}

// A piece that ends in what a step behind it takes for the first half of a pair may change the text: a page has one
// substitution byte for a pair, but two when it is cut between calls; and of two steps the second keeps a first half in
// a record of its own, which ends with the call.
bool cutsAPair(const Case& what) {
  if (!isThroughUnits(what) && !isUnitsToPage(what)) return false;
  return std::ranges::any_of(what.cuts, [&](size_t cut) { return endsInHalf(what, cut); });
}

// In either byte order.
bool hasHalves(Span units) {
  for (size_t i = 0; i + 1 < units.size(); i += 2) {
    if (isHighSurrogate(highByte(units[i + 1])) || isHighSurrogate(highByte(units[i]))) return true;
  }
  return false;
}

// Where calls may end by themselves: behind any byte. Long texts aren't worth the search.
bool mayEndInHalf(const Case& what) {
  constexpr size_t longestSearched = 200;
  if (!hasHalves(unitsOf(what.source.cei, what.text))) return false;
  if (what.text.size() > longestSearched) return true;
  for (size_t place = 1; place <= what.text.size(); ++place) {
    if (endsInHalf(what, place)) return true;
  }
  return false;
}

// With little room a pair for which only its first unit has room is replaced, and a check of UTF-16 holds a whole unit
// that no call brings out at the end.
bool mindsLittleRoom(const Case& what, const Fed& whole) {
  if (isThroughUnits(what)) return mayEndInHalf(what);
  if (what.target.encodingClass != NLS_CLASS_UTF16) return false;
  const bool checks = host().nls->conversionNeeded(host().nls, what.source.cei, what.target.cei) == 0;
  return checks || hasHalves(whole.bytes);
}

// Where a conversion takes place, the run without progress gives the same text, but for an end inside a character.
void checkOneShot(const Case& what, const Fed& whole) {
  if (host().nls->conversionNeeded(host().nls, what.source.cei, what.target.cei) == 0) return;
  Bytes output(what.plenty());
  uint32_t written = 0;
  what.pipeline->transcode(what.pipeline, what.text.data(), static_cast<uint32_t>(what.text.size()), output.data(),
                           static_cast<uint32_t>(output.size()), &written, nullptr);
  output.resize(written);
  if (whole.held.empty()) {
    requireEqual(whole.bytes, output, "the run without progress gives the same text");
  } else {
    require(whole.bytes.size() <= output.size(), "the run without progress gives no less");
    requireEqual(whole.bytes, Span(output).first(whole.bytes.size()), "the run without progress begins with the text");
  }
}

}  // namespace

void check(Input input) {
  const EncodingDescriptor& source = chooseEncoding(input);
  const EncodingDescriptor& target = chooseEncoding(input);
  const size_t room = leastRoom + input.byte() % roomChoices;
  const unsigned choice = input.byte();
  const OnTier tier(choice / (mostCuts + 1));
  std::vector<size_t> lengths(choice % (mostCuts + 1));
  for (size_t& length : lengths) {
    const size_t byte = input.byte();
    length = byte < 128 ? byte % 16 : (byte - 128) * longestPieceFactor;
  }
  const Pipeline pipeline(source.cei, target.cei);
  if (pipeline == nullptr) return;
  Case what{source, target, pipeline, input.text(longestText), {}};
  size_t at = 0;
  for (const size_t length : lengths) what.cuts.push_back(at = std::min(at + length, what.text.size()));

  const Fed whole = feed(what, false, what.plenty());
  checkOneShot(what, whole);
  if (cutsAPair(what) || hasShiftsAsCharacters(source.cei, target.cei, what.text)) return;
  const Fed wanted = joined(what, whole);
  requireSame(joined(what, feed(what, true, what.plenty())), wanted);
  if (!mindsLittleRoom(what, whole)) requireSame(joined(what, feed(what, true, room)), wanted);
}

}  // namespace fuzz
