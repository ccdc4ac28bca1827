// The routes that stand for all: every pair of Unicode forms, single bytes to and from each of them, bytes to bytes,
// pairs that copy, multi-byte text of every structure, and user characters. Tests of buffers, cuts, overlap, failing
// memory and threads go through this table; a new kind of route is a new row.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "bounds/texts.h"

namespace bounds_test {

struct Encoding {
  const char* name;
  CEI cei;
  TextKind kind;
};

// A host's list of user character tables, or null.
using UserTables = const UserCharacterTable* (*)();

const UserCharacterTable* noUserTables();

struct Route {
  Encoding source;
  Encoding target;
  // The list that stands while the route's pipelines are made.
  UserTables userTables = noUserTables;

  bool hasUserTables() const { return userTables != noUserTables; }
  // As utf8_to_wlatin1, or ms950_to_ibm939_withUserTables.
  std::string name() const;
  // The route's pipeline, made at the first call and shared by all.
  TranscodingPipeline* pipeline() const;
};

const std::vector<Route>& routes();

void PrintTo(const Route& route, std::ostream* stream);

bool isUnicode(const Encoding& encoding);
bool isUtf16(const Encoding& encoding);
bool isMultiByte(const Encoding& encoding);
bool isMultiByte(const Route& route);

// What ends double-byte mode in a target's text: each call closes with it what it has begun. Empty without shifts.
Bytes shiftInOf(const Encoding& encoding);

}  // namespace bounds_test
