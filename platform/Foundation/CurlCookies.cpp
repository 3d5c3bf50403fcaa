#include "platform/Foundation/CurlCookies.h"

#include <mutex>

#include <curl/curl.h>

namespace zuvi {

namespace {

struct Jar {
  Jar() {
    curl_share_setopt(share, CURLSHOPT_LOCKFUNC, &Jar::lock);
    curl_share_setopt(share, CURLSHOPT_UNLOCKFUNC, &Jar::unlock);
    curl_share_setopt(share, CURLSHOPT_USERDATA, this);
    curl_share_setopt(share, CURLSHOPT_SHARE, CURL_LOCK_DATA_COOKIE);
  }
  static void lock(CURL*, curl_lock_data data, curl_lock_access, void* jar) {
    static_cast<Jar*>(jar)->mutexes[data].lock();
  }
  static void unlock(CURL*, curl_lock_data data, void* jar) {
    static_cast<Jar*>(jar)->mutexes[data].unlock();
  }

  CURLSH* const share = curl_share_init();
  std::mutex mutexes[CURL_LOCK_DATA_LAST]; // the library may ask for one while it holds another
};

} // namespace

void CurlCookies::apply(void* easy) {
  static auto* const jar = new Jar; // never destroyed: sessions may outlive `main`
  curl_easy_setopt(easy, CURLOPT_SHARE, jar->share);
  curl_easy_setopt(easy, CURLOPT_COOKIEFILE, ""); // none to read; turns cookies on
}

} // namespace zuvi
