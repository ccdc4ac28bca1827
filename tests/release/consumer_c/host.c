/* A host with records of its own, made by the host layer that it links. */
#include <veldnls/hostlib/xm.h>

#include "../hello.h"

int main(void) {
  VeldMemoryRecord memory = {0};
  VeldFileRecord files = {.programName = "consumer"};
  VeldInputVector vector = {.memory = &memory, .files = &files};
  void* object = NULL;
  int result = 0;
  if (xminit(&vector) == NULL) return 3;
  if (VELDNLSLIB(5, (void**)&vector, &object) != 0) return 2;
  result = sayHello(object);
  xmterm(&vector, memory.context);
  return result;
}
