// A host with records of its own, made by the host layer that it links.
#include <veldnls/hostlib/xm.h>

#include "../hello.h"

int main() {
  VeldMemoryRecord memory{};
  VeldFileRecord files{.files = nullptr, .catalogue = nullptr, .programName = "consumer", .reserved = {}};
  VeldInputVector vector{&memory, nullptr, nullptr, nullptr, &files};
  if (xminit(&vector) == nullptr) return 3;
  void* object = nullptr;
  if (VELDNLSLIB(5, reinterpret_cast<void**>(&vector), &object) != 0) return 2;
  const int result = sayHello(static_cast<QZNLS*>(object));
  hsmemterm(&vector, memory.context);
  xmterm(&vector, memory.context);
  return result;
}
