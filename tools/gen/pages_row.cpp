#include "pages_row.h"

#include <utility>

namespace gen::pages {

namespace {

constexpr int64_t lastCei = 229;

Form parseForm(const Line& line) {
  constexpr std::pair<std::string_view, Form> forms[] = {
      {"none", Form::none}, {"plain", Form::plain}, {"open", Form::open}, {"to", Form::decodeOnly}};
  for (const auto& [name, form] : forms) {
    if (line.field(3) == name) return form;
  }
  fail(line.place, "the form is none, plain, open or to");
}

bool parseFamily(const Line& line) {
  require(line.field(4) == "ascii" || line.field(4) == "ebcdic", line.place, "the family is ascii or ebcdic");
  return line.field(4) == "ebcdic";
}

Row parseRow(const Line& line) {
  require(line.fields.size() == 7, line.place, "expected cei, name, page, form, family, undefined, pages");
  Row row{};
  row.place = line.place;
  row.cei = static_cast<size_t>(parseDecimal(line, line.field(0), 0, lastCei));
  row.name = line.field(1);
  row.form = parseForm(line);
  if (row.hasTo()) {
    row.page = line.field(2);
    row.ebcdic = parseFamily(line);
    row.undefined = static_cast<size_t>(parseDecimal(line, line.field(5), 0, byteCount));
  }
  if (row.hasFrom()) row.pages = static_cast<size_t>(parseDecimal(line, line.field(6), 1, byteCount));
  const size_t firstUnused = row.hasFrom() ? 7 : row.hasTo() ? 6 : 2;
  for (size_t i = firstUnused; i < line.fields.size(); ++i) {
    require(i == 3 || line.field(i) == "-", line.place, "this form has no such field; write \"-\"");
  }
  return row;
}

}  // namespace

std::vector<Row> readRows(const std::string& path) {
  std::vector<Row> rows;
  for (const Line& line : readLines(path)) {
    rows.push_back(parseRow(line));
    require(rows.size() == 1 || rows[rows.size() - 2].cei < rows.back().cei, line.place,
            "CEIs must rise; sort the rows");
  }
  return rows;
}

Page pageOf(const Row& row, Folder& folder) {
  const Page& page = folder.page(row.place, row.page);
  return row.form == Form::open ? openForm(page) : page;
}

}  // namespace gen::pages
