#include "bench/groups.h"

namespace bench {

void runConstruction(Runner& runner, Library& library) {
  const Subject subject{"construction", "VELDNLSLIB and destroy", "none", "object"};
  if (!runner.wants(subject)) return;
  Group group{subject, 0, 1, {}};
  group.candidates.push_back({"veldnls", [&library] {
                                QZNLS* object = library.makeObject();
                                object->destroy(object);
                              }});
  runner.run(group);
}

}  // namespace bench
