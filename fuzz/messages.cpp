// Messages of a locale, over a host's locks, lists and modules of any kind, against a model of what was loaded.
//
// Input: the locale, then three bytes for each call: which modules there are and what they answer, what lock and list
// answer, and the room for the text.
#include <set>
#include <string>
#include <vector>

#include "fuzz/support/locales.h"
#include "support/message_services.h"
#include "veldnls/nls.h"
#include "veldnls/status.h"

namespace fuzz {

namespace {

constexpr NlsStatus otherStatus = 0x12345;
constexpr size_t mostCalls = 40;
constexpr int32_t mostRoom = 40;
constexpr char16_t english[] = u"t0a0en";

// ---- The model ----

struct Answer {
  NlsStatus status;
  char16_t text;  // 0 for none
};

struct Model {
  const test::MessageServices& services;
  std::u16string own;  // names of modules
  std::set<std::u16string> listed = {};
  std::vector<std::u16string> loads = {};

  Answer call() {
    NlsStatus last = nlsMessageNotFound;
    for (const std::u16string& wanted : {own, std::u16string(english)}) {
      if (listed.contains(wanted)) continue;
      if (services.acquireStatus != 0) return {services.acquireStatus, 0};
      loads.push_back(wanted);
      const test::Messages& module = services.known.at(wanted);
      if (!module.canBeLoaded) continue;
      if (services.insertStatus != 0) return {nlsMessageTrackFailed, 0};
      listed.insert(wanted);
      last = module.status;
      if (last == 0) return {0, module.text[0]};
    }
    return {last, 0};
  }
};

// ---- Cases ----

void setModule(test::Messages& module, char16_t text, unsigned choice) {
  module.canBeLoaded = (choice & 3) != 0;
  module.text.assign(mostRoom, text);
  module.status = (choice & 3) == 2 ? otherStatus : (choice & 3) == 3 ? otherStatus + 1 : 0;
}

void checkCall(QZLocale* locale, test::MessageServices& services, Model& model, Input& input) {
  const unsigned modules = input.byte();
  const unsigned failures = input.byte();
  const int32_t capacity = input.byte() % mostRoom + 1;
  setModule(services.known[model.own], u'o', modules);
  setModule(services.known[english], u'e', modules >> 2);
  services.acquireStatus = failures % 16 == 1 ? otherStatus + 2 : 0;
  services.insertStatus = failures / 16 == 1 ? otherStatus + 3 : 0;
  const Answer expected = model.call();
  const Written result = writtenAt(At::end, capacity, [&](char16_t* output, int32_t room, int32_t*) {
    return locale->getLocaleMessage(locale, failures, output, room);
  });
  require(result.status == expected.status, "a message has the status of the model");
  require(
      result.units == std::u16string(static_cast<size_t>(capacity), expected.text != 0 ? expected.text : untouchedUnit),
      "a message has the text of the model");
  require(services.loads == model.loads, "the modules of the model are loaded");
  require(services.modules == static_cast<int>(model.listed.size()), "a module that isn't listed ends");
}

}  // namespace

void check(Input input) {
  const std::u16string_view name = viewOf(chooseLocale(input)->record->identity.posixName);
  test::MessageServices services([](const char* what) { require(false, what); });
  host().memory.services = &test::MessageServices::table;
  QZLocale* locale = host().nls->createLocale(host().nls, name.data(), lengthOf(name));
  require(locale != nullptr, "a locale is made");
  Model model{services, u"t0a0" + std::u16string(name.substr(0, 2))};
  for (size_t calls = 0; !input.empty() && calls < mostCalls; ++calls) checkCall(locale, services, model, input);
  require(locale->destroy(locale) == 0, "a locale ends");
  require(services.locks == 0 && services.lists == 0 && services.modules == 0,
          "with its lock, its list and all modules");
  host().memory.services = nullptr;
}

}  // namespace fuzz
