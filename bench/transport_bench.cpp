// A film of 16 MiB becomes an identity: the kit's operation beside bare libcurl sending the same
// bytes from memory, over http and https, turn by turn; and what the kit's upload takes of memory.

#include <ZuviSDK/ZVEndpoints.h>
#include "bench/Measure.h"
#include "bench/UploadSink.h"
#include "kit/Manager/ZVKYCManager.h"
#include "sandbox/core/tls/ServerCredentials.h"
#include "testing/Dispatch/VirtualTime.h"
#include "testing/support/TemporaryFolder.h"

#include <curl/curl.h>

#include <fstream>
#include <string>

using namespace zuvi;
using namespace zuvi::bench;

namespace {

constexpr std::size_t filmSize = 16u << 20;
constexpr int rounds = 25;

std::size_t drop(char*, std::size_t size, std::size_t count, void*) {
  return size * count;
}

/// One connection that is kept, as the kit keeps its own.
class Bare {
public:
  Bare(const std::string& url, const std::string& authority, std::string body)
      : body_(std::move(body)), handle_(curl_easy_init()) {
    curl_easy_setopt(handle_, CURLOPT_URL, url.c_str());
    if (!authority.empty()) curl_easy_setopt(handle_, CURLOPT_CAINFO, authority.c_str());
    headers_ = curl_slist_append(headers_, "Content-Type: multipart/form-data; boundary=B");
    headers_ = curl_slist_append(headers_, "Expect:");
    curl_easy_setopt(handle_, CURLOPT_HTTPHEADER, headers_);
    curl_easy_setopt(handle_, CURLOPT_UPLOAD_BUFFERSIZE, 512L * 1024); // the kit's own
    curl_easy_setopt(handle_, CURLOPT_WRITEFUNCTION, drop);
    curl_easy_setopt(handle_, CURLOPT_POSTFIELDSIZE_LARGE, curl_off_t(body_.size()));
    curl_easy_setopt(handle_, CURLOPT_POSTFIELDS, body_.data());
  }
  ~Bare() {
    curl_slist_free_all(headers_);
    curl_easy_cleanup(handle_);
  }
  Bare(const Bare&) = delete;
  bool send() { return curl_easy_perform(handle_) == CURLE_OK; }

private:
  std::string body_;
  CURL* handle_;
  curl_slist* headers_ = nullptr;
};

/// The resident memory of this process at its highest, in MiB.
double peakMemory() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.rfind("VmHWM:", 0) == 0) return std::stod(line.substr(6)) / 1024;
  return 0;
}

void resetPeak() {
  std::ofstream("/proc/self/clear_refs") << "5";
}

bool createIdentity(VirtualTime& time, const Data& film) {
  bool done = false, made = false;
  ZVKYCManager::shared().createNewIdentity(film, [&](const auto& id, const auto&) {
    done = true;
    made = id.has_value();
  });
  return time.waitUntil([&] { return done; }) && made;
}

void measure(const char* scheme, const UploadSink& server, const std::string& authority,
             VirtualTime& time, const Data& film) {
  ZVKYCManager::shared().networkManager.serverURL = server.address() + "/";
  Bare bare(server.address() + "/v1/identities", authority,
            std::string(filmSize + 500, 'x')); // the form around the film
  std::vector<double> kitTimes, bareTimes;
  for (int i = 0; i < rounds; i++) {
    double start = wallSeconds();
    if (!bare.send()) std::printf("bare libcurl failed\n");
    bareTimes.push_back(wallSeconds() - start);
    start = wallSeconds();
    if (!createIdentity(time, film)) std::printf("createNewIdentity failed\n");
    kitTimes.push_back(wallSeconds() - start);
  }
  const Figures baseline = figuresOf(bareTimes);
  report((std::string("bare libcurl, 16 MiB, ") + scheme).c_str(), baseline);
  report((std::string("createNewIdentity, 16 MiB, ") + scheme).c_str(), figuresOf(kitTimes),
         &baseline);
}

} // namespace

int main() {
  VirtualTime time;
  const Data film(std::string(filmSize, 'f'));
  const test::TemporaryFolder folder;
  {
    const UploadSink server;
    createIdentity(time, film); // to nowhere: everything is made that is made once
    ZVKYCManager::shared().networkManager.serverURL = server.address() + "/";
    resetPeak();
    const double before = peakMemory();
    createIdentity(time, film);
    std::printf("%-44s %.1f MiB over what was held, the film itself not counted\n",
                "createNewIdentity, peak memory", peakMemory() - before);
    measure("http", server, "", time, film);
  }
  const auto credentials = sandbox::serverCredentials(folder.path());
  if (!credentials) {
    std::printf("no certificate: %s\n", credentials.error().message.c_str());
    return 1;
  }
  const std::string pem = folder.path() + "/ca.pem";
  ZVEndpoints::setAdditionalAuthorities(pem);
  const UploadSink server(*credentials);
  measure("https", server, pem, time, film);
}
