#include "platform/WebKit/BorrowedEnvironment.h"

#include <algorithm>
#include <cstring>

#include <unistd.h>

namespace zuvi {

static char** endOf(char** list) {
  while (list && *list)
    list++;
  return list;
}

// Setting a variable would move the list under other threads that read it. Here they find the old
// list or the new one, and both last. Of two of one name the first holds.
BorrowedEnvironment::BorrowedEnvironment(const std::vector<std::string>& orders,
                                         const std::vector<std::string>& wishes)
    : theirs_(environ) {
  char** const theirEnd = endOf(theirs_);
  char** to = ours_ = new char*[orders.size() + (theirEnd - theirs_) + wishes.size() + 1];
  const auto add = [&](const std::string& text) {
    added_.push_back(strdup(text.c_str()));
    *to++ = added_.back();
  };
  std::for_each(orders.begin(), orders.end(), add);
  to = std::copy(theirs_, theirEnd, to);
  std::for_each(wishes.begin(), wishes.end(), add);
  *to = nullptr;
  __atomic_store_n(&environ, ours_, __ATOMIC_RELEASE);
}

// List and texts are never freed: whoever read them may hold them still.
BorrowedEnvironment::~BorrowedEnvironment() {
  if (environ == ours_) {
    __atomic_store_n(&environ, theirs_, __ATOMIC_RELEASE);
    return;
  }
  // Somebody has set a variable meanwhile, and thereby copied the list.
  *std::remove_if(environ, endOf(environ), [this](char* entry) {
    return std::find(added_.begin(), added_.end(), entry) != added_.end();
  }) = nullptr;
}

} // namespace zuvi
