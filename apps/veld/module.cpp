#include "module.h"

#include <dlfcn.h>

#include <array>
#include <filesystem>

#include "failure.h"
#include "host_services.h"
#include "veldnls/hostlib/xm.h"

namespace veld {

namespace {

namespace fs = std::filesystem;

constexpr const char* moduleName = VELD_MODULE_NAME;

std::string findModule() {
  std::error_code ignored;
  const fs::path program = fs::read_symlink("/proc/self/exe", ignored).parent_path();
  const std::array<fs::path, 2> folders{program, (program / VELD_INSTALL_FOLDER).lexically_normal()};
  for (const fs::path& folder : folders) {
    const fs::path candidate = folder / moduleName;
    if (fs::exists(candidate, ignored)) return candidate.string();
  }
  throw Failure(std::string(moduleName) + " is neither in " + folders[0].string() + " nor in " + folders[1].string() +
                "; name its place with --module");
}

}  // namespace

Library::Library(const std::string& modulePath) : modulePath_(modulePath.empty() ? findModule() : modulePath) {
  module_ = dlopen(modulePath_.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (module_ == nullptr) {
    throw Failure("the module can't be loaded: " + std::string(dlerror()) + "; name another with --module");
  }
  makeObject();
}

void Library::makeObject() {
  const auto entry = reinterpret_cast<NlsLibraryEntry>(dlsym(module_, "VELDNLSLIB"));
  if (entry == nullptr) {
    throw Failure(modulePath_ + " has no export VELDNLSLIB; name the library's module with --module");
  }
  memory_.services = &hostServices();
  vector_ = {&memory_, &threadBlock_, nullptr, &threads_, &files_};
  if (xminit(&vector_) == nullptr) throw Failure(memoryShort);

  auto** elements = reinterpret_cast<void**>(&vector_);
  constexpr int32_t elementCount = sizeof vector_ / sizeof(void*);
  void* object = nullptr;
  if (entry(elementCount, elements, &object) != 0) {
    throw Failure(modulePath_ + " can't make its object; is it the module of this version?");
  }
  nls_ = static_cast<QZNLS*>(object);
}

Library::~Library() {
  nls_->destroy(nls_);
  hsmemterm(&vector_, memory_.context);
  xmterm(&vector_, memory_.context);
  dlclose(module_);
}

}  // namespace veld
