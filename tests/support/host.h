// A host for tests: its five support records, with a memory context of its own, and an object made through an export.
#pragma once

#include "veldnls/host.h"
#include "veldnls/nls.h"

namespace test {

// The records of a host, complete but for services (the defaults hold). The context ends with the record.
class HostRecords {
 public:
  HostRecords();
  ~HostRecords();

  // Ends high memory ahead of the rest of the context, as hosts do: what is out may be given back, and no more asked
  // for. A second call does nothing.
  void closeHighMemory();

  HostRecords(const HostRecords&) = delete;
  HostRecords& operator=(const HostRecords&) = delete;

  VeldMemoryRecord memory{};
  VeldThreadBlock threadBlock{};
  VeldThreadRecord threads{};
  VeldFileRecord files{};
  VeldInputVector vector{};

  // The vector as the export takes it.
  void** input() { return reinterpret_cast<void**>(&vector); }

 private:
  bool highMemoryClosed_ = false;
};

// Host records and an object that `entry` makes with them; `nls` is null if that fails. Pass &VELDNLSLIB in tests that
// link the library's inside, or the address found by dlsym. The records that the library uses are those of the host
// made last; when that one ends they name a host that is gone, and no older object of the same module may be used any
// more (ending one is safe while the records themselves still stand, as those of hosts in one scope do).
class NlsHost : public HostRecords {
 public:
  explicit NlsHost(NlsLibraryEntry entry);
  ~NlsHost();
  QZNLS* nls = nullptr;
};

}  // namespace test
