#include "sandbox/core/tls/ServerCredentials.h"

#include "sandbox/core/File.h"
#include "sandbox/core/tls/CertificateGnutls.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace zuvi::sandbox {
namespace {

namespace fs = std::filesystem;

constexpr std::time_t renewBefore = 30L * 24 * 3600;

/// Keeps two servers that start at once from making two authorities.
class FolderLock {
public:
  explicit FolderLock(const fs::path& folder)
      : descriptor_(open((folder / "lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {
    if (descriptor_ >= 0) flock(descriptor_, LOCK_EX);
  }
  ~FolderLock() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;

private:
  int descriptor_;
};

struct PairFiles {
  fs::path key;
  fs::path certificate;
};

Result<KeyPair> load(const PairFiles& files) {
  const auto key = readFile(files.key);
  if (!key) return key.error();
  const auto certificate = readFile(files.certificate);
  if (!certificate) return certificate.error();
  return readKeyPair(*key, *certificate);
}

Result<Done> save(const KeyPair& pair, const PairFiles& files) {
  const auto key = keyText(pair);
  const auto certificate = certificateText(pair);
  if (!key) return key.error();
  if (!certificate) return certificate.error();
  if (auto written = writeFile(files.key, *key, FileAccess::ownerOnly); !written) return written;
  return writeFile(files.certificate, *certificate);
}

/// An authority that is there is never replaced: a client may have been told to trust it.
Result<KeyPair> authorityOf(const fs::path& folder, std::time_t now) {
  const PairFiles files{folder / "ca-key.pem", folder / "ca.pem"};
  std::error_code ignored;
  if (!fs::exists(files.key, ignored) && !fs::exists(files.certificate, ignored)) {
    auto made = makeAuthority(now);
    if (!made) return made;
    if (auto saved = save(*made, files); !saved) return saved.error();
    return made;
  }
  auto loaded = load(files);
  if (!loaded) return loaded;
  if (endOf(*loaded) <= now) return Error{"certificate: the authority has expired"};
  return loaded;
}

Result<KeyPair> serverPairOf(const fs::path& folder, const KeyPair& authority, std::time_t now) {
  const PairFiles files{folder / "server-key.pem", folder / "server.pem"};
  auto loaded = load(files);
  if (loaded && isIssuedBy(*loaded, authority) && endOf(*loaded) - now > renewBefore) return loaded;
  auto made = makeServerPair(authority, now);
  if (!made) return made;
  if (auto saved = save(*made, files); !saved) return saved.error();
  return made;
}

} // namespace

Result<TlsCredentials> serverCredentials(const fs::path& folder, std::time_t now) {
  const auto unusable = [&](const Error& why) {
    return Error{"the TLS folder " + folder.string() + " cannot be used: " + why.message};
  };
  if (auto made = makeFolder(folder); !made) return unusable(made.error());
  const FolderLock lock(folder);
  const auto authority = authorityOf(folder, now);
  if (!authority) return unusable(authority.error());
  const auto server = serverPairOf(folder, *authority, now);
  if (!server) return unusable(server.error());
  const auto key = keyText(*server);
  const auto certificate = certificateText(*server);
  if (!key) return unusable(key.error());
  if (!certificate) return unusable(certificate.error());
  return TlsCredentials{*key, *certificate};
}

} // namespace zuvi::sandbox
