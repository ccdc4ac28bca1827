#include "support/host.h"

#include "veldnls/hostlib/xm.h"

namespace test {

HostRecords::HostRecords() {
  vector.memory = &memory;
  vector.threadBlock = &threadBlock;
  vector.threads = &threads;
  vector.files = &files;
  xminit(&vector);
}

HostRecords::~HostRecords() {
  closeHighMemory();
  xmterm(&vector, memory.context);
}

void HostRecords::closeHighMemory() {
  if (memory.context != nullptr && !highMemoryClosed_) hsmemterm(&vector, memory.context);
  highMemoryClosed_ = true;
}

NlsHost::NlsHost(NlsLibraryEntry entry) {
  void* object = nullptr;
  if (entry(5, input(), &object) == 0) nls = static_cast<QZNLS*>(object);
}

NlsHost::~NlsHost() {
  if (nls != nullptr) nls->destroy(nls);
}

}  // namespace test
