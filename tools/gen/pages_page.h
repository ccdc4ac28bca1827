// Single-byte code pages as they stand in data/modules/qznlssb/pages/: one file a page, or a base and the lines in
// which a page differs from it.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <set>
#include <string>

#include "text.h"

namespace gen::pages {

constexpr uint16_t undefinedUnit = 0xFFFD;
constexpr size_t byteCount = 256;

using UnitsByByte = std::array<uint16_t, byteCount>;
using BytesByUnit = std::map<uint16_t, uint8_t>;

struct Page {
  std::string name;
  Place place;
  UnitsByByte to;                       // undefinedUnit: the byte has no meaning
  std::set<uint8_t> decodeOnly;         // bytes to which nothing converts
  BytesByUnit encodeOnly;               // units that no byte converts to
  BytesByUnit from;                     // the two directions joined: encodeOnly, and the inverse of the rest of `to`
  std::set<uint8_t> highBytes() const;  // of the units in `from`
};

// Pages by name, read on first use.
class Folder {
 public:
  explicit Folder(std::string path);

  // The page, with all it inherits. Fails at `asker` if there is no such page or its bases form a ring, and at the
  // page's own lines where these are malformed or two bytes claim one unit.
  const Page& page(const Place& asker, const std::string& name);

  // Fails for a file of the folder that was never asked for.
  void requireAllRead() const;

 private:
  std::string file(const std::string& name) const;
  Page read(const std::string& name);

  std::string path_;
  std::map<std::string, Page> pages_;
  std::set<std::string> reading_;
};

// The same page with NEL and LF exchanged in both directions: 15 is LF, 25 is NEL. The page must be a plain EBCDIC one.
Page openForm(const Page& plain);

}  // namespace gen::pages
