// A host's locks, lists and modules as locales use them to look messages up.
#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "veldnls/host.h"

namespace test {

struct MessageLock {
  NLS_HANDLE_FIELDS
  std::mutex mutex;
  std::vector<int32_t> params;
};

struct MessageList {
  NLS_HANDLE_FIELDS
  std::mutex mutex;
  std::map<std::u16string, NlsExtension*> modules;  // by key; the list's own
  std::vector<int32_t> params;
  std::vector<std::pair<int32_t, int32_t>> options;
};

// What the modules of a name answer, and how often they were asked.
struct Messages {
  bool canBeLoaded = true;
  std::u16string text;
  NlsStatus status = 0;
  std::atomic<int> asked{0};
};

// What the services do, and have done. One lives at a time; the functions of `table` work on it.
struct MessageServices {
  // `broken` is told, from any thread, when the library breaks a rule of the services.
  explicit MessageServices(void (*broken)(const char* what));
  ~MessageServices();
  MessageServices(const MessageServices&) = delete;
  MessageServices& operator=(const MessageServices&) = delete;

  static const NlsHostServices table;

  void (*broken)(const char* what);
  std::map<std::u16string, Messages> known;  // by names of modules; those of other names can't be loaded
  std::vector<std::u16string> loads;         // names asked for, in order
  std::atomic<int> acquired{0};              // calls that ask for a lock and aren't refused
  NlsStatus acquireStatus = 0;               // of these calls
  NlsStatus insertStatus = 0;
  bool refuseLock = false;  // when one is to be made
  bool refuseList = false;
  std::function<void()> beforeLoad = nullptr;   // if set, called with each load
  std::function<void()> atEndOfLock = nullptr;  // if set, called with each lock that ends
  int locks = 0;                                // that were made and haven't ended
  int lists = 0;
  std::atomic<int> modules{0};
};

}  // namespace test
