#pragma once

#include "testing/support/ChildProcess.h"
#include "testing/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace zuvi::test {

/// A real server for localhost that may be set up badly, of the authority that serverCredentials
/// made in the folder's "known".
class BadServer {
public:
  /// `setup`: bits of the key, purpose of the certificate, options of openssl's server.
  BadServer(const TemporaryFolder& folder, const std::string& setup)
      : log_(folder.write("log", "")),
        server_({"sh", "-c", "set -- " + setup + script, folder.path()}, log_) {
    const std::string begin = "ACCEPT 127.0.0.1:";
    std::string said;
    const auto listens = [&] {
      said = TemporaryFolder::read(log_);
      return said.find(begin) != said.npos && said.back() == '\n';
    };
    EXPECT_TRUE(comesToHold(listens, [&] { return server_.isRunning(); })) << said;
    port_ = std::atoi(said.c_str() + said.find(begin) + begin.size());
  }
  std::string url() const { return "https://localhost:" + std::to_string(port_) + '/'; }

private:
  static constexpr const char* script = R"(; cd "$0"
    printf '[req]\ndistinguished_name=n\n[n]\n[v3]\nbasicConstraints=CA:FALSE\n' >config
    printf 'subjectAltName=DNS:localhost\nextendedKeyUsage=%s\n' $2 >>config
    openssl req -config config -x509 -extensions v3 -newkey rsa:$1 -nodes -keyout key -out cert \
      -subj /CN=bad -CA known/ca.pem -CAkey known/ca-key.pem
    shift 2
    exec openssl s_server -www -accept 127.0.0.1:0 -key key -cert cert "$@")";

  const std::string log_;
  const ChildProcess server_;
  int port_ = 0;
};

} // namespace zuvi::test
