// A program that links the module and leaves everything to its defaults.
#include "../hello.h"

int main() {
  void* vector[5] = {};
  void* object = nullptr;
  if (VELDNLSLIB(5, vector, &object) != 0) return 2;
  return sayHello(static_cast<QZNLS*>(object));
}
