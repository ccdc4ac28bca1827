// The rows of data/modules/qznlssb/rows.tsv: which page each single-byte encoding uses, and in which form.
#pragma once

#include <string>
#include <vector>

#include "pages_page.h"

namespace gen::pages {

enum class Form {
  none,        // no tables
  plain,       // the page as it stands
  open,        // with NEL and LF exchanged
  decodeOnly,  // a to-table alone
};

struct Row {
  Place place;
  size_t cei;
  std::string name;
  std::string page;  // empty for Form::none, and so are the rest
  Form form;
  bool ebcdic;
  size_t undefined;  // bytes without a meaning
  size_t pages;      // pages of the from-table

  bool hasTo() const { return form != Form::none; }
  bool hasFrom() const { return form == Form::plain || form == Form::open; }
};

// In the order of the file, which must be that of the CEIs.
std::vector<Row> readRows(const std::string& path);

// The page of a row in the row's form. The row has a to-table.
Page pageOf(const Row& row, Folder& folder);

}  // namespace gen::pages
