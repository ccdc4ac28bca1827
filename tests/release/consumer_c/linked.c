/* A program that links the module and leaves everything to its defaults. */
#include "../hello.h"

int main(void) {
  VeldInputVector vector = {0};
  void* object = NULL;
  if (VELDNLSLIB(5, (void**)&vector, &object) != 0) return 2;
  return sayHello(object);
}
