#pragma once

#include <memory>
#include <string>

namespace zuvi::test {

/// A certificate and its private key, in PEM.
struct Identity {
  std::string certificate;
  std::string key;
};

/// A certificate authority made for one test.
class Authority {
public:
  Authority();
  ~Authority();

  const std::string& certificate() const { return certificate_; }

  /// For localhost and 127.0.0.1, in force now.
  Identity good() const;
  /// In force now, but for a host that no test reaches.
  Identity forAnotherHost() const;
  /// For localhost and 127.0.0.1, but no longer in force.
  Identity expired() const;

private:
  struct Keys;
  std::unique_ptr<Keys> keys_;
  std::string certificate_;
};

} // namespace zuvi::test
