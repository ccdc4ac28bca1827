#include "bench/library.h"

#include <dlfcn.h>

#include <stdexcept>

#include "veldnls/hostlib/xm.h"

namespace bench {

Library::Library(const std::string& modulePath) {
  module_ = dlopen(modulePath.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (module_ == nullptr) throw std::runtime_error(dlerror());
  entry_ = reinterpret_cast<NlsLibraryEntry>(dlsym(module_, "VELDNLSLIB"));
  if (entry_ == nullptr) throw std::runtime_error(modulePath + " has no export VELDNLSLIB");
  vector_ = {&memory_, &threadBlock_, nullptr, &threads_, &files_};
  if (xminit(&vector_) == nullptr) throw std::runtime_error("no memory for pools");
  nls_ = makeObject();
}

Library::~Library() {
  nls_->destroy(nls_);
  hsmemterm(&vector_, memory_.context);
  xmterm(&vector_, memory_.context);
  dlclose(module_);
}

QZNLS* Library::makeObject() {
  constexpr int32_t elementCount = sizeof vector_ / sizeof(void*);
  void* object = nullptr;
  if (entry_(elementCount, reinterpret_cast<void**>(&vector_), &object) != 0) {
    throw std::runtime_error("the module can't make its object");
  }
  return static_cast<QZNLS*>(object);
}

CEI Library::cei(const Encoding& encoding) const {
  const std::string name = encoding.name;
  const std::u16string wide(name.begin(), name.end());
  CEI cei = 0;
  if (nls_->lookupEncoding(nls_, wide.data(), static_cast<int32_t>(wide.size()), NLS_LOOKUP_NAME, &cei) != 0) {
    throw std::runtime_error("unknown encoding " + name);
  }
  return cei;
}

Converter Library::converter(const Encoding& from, const Encoding& to) const { return converterThatTakes(0, from, to); }

Converter Library::substitutingConverter(const Encoding& from, const Encoding& to) const {
  return converterThatTakes(nlsSubstituted, from, to);
}

Converter Library::converterThatTakes(NlsStatus besidesZero, const Encoding& from, const Encoding& to) const {
  // Pipelines end with the object. One to gb18030 writes four-byte codes only if the object has had one from it.
  if (std::string(to.name) == "gb18030") nls_->createToUtf16Pipeline(nls_, cei(to), nullptr, nullptr);
  TranscodingPipeline* pipeline = nls_->createPipeline(nls_, cei(from), cei(to), nullptr, nullptr);
  if (pipeline == nullptr) throw std::runtime_error(std::string("no pipeline from ") + from.name + " to " + to.name);
  return makeConverter("veldnls", [pipeline, besidesZero](Bytes input, Room output) -> size_t {
    uint32_t length = 0;
    const NlsStatus status = pipeline->transcode(pipeline, input.data(), static_cast<uint32_t>(input.size()),
                                                 output.data(), static_cast<uint32_t>(output.size()), &length, nullptr);
    return status == 0 || status == besidesZero ? length : 0;
  });
}

Converter Library::validator(const Encoding& encoding) const {
  return makeConverter("veldnls", [nls = nls_, cei = cei(encoding)](Bytes input, Room) -> size_t {
    int32_t offset = 0;
    const auto length = static_cast<uint32_t>(input.size());
    const NlsStatus status = nls->validateEncodedText(nls, input.data(), length, cei, nullptr, &offset);
    return status == 0 ? length : 0;
  });
}

}  // namespace bench
